#include "support/install.h"
#include "support/runstate.h"
#include "support/settings.h"
#include "tests/window/main_window.h"

#include <gtest/gtest.h>

using varnik::ReadOption;
using varnik::StoreOption;

class Lifecycle : public test::MainWindowTest {};

TEST_F(Lifecycle, FirstStartOpensWithoutAnInstall) {
  Open();
  EXPECT_NEAR(main->Left(), 1000, 30);
  EXPECT_NEAR(main->Top(), 1000, 30);
  EXPECT_TRUE(main->StatusBar1.Visible());
  EXPECT_FALSE(main->SettingTree.Enabled());
  EXPECT_FALSE(main->cmdLaunchBZ2.Enabled());
  EXPECT_TRUE(main->lblNoBZ2Dir.Visible());
  EXPECT_EQ(main->lblBZ2LocVer.Caption(), "Current BZ2 Dir: None\r\nVersion: N/A");
  EXPECT_EQ(main->txtActivePage.Text(), "No BZ2 Location Selected");
  EXPECT_FALSE(main->menu.mnuBZ2Sel[0].Visible());
  EXPECT_FALSE(main->menu.mnuBZ2DirSpacer.Visible());
  EXPECT_FALSE(main->hidden.mnuBZ2DirH.Visible());
  EXPECT_FALSE(main->tray.IsHooked());
}

TEST_F(Lifecycle, OnlyTheExactWordKeepsTheStatusBar) {
  const struct {
    const char* stored;
    bool shown;
  } cases[] = {{"On", true}, {"on", false}, {"Off", false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored);
    StoreOption("StatusBar", c.stored);
    Open();
    EXPECT_EQ(main->StatusBar1.Visible(), c.shown);
    main->Close();
  }
}

TEST_F(Lifecycle, TheBarTakesItsHeightAlongAndBringsItBack) {
  Open();
  const double tall = main->Height();
  main->showstatusbar(true);
  EXPECT_DOUBLE_EQ(main->Height(), tall);
  main->showstatusbar(false);
  EXPECT_NEAR(main->Height(), tall - main->StatusBar1.Height(), 20);
  main->showstatusbar(false);
  EXPECT_NEAR(main->Height(), tall - main->StatusBar1.Height(), 20);
  main->showstatusbar(true);
  EXPECT_NEAR(main->Height(), tall, 20);
}

TEST_F(Lifecycle, OutOfRangeAndForeignStoredValuesDoNoHarm) {
  for (const auto& [key, value] :
       {std::pair{"NoMapPic", "99"}, {"TrayIconNum", "abc"}, {"MainLeft", "letters"}, {"MainTop", "1e300"}})
    StoreOption(key, value);
  varnik::Store(varnik::kInstallsSection, "Active", "123456789");
  Open();
  EXPECT_EQ(varnik::CurrentInstall, -1);
  EXPECT_FALSE(main->mapPage.imgnomap.Image().Empty());
  EXPECT_EQ(ReadOption("NoMapPic"), "99");
  EXPECT_LT(main->Top(), 200000);
}

TEST_F(Lifecycle, PlaceIsKeptUnlessTheWindowIsMinimized) {
  Open();
  main->Move(1500, 1800);
  main->Close();
  EXPECT_NEAR(std::stod(ReadOption("MainLeft")), 1500, 30);
  EXPECT_NEAR(std::stod(ReadOption("MainTop")), 1800, 30);
  StoreOption("MainLeft", "1234");
  Open();
  main->SetState(win::WindowState::kMinimized);
  main->Close();
  EXPECT_EQ(ReadOption("MainLeft"), "1234");
}

TEST_F(Lifecycle, RefusesToCloseWhileTheGameRuns) {
  Open();
  varnik::GameRunning = true;
  for (const auto mode : {win::UnloadMode::kControlMenu, win::UnloadMode::kFormCode, win::UnloadMode::kAppWindows})
    EXPECT_FALSE(main->Close(mode));
  varnik::GameRunning = false;
  EXPECT_TRUE(main->Close());
}

TEST_F(Lifecycle, ARefusedTrayTurnsThePreferenceOff) {
  StoreOption("TrayIcon", "1");
  Open();
  EXPECT_EQ(ReadOption("TrayIcon"), "0");
  EXPECT_FALSE(main->menu.mnuShowTray.Checked());
  EXPECT_FALSE(main->menu.mnuFileHide.Visible());
}
