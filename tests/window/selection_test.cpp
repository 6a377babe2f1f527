#include "modengine/catalogue.h"
#include "support/install.h"
#include "support/runstate.h"
#include "support/settings.h"
#include "tests/window/main_window.h"
#include "windowing/frame.h"

#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using test::WriteFile;

constexpr int kEventBudget = 250;  // milliseconds, behind which a call for events is served in any case

class Selection : public test::MainWindowTest {
 protected:
  void ListSecond(const std::string& version) {
    const auto folder = sandbox.Root() / "second";
    for (const char* file : {"bzone.exe", "data.pak", "binkw32.dll"})
      WriteFile(folder / file, "");
    WriteFile(folder / "addon" / "localize.odf", "[Network]\r\nVersionStr=" + version + "\r\n");
    varnik::Store(varnik::kInstallsSection, "BZ2Loc1", folder.string());
    varnik::Store(varnik::kInstallsSection, "BZ2Des1", "Second & last");
    varnik::Store(varnik::kInstallsSection, "BZ2Sel1", "Yes");
  }
};

TEST_F(Selection, BringsTheWindowInLine) {
  ListInstall("1.2");
  Open();
  EXPECT_EQ(varnik::CurrentInstall, 0);
  EXPECT_EQ(main->lblBZ2LocVer.Caption(), "Current BZ2 Dir: " + sandbox.InstallText() + "\r\nVersion: 1.2");
  EXPECT_TRUE(main->SettingTree.Enabled());
  EXPECT_EQ(main->SettingTree.SelectedItem(), "RMod");
  EXPECT_TRUE(main->modPage.frmMod.Visible());
  EXPECT_FALSE(main->lblNoBZ2Dir.Visible());
  EXPECT_TRUE(main->cmdLaunchBZ2.Enabled());
  EXPECT_TRUE(main->menu.mnuBZ2Sel[0].Checked());
  EXPECT_FALSE(main->menu.mnuBZ2Sel[0].Enabled());
  EXPECT_TRUE(main->hidden.mnuRunModH.Visible());
  EXPECT_EQ(main->hidden.mnuRunModHBZ2.Caption(), main->menu.mnuBZ2Sel[0].Caption());
  EXPECT_EQ(main->cmdLinePage.lstCmdLine.ListCount(), 3);
  EXPECT_EQ(main->cmdLinePage.txtCmdLine.Text(), "/win");
}

TEST_F(Selection, MenusFollowTheStore) {
  ListInstall("1.2");
  ListSecond("1.3");
  varnik::Store(varnik::kInstallsSection, "BZ2Sel0", "yes");
  Open();
  EXPECT_FALSE(main->menu.mnuBZ2Sel[0].Visible());
  EXPECT_FALSE(main->hidden.mnuBZ2SelH[0].Visible());
  EXPECT_TRUE(main->menu.mnuBZ2Sel[1].Visible());
  EXPECT_EQ(main->menu.mnuBZ2Sel[1].Caption(), "Second && last");
  EXPECT_TRUE(main->hidden.mnuBZ2DirH.Visible());
}

TEST_F(Selection, TheVersionDecidesAboutTheNodeOfItsSettings) {
  ListInstall("1.2");
  ListSecond("1.3");
  Open();
  for (const int index : {1, 1, 0, 0, 1}) {
    main->activatebz2(index, true);
    EXPECT_EQ(main->SettingTree.Exists("CCFG1"), index == 1);
    EXPECT_EQ(varnik::ReadStored(varnik::kInstallsSection, "Active"), std::to_string(index));
  }
}

TEST_F(Selection, NoInstallKeepsWhatIsStoredAndDisablesNewFilesForGood) {
  ListInstall();
  Open();
  EXPECT_TRUE(main->menu.mnuFileNew.Enabled());
  main->activatebz2(-1, false);
  EXPECT_EQ(varnik::CurrentInstall, -1);
  EXPECT_EQ(varnik::ReadStored(varnik::kInstallsSection, "Active"), "0");
  EXPECT_EQ(main->txtActivePage.Text(), "No BZ2 Location Selected");
  EXPECT_EQ(main->SettingTree.Text("RMod"), "Mods");
  EXPECT_FALSE(main->modPage.frmMod.Visible());
  EXPECT_FALSE(main->menu.mnubz2reload.Enabled());
  EXPECT_FALSE(main->hidden.mnuRunModH.Visible());
  main->activatebz2(0, false);
  EXPECT_FALSE(main->menu.mnuFileNew.Enabled());
  EXPECT_TRUE(main->Enabled());
  EXPECT_FALSE(busy.Visible());
}

