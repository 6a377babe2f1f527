#include "gameconfig/gamesettings.h"

#include <algorithm>

#include "gameconfig/screenshots.h"
#include "tests/modengine/modtest.h"

using namespace varnik;

namespace {

class GameConfig : public test::ModTest {
 protected:
  void PutReadOnly(const std::string& name, const std::string& content) {
    test::WriteFile(InRoot(name), content);
    std::filesystem::permissions(InRoot(name), std::filesystem::perms(0444));
  }
};

TEST_F(GameConfig, ReadsDarkPlants) {
  EXPECT_EQ(ReadDarkPlants(), 1);
  for (const auto& [value, dark] :
       {std::pair("0 // off", 0), {"2", 2}, {"7", 1}, {"-1", 1}, {"1e99", 1}, {"0.4", 0}, {"none", 0}, {"//", 1}}) {
    test::WriteFile(InRoot("render.cfg"), std::string("[Render]\ndarkPlants = ") + value);
    EXPECT_EQ(ReadDarkPlants(), dark) << value;
  }
}

TEST_F(GameConfig, AppliesDarkPlantsToAReadOnlyFile) {
  PutReadOnly("render.cfg", "[Render]\r\n; kept\r\ndarkPlants = 1 // on\r\nother=2\r\n");
  ApplyDarkPlants(false);
  EXPECT_EQ(Content("render.cfg"), "[Render]\r\n; kept\r\ndarkPlants=0\r\nother=2\r\n");
}

TEST_F(GameConfig, ReadsUserPrefsWithTheirDefaults) {
  test::WriteFile(InRoot("addon/x/gameprefs.ini"),
                  "[UserPrefs]\nShowFPS = TRUE // shown\nVSyncOn=yes\nHovercraftForceView=2\nPersonForceView=9\n"
                  "TrackedForceView=1e99\nIRCAlternateNick = \"me \" // nick\nIRCUserID=\n");
  const UserPrefs prefs = ReadUserPrefs().value_or(UserPrefs());
  EXPECT_TRUE(prefs.showFps && !prefs.vsyncOn);
  EXPECT_EQ(prefs.hovercraftView, 3);
  EXPECT_EQ(prefs.personView, kNoCraftView);
  EXPECT_EQ(prefs.trackedView, kNoCraftView);
  EXPECT_EQ(prefs.walkerView, 0);
  EXPECT_EQ(prefs.ircAlternateNick, "me ");
  EXPECT_EQ(prefs.ircUserId, "player");
}

TEST_F(GameConfig, AppliesUserPrefsAndLeavesForeignNumbersAlone) {
  PutReadOnly("addon/gameprefs.ini", "[UserPrefs]\r\nPersonForceView=9\r\nIRCUserID=me // id\r\n");
  UserPrefs prefs = ReadUserPrefs().value_or(UserPrefs());
  prefs.showFps = true;
  prefs.walkerView = 3;
  prefs.ircFullName = "Full // name";
  ApplyUserPrefs(prefs);
  EXPECT_EQ(Content("addon/gameprefs.ini"),
            "[UserPrefs]\r\nPersonForceView=9\r\nIRCUserID=me\r\nShowFPS=true\r\nVSyncOn=false\r\n"
            "HovercraftForceView=-1\r\nTrackedForceView=-1\r\nWalkerForceView=2\r\nIRCAlternateNick=\r\n"
            "IRCFullName=Full // name\r\n");
}

TEST_F(GameConfig, ReadsBelowTheFoldersAndAppliesFromTheRoot) {
  test::WriteFile(InRoot("elsewhere/gameprefs.ini"), "[UserPrefs]\r\nVSyncOn=true");
  EXPECT_FALSE(ReadUserPrefs().has_value());
  ApplyUserPrefs({});
  EXPECT_TRUE(Content("elsewhere/gameprefs.ini")->starts_with("[UserPrefs]\r\nVSyncOn=false\r\n"));
}

TEST_F(GameConfig, ListsScreenshotsWithTheirSubFolders) {
  EXPECT_TRUE(ListScreenshots().empty());
  Put("Screenshots/a.bmp= Screenshots/old/b.BMP= Screenshots/c.png=");
  std::vector<std::string> names = ListScreenshots();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"a.bmp", "old\\b.BMP"}));
}

TEST_F(GameConfig, ClearsBindataButNotItsSubFolders) {
  Put("data/bindata/a=1 data/bindata/sub/c=4 data/d=5");
  ClearBindata();
  EXPECT_FALSE(Content("data/bindata/a"));
  EXPECT_TRUE(Content("data/bindata/sub/c") && Content("data/d"));
}

}  // namespace
