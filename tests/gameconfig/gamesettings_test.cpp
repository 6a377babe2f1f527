#include "gameconfig/gamesettings.h"

#include "tests/harness/failingreads.h"
#include "tests/modengine/modtest.h"

using namespace varnik;

namespace {

using GameConfig = test::ModTest;

TEST_F(GameConfig, ReadsDarkPlantsAndAppliesThemToAReadOnlyFile) {
  EXPECT_EQ(ReadDarkPlants(), 1);
  for (const auto& [value, dark] : {std::pair("0 // off", 0), {"2", 2}, {"3", 1}, {"-1", 1}, {"1e99", 1}, {"//", 1}}) {
    test::WriteFile(InRoot("render.cfg"), std::string("[Render]\ndarkPlants = ") + value);
    EXPECT_EQ(ReadDarkPlants(), dark) << value;
  }
  PutReadOnly("render.cfg", "[Render]\r\n; kept\r\ndarkPlants = 1 // on\r\nother=2\r\n");
  ApplyDarkPlants(false);
  EXPECT_EQ(Content("render.cfg"), "[Render]\r\n; kept\r\ndarkPlants=0\r\nother=2\r\n");
}

TEST_F(GameConfig, ReadsUserPrefsWithTheirDefaultsAndAppliesThemToAReadOnlyFile) {
  PutReadOnly("addon/x/gameprefs.ini",
              "[UserPrefs]\r\nShowFPS = TRUE // shown\r\nVSyncOn=yes\r\nHovercraftForceView=2\r\n"
              "PersonForceView=9\r\nTrackedForceView=1e99\r\nIRCAlternateNick = \"me \" // nick\r\nIRCUserID=\r\n");
  {
    const test::FailingReads disk("gameprefs.ini", 1);
    EXPECT_FALSE(ReadUserPrefs());
  }
  UserPrefs prefs = ReadUserPrefs().value_or(UserPrefs());
  EXPECT_TRUE(prefs.showFps && !prefs.vsyncOn);
  prefs.ircFullName = "Full // name";
  ApplyUserPrefs(prefs);
  EXPECT_EQ(Content("addon/x/gameprefs.ini"),
            "[UserPrefs]\r\nShowFPS=true\r\nVSyncOn=false\r\nHovercraftForceView=2\r\nPersonForceView=9\r\n"
            "TrackedForceView=1e99\r\nIRCAlternateNick=me \r\nIRCUserID=player\r\nWalkerForceView=-1\r\n"
            "IRCFullName=Full // name\r\n");
}

TEST_F(GameConfig, ReadsBelowTheFoldersAndAppliesFromTheRoot) {
  test::WriteFile(InRoot("elsewhere/gameprefs.ini"), "[UserPrefs]\r\nVSyncOn=true");
  EXPECT_FALSE(ReadUserPrefs().has_value());
  ApplyUserPrefs({});
  EXPECT_TRUE(Content("elsewhere/gameprefs.ini")->starts_with("[UserPrefs]\r\nVSyncOn=false\r\n"));
}

}  // namespace