TEST_F(Selection, ReloadKeySeesANewModAndForgetsHandEdits) {
  ListInstall();
  Open();
  AddMod("late.bzm", "dname(Late);\r\n");
  main->cmdLinePage.txtCmdLine.SetText("typed");
  main->SettingTree_NodeClick("RMap");
  main->cmdLinePage.txtMapFileName.SetText("chosen.bzn");
  test::ClickMenu(main->menu.mnubz2reload);
  EXPECT_TRUE(test::Await([&] { return main->cmdLinePage.txtMapFileName.Text().empty(); }));
  EXPECT_TRUE(SelectMod("Late"));
  EXPECT_EQ(main->cmdLinePage.txtCmdLine.Text(), "/win");
  EXPECT_EQ(main->hidden.mnuModH.UBound(), 1);
  EXPECT_EQ(main->hidden.mnuModH[1].Tag(), "1");
}

TEST_F(Selection, AnInstallThatVanishedLeavesAWindowThatWorks) {
  ListInstall();
  Open();
  std::filesystem::remove_all(sandbox.Install());
  main->activatebz2(0, false);
  EXPECT_EQ(main->modPage.lstmods.ListCount(), 1);
  test::ClickNode(main->SettingTree, "Extras");
  EXPECT_TRUE(main->extrasPage.frmExtras.Visible());
}

TEST_F(Selection, EachNodeShowsItsPage) {
  ListInstall("1.3");
  WriteFile(sandbox.Install() / "addon" / "gameprefs.ini", "[UserPrefs]\r\n");
  Open();
  const struct {
    const char* key;
    const char* title;
    win::Frame& frame;
  } cases[] = {
      {"RMod", "Mods", main->modPage.frmMod},
      {"RMap", "Maps", main->mapPage.frmMap},
      {"SMap1.1", "Maps: DeathMatch: Capture The Flag", main->mapPage.frmMap},
      {"CMap5", "Maps: Other", main->mapPage.frmMap},
      {"RCMD", "Command Line Options", main->cmdLinePage.frmCmdLine},
      {"CCMD1", "Command Line Options: Edit List", main->cmdLineEditPage.frmCMDLineEdit},
      {"RCFG", "BZ2 Configuration", main->configPage.frmBZ2Config},
      {"CCFG1", "BZ2 Configuration: 1.3 Configuration", main->config13Page.frmBZ2Config1_3},
      {"RExtra", "Extras", main->extrasPage.frmExtras},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.key);
    main->SettingTree_NodeClick(c.key);
    EXPECT_EQ(main->txtActivePage.Text(), c.title);
    for (const auto& other : cases)
      EXPECT_EQ(other.frame.Visible(), &other.frame == &c.frame) << other.key;
  }
}

// The tray's menu works while the window takes no input.
TEST_F(Selection, NoSecondOneStartsWhileOneIsUnderWay) {
  ListInstall();
  ListSecond("1.2");
  AddMod("one.bzm", "dname(One);\r\n");
  WriteFile(sandbox.Root() / "second" / "two.bzm", "BZ2HALD5\r\ndname(Two);\r\n");
  Open();
  main->activatebz2(1, false);
  QTest::qWait(kEventBudget);
  QTimer events;
  QObject::connect(&events, &QTimer::timeout, [this] {
    if (varnik::CurrentInstall == 0) main->hidden.mnuBZ2SelH.Click(1);
  });
  events.start(0);
  main->activatebz2(0, false);
  events.stop();
  EXPECT_EQ(varnik::CurrentInstall, 0);
  EXPECT_TRUE(SelectMod("One"));
  EXPECT_FALSE(SelectMod("Two"));
  EXPECT_TRUE(main->Enabled());
}

// A page that reads a file runs events, as a held key in the tree sends them.
TEST_F(Selection, OfPagesChosenInARowTheLastShows) {
  ListInstall("1.3");
  WriteFile(sandbox.Install() / "addon" / "gameprefs.ini", "[UserPrefs]\r\n");
  Open();
  for (const char* key : {"RCFG", "CCFG1"}) {
    SCOPED_TRACE(key);
    QTest::qWait(kEventBudget);
    QTimer::singleShot(0, main->SettingTree.Widget(), [this] { main->SettingTree_NodeClick("RMod"); });
    main->SettingTree_NodeClick(key);
    test::RunEvents();
    EXPECT_EQ(main->txtActivePage.Text(), "Mods");
    EXPECT_TRUE(main->modPage.frmMod.Visible());
    EXPECT_FALSE(main->configPage.frmBZ2Config.Visible() || main->config13Page.frmBZ2Config1_3.Visible());
  }
}

TEST_F(Selection, WithoutItsFileTheVersionPageGivesWay) {
  ListInstall("1.3");
  Open();
  boxes.ExpectMsgBox("Sorry, but the 1.3 options file was not found.");
  main->SettingTree_NodeClick("CCFG1");
  EXPECT_EQ(main->SettingTree.SelectedItem(), "RCFG");
  EXPECT_TRUE(main->configPage.frmBZ2Config.Visible());
}
