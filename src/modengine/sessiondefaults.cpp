#include "modengine/sessiondefaults.h"

#include "platform/system/files/wholefile.h"
#include "support/ini_sm.h"
#include "support/install.h"
#include "support/modfindfile.h"
#include "support/runstate.h"
#include "support/settings.h"

#include <algorithm>
#include <vector>

namespace varnik {

namespace {

constexpr char kPreferencesSection[] = "UserPrefs";

struct SessionDefault {
  const char* key;  // in the game's file and in the backup
  std::string value;
};
using SessionDefaults = std::vector<SessionDefault>;

bool AnyIsSet(const SessionDefaults& defaults) {
  return std::any_of(defaults.begin(), defaults.end(), [](const SessionDefault& one) { return !one.value.empty(); });
}

// From index 0 of SearchDirs, which is empty: the whole install comes first.
std::string FindPlayerFile(const std::string& name) {
  return CurrentInstall < 0 ? std::string() : FindInSearchDirs(name, 0);
}

std::string RaceFile(char letter) { return FindPlayerFile(std::string("RaceName_") + letter + ".txt"); }
std::string RaceKey(char letter) { return std::string("Racename") + letter; }

void ApplyRaceName(char letter, const std::string& name) {
  const std::string file = RaceFile(letter);
  if (file.empty()) return;
  const std::optional<std::string> old = win::ReadWholeFile(file);
  if (old && Store(kBackupSection, RaceKey(letter), *old)) win::WriteWholeFile(file, name + "\r\n");
}

void RestoreRaceName(char letter, const std::string& old) {
  const std::string file = RaceFile(letter);
  if (!file.empty()) win::WriteWholeFile(file, old + "\r\n");
}

}  // namespace

void ApplySessionDefaults(const ActivationState& state) {
  const SessionDefaults defaults = {{"DefaultSessionName", state.sessionName},
                                    {"DefaultPassword", state.password},
                                    {"DefaultMessage", state.message}};
  if (!AnyIsSet(defaults)) return;
  const std::string file = FindPlayerFile("gameprefs.ini");
  if (file.empty()) return;
  for (const auto& [key, value] : defaults) {
    if (value.empty()) continue;
    if (Store(kBackupSection, key, ReadIniValue(kPreferencesSection, key, file, "")))
      WriteIniValue(kPreferencesSection, key, value, file);
  }
}

void ApplyRaceNames(const ActivationState& state) {
  for (std::size_t i = 0; i < state.RaceNames.size(); ++i)
    if (!state.RaceNames[i].empty()) ApplyRaceName(static_cast<char>('A' + i), state.RaceNames[i]);
}

void RestoreSessionDefaults() {
  SessionDefaults defaults;
  for (const char* key : {"DefaultSessionName", "DefaultPassword", "DefaultMessage"})
    defaults.push_back({key, ReadStored(kBackupSection, key)});
  if (!AnyIsSet(defaults)) return;
  const std::string file = FindPlayerFile("gameprefs.ini");
  if (file.empty()) return;
  for (const auto& [key, value] : defaults)
    if (!value.empty()) WriteIniValue(kPreferencesSection, key, value, file);
}

void RestoreRaceNames() {
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    if (const std::string old = ReadStored(kBackupSection, RaceKey(letter)); !old.empty()) RestoreRaceName(letter, old);
}

std::optional<std::string> PresentSessionDefault(const std::string& key) {
  const std::string file = FindPlayerFile("gameprefs.ini");
  if (file.empty()) return std::nullopt;
  return ReadIniValue(kPreferencesSection, key, file, "");
}

bool HasRaceFile(char letter) { return !RaceFile(letter).empty(); }

}  // namespace varnik
