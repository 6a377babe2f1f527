#pragma once

#include "platform/system/store/settings.h"

#include <string>
#include <vector>

// The keys that the program keeps in the settings store, with the defaults that their readers pass. Every value is a
// text; a boolean option is On or Off, and only the exact text On is true.
namespace varnik {

constexpr char kApplication[] = "Varnik";
constexpr char kSettingsSection[] = "Settings";
constexpr char kInstallsSection[] = "BZ2Dir";
constexpr char kCrashSection[] = "Crash";
constexpr char kBackupSection[] = "Backup";

struct SettingKey {
  const char* name;
  const char* fallback;
};

// The keys of section Settings, in the order in which they are listed.
extern const std::vector<SettingKey> kSettingKeys;

// All that is stored, read now. What is asked together is asked of one snapshot; a new action of the player takes a new
// one, since other processes write too.
win::SettingsSnapshot StoredSettings();

// The stored text of a key of section Settings, or its default.
std::string ReadOption(const std::string& key, const win::SettingsSnapshot& stored = StoredSettings());
bool OptionIsOn(const std::string& key, const win::SettingsSnapshot& stored = StoredSettings());
void StoreOption(const std::string& key, const std::string& value);

std::string ReadStored(const char* section, const std::string& key, const std::string& fallback = "");
// False when the value could not be stored; the old one stands then.
bool Store(const char* section, const std::string& key, const std::string& value);
bool StoreAll(const char* section, const std::vector<win::SettingRow>& rows, win::OtherKeys others,
              win::SettingsSnapshot* after = nullptr);
// For rows that depend on what is stored, see win::UpdateSection.
bool Update(const char* section, const win::SectionUpdate& update);
// False when it could not be forgotten.
bool Forget(const char* section, const std::string& key = "");

}  // namespace varnik
