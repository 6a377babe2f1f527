#include "gameconfig/gamesettings.h"

#include "platform/system/files/files.h"
#include "platform/system/text/text.h"
#include "support/ini_sm.h"
#include "support/install.h"
#include "support/modfindfile.h"

#include <vector>

namespace varnik {

const std::array<CraftView, 4> kCraftViews = {{
    {"1.2 Default", -1},
    {"Cockpit(Shift+F1)", 0},
    {"Forward(Shift+F2)", 1},
    {"Chase(Shift+F3)!", 2},
}};

namespace {

template <typename Value>
struct Key {
  const char* key;
  Value UserPrefs::*field;
  const char* fallback;
};

constexpr Key<bool> kFlags[] = {
    {"ShowFPS", &UserPrefs::showFps, "false"},
    {"VSyncOn", &UserPrefs::vsyncOn, "false"},
};

constexpr Key<int> kViews[] = {
    {"HovercraftForceView", &UserPrefs::hovercraftView, "-1"},
    {"PersonForceView", &UserPrefs::personView, "-1"},
    {"TrackedForceView", &UserPrefs::trackedView, "-1"},
    {"WalkerForceView", &UserPrefs::walkerView, "-1"},
};

constexpr Key<std::string> kTexts[] = {
    {"IRCAlternateNick", &UserPrefs::ircAlternateNick, ""},
    {"IRCUserID", &UserPrefs::ircUserId, "player"},
    {"IRCFullName", &UserPrefs::ircFullName, "Battlezone II Player"},
};

constexpr char kGamePrefs[] = "gameprefs.ini";
constexpr char kSection[] = "UserPrefs";

std::string RenderFile() { return InstallRoot() + "render.cfg"; }

bool IsCraftView(int row) { return row >= 0 && row < static_cast<int>(kCraftViews.size()); }

int CraftViewRow(const std::string& value) {
  const int row = win::RoundToInt16(win::LeadingNumber(value) + 1).value_or(kNoCraftView);
  return IsCraftView(row) ? row : kNoCraftView;
}

}  // namespace

int ReadDarkPlants() {
  const double number = win::LeadingNumber(ReadIniValue("Render", "darkPlants", RenderFile(), "1"));
  const int state = win::RoundToInt16(number).value_or(1);
  return state >= 0 && state <= 2 ? state : 1;
}

void ApplyDarkPlants(bool dark) {
  if (InstallRoot().empty()) return;
  win::ClearReadOnly(RenderFile());
  WriteIniValue("Render", "darkPlants", dark ? "1" : "0", RenderFile());
}

std::optional<UserPrefs> ReadUserPrefs() {
  const std::string path = FindInSearchDirs(kGamePrefs, 1);
  if (path.empty()) return std::nullopt;
  const win::ProfileFile file(path);
  if (!file.IsReadable()) return std::nullopt;  // an Apply would write defaults over what is there
  UserPrefs prefs;
  for (const auto& [key, field, fallback] : kFlags)
    prefs.*field = win::EqualNoCase(ReadIniValue(kSection, key, file, fallback), "true");
  for (const auto& [key, field, fallback] : kViews)
    prefs.*field = CraftViewRow(ReadIniValue(kSection, key, file, fallback));
  for (const auto& [key, field, fallback] : kTexts)
    prefs.*field = ReadIniValue(kSection, key, file, fallback);
  return prefs;
}

void ApplyUserPrefs(const UserPrefs& prefs) {
  const std::string file = FindInSearchDirs(kGamePrefs, 0);
  if (file.empty()) return;
  win::ClearReadOnly(file);
  std::vector<win::ProfileValue> values;
  for (const auto& flag : kFlags)
    values.push_back({flag.key, prefs.*flag.field ? "true" : "false"});
  for (const auto& view : kViews)
    if (IsCraftView(prefs.*view.field))
      values.push_back({view.key, std::to_string(kCraftViews[prefs.*view.field].value)});
  for (const auto& text : kTexts)
    values.push_back({text.key, prefs.*text.field});
  win::WriteProfileValues(kSection, values, file);
}

}  // namespace varnik
