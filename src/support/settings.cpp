#include "support/settings.h"

namespace varnik {

const std::vector<SettingKey> kSettingKeys = {
    {"TrayIcon", "0"}, {"TrayIconNum", "1"}, {"NoMapPic", "1"}, {"MainLeft", "1000"}, {"MainTop", "1000"},
    {"OldMods", "On"}, {"HighPri", "Off"},   {"BinDat", "Off"}, {"RenameLog", "Off"}, {"StatusBar", "On"},
};

win::SettingsSnapshot StoredSettings() { return win::SettingsSnapshot(kApplication); }

std::string ReadOption(const std::string& key, const win::SettingsSnapshot& stored) {
  const char* fallback = "";
  for (const SettingKey& row : kSettingKeys)
    if (key == row.name) fallback = row.fallback;
  return stored.Get(kSettingsSection, key, fallback);
}

bool OptionIsOn(const std::string& key, const win::SettingsSnapshot& stored) { return ReadOption(key, stored) == "On"; }

void StoreOption(const std::string& key, const std::string& value) { Store(kSettingsSection, key, value); }

std::string ReadStored(const char* section, const std::string& key, const std::string& fallback) {
  return win::GetSetting(kApplication, section, key, fallback);
}

bool Store(const char* section, const std::string& key, const std::string& value) {
  return win::SaveSetting(kApplication, section, key, value);
}

bool StoreAll(const char* section, const std::vector<win::SettingRow>& rows, win::OtherKeys others,
              win::SettingsSnapshot* after) {
  return win::SaveSection(kApplication, section, rows, others, after);
}

bool Update(const char* section, const win::SectionUpdate& update) {
  return win::UpdateSection(kApplication, section, update);
}

bool Forget(const char* section, const std::string& key) { return win::DeleteSetting(kApplication, section, key); }

}  // namespace varnik
