#include "modengine/sessiondefaults.h"

#include "platform/system/files/wholefile.h"
#include "support/ini_sm.h"
#include "support/install.h"
#include "support/modfindfile.h"
#include "support/runstate.h"
#include "support/settings.h"

#include <utility>
#include <vector>

namespace varnik {

namespace {

constexpr char kPreferencesSection[] = "UserPrefs";

constexpr const char* kSessionKeys[] = {"DefaultSessionName", "DefaultPassword", "DefaultMessage"};

using Values = std::vector<win::ProfileValue>;

// From index 0 of SearchDirs, which is empty: the whole install comes first.
std::string FindPlayerFile(const std::string& name) {
  return CurrentInstall < 0 ? std::string() : FindInSearchDirs(name, 0);
}

std::string RaceFile(char letter) { return FindPlayerFile(std::string("RaceName_") + letter + ".txt"); }
std::string RaceKey(char letter) { return std::string("Racename") + letter; }

}  // namespace

void ApplyPlayersValues(const ActivationState& state) {
  std::vector<win::SettingRow> backup;
  Values values = {
      {kSessionKeys[0], state.sessionName}, {kSessionKeys[1], state.password}, {kSessionKeys[2], state.message}};
  std::erase_if(values, [](const win::ProfileValue& row) { return row.value.empty(); });
  const std::string preferences = values.empty() ? "" : FindPlayerFile("gameprefs.ini");
  const win::ProfileFile old(preferences);
  if (preferences.empty() || !old.IsReadable()) values.clear();
  for (const auto& [key, value] : values)
    backup.push_back({key, ReadIniValue(kPreferencesSection, key, old, "")});
  std::vector<std::pair<std::string, std::string>> races;  // file and name
  for (std::size_t i = 0; i < state.RaceNames.size(); ++i) {
    const char letter = static_cast<char>('A' + i);
    const std::string file = state.RaceNames[i].empty() ? "" : RaceFile(letter);
    const std::optional<std::string> name = file.empty() ? std::nullopt : win::ReadWholeFile(file);
    if (!name) continue;
    backup.push_back({RaceKey(letter), name});
    races.emplace_back(file, state.RaceNames[i]);
  }
  // Before the first change, so that a kill in between loses no value.
  if (backup.empty() || !StoreAll(kBackupSection, backup, win::OtherKeys::kKeep)) return;
  if (!values.empty()) win::WriteProfileValues(kPreferencesSection, values, preferences);
  for (const auto& [file, name] : races)
    win::WriteWholeFile(file, name + "\r\n");
}

namespace {

// The keys of what was put back. A value whose file has gone counts as put back: nothing is left to put it into.
std::vector<win::SettingRow> PutBackSessionDefaults(const win::SettingsSnapshot& stored) {
  Values values;
  std::vector<win::SettingRow> done;
  for (const char* key : kSessionKeys) {
    if (const std::string old = stored.Get(kBackupSection, key); !old.empty()) values.push_back({key, old});
    done.push_back({key, {}});
  }
  const std::string preferences = values.empty() ? "" : FindPlayerFile("gameprefs.ini");
  const bool isDone = preferences.empty() || win::WriteProfileValues(kPreferencesSection, values, preferences);
  return isDone ? done : std::vector<win::SettingRow>();
}

}  // namespace

bool RestorePlayersValues(const win::SettingsSnapshot& stored) {
  if (!stored.IsReadable()) return false;  // nothing may be forgotten that was not put back
  std::vector<win::SettingRow> done = PutBackSessionDefaults(stored);
  bool allDone = !done.empty();
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const std::string old = stored.Get(kBackupSection, RaceKey(letter));
    const std::string file = old.empty() ? "" : RaceFile(letter);
    const bool isDone = file.empty() || win::ReadWholeFile(file) == old || win::WriteWholeFile(file, old + "\r\n");
    if (isDone) done.push_back({RaceKey(letter), {}});
    allDone = allDone && isDone;
  }
  return allDone ? Forget(kBackupSection) : StoreAll(kBackupSection, done, win::OtherKeys::kKeep) && false;
}

bool PutBackSessionDefaults(const std::vector<SessionValue>& values, const std::string& file) {
  Values changed;
  for (const SessionValue& value : values)
    if (!value.before.empty() && ReadIniValue(kPreferencesSection, value.key, file, "") == value.after)
      changed.push_back({value.key, value.before});
  return changed.empty() || win::WriteProfileValues(kPreferencesSection, changed, file);
}

std::vector<SessionValue> SessionValuesSet(const win::SettingsSnapshot& stored) {
  std::vector<SessionValue> values;
  for (const char* key : kSessionKeys)
    if (const std::string before = stored.Get(kBackupSection, key); !before.empty())
      values.push_back({key, before, PresentSessionDefault(key).value_or("")});
  return values;
}

std::optional<std::string> PresentSessionDefault(const std::string& key) {
  const std::string file = FindPlayerFile("gameprefs.ini");
  if (file.empty()) return std::nullopt;
  return ReadIniValue(kPreferencesSection, key, file, "");
}

bool HasRaceFile(char letter) { return !RaceFile(letter).empty(); }

}  // namespace varnik
