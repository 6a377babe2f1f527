#include "installs/ui/frmaddrembz2.h"
#include "mainwindow/frmmain.h"
#include "maps/maplist.h"
#include "support/install.h"
#include "support/ui/frmabout.h"
#include "tests/window/pagetest.h"
#include "tests/window/picture_corpus.h"

#include <QLabel>
#include <QTimer>

using varnik::CurrentInstall;
using varnik::ReadOption;
using varnik::StoreOption;

namespace {

constexpr int kEventBudget = 250;  // milliseconds, after which a call for events is served in any case

class MainWindow : public test::MainWindowTest {
 protected:
  void ListSecond(const std::string& version) {
    const std::filesystem::path folder = sandbox.Root() / "second";
    for (const char* file : {"bzone.exe", "data.pak", "binkw32.dll"})
      test::WriteFile(folder / file, "");
    test::WriteFile(folder / "addon" / "localize.odf", "[Network]\r\nVersionStr=" + version + "\r\n");
    test::WriteFile(folder / "two.bzm", "BZ2HALD5\r\ndname(Two);\r\n");
    for (const auto& [key, value] : {std::pair{"Loc1", folder.string()}, {"Des1", "Second & last"}, {"Sel1", "Yes"}})
      varnik::Store(varnik::kInstallsSection, std::string("BZ2") + key, value);
  }

  // What can be used with the install that is selected, and the page that shows.
  std::string State() const {
    std::string state;
    if (main->SettingTree.Enabled()) state += "tree ";
    if (main->cmdLaunchBZ2.Enabled()) state += "launch ";
    if (main->menu.mnuFileNew.Enabled()) state += "new ";
    if (main->menu.mnubz2reload.Enabled()) state += "reload ";
    if (main->hidden.mnuRunModH.Visible()) state += "run ";
    if (main->modPage.frmMod.Visible()) state += "mods ";
    if (main->lblNoBZ2Dir.Visible()) state += "please ";
    if (main->menu.mnuBZ2Sel[0].Visible()) state += "row ";
    return state + main->txtActivePage.Text();
  }
};

TEST_F(MainWindow, TheFirstStartOpensWithoutAnInstall) {
  test::WriteFile(sandbox.App() / "nomappics/own.bmp", test::SoundPicture("bmp"));
  Open();
  EXPECT_NEAR(main->Left(), 1000, 30);
  EXPECT_NEAR(main->Top(), 1000, 30);
  EXPECT_EQ(State(), "please No BZ2 Location Selected");
  EXPECT_EQ(main->lblBZ2LocVer.Caption(), "Current BZ2 Dir: None\r\nVersion: N/A");
  EXPECT_FALSE(main->menu.mnuBZ2DirSpacer.Visible() || main->hidden.mnuBZ2DirH.Visible());
  EXPECT_EQ(main->imglstnomap.Count(), 2);
  EXPECT_FALSE(main->menu.mnuFileEdit.Enabled() || main->menu.mnuEmergencyDeactivate.Enabled());
  std::string opened;
  test::DuringModal([&opened](win::Form& form) {
    opened = form.Name();
    form.Close();
  });
  test::ClickOn(main->cmdAddInstall);
  EXPECT_EQ(opened, "frmAddRemBZ2");
}

TEST_F(MainWindow, TheStatusBarTakesItsHeightAlongAndBringsItBack) {
  for (const auto& [stored, shown] : {std::pair{"on", false}, {"On", true}}) {
    StoreOption("StatusBar", stored);
    Open();
    EXPECT_EQ(main->StatusBar1.Visible(), shown) << stored;
  }
  const double tall = main->Height();
  for (const bool shown : {true, false, false, true}) {
    main->showstatusbar(shown);
    EXPECT_NEAR(main->Height(), tall - (shown ? 0 : main->StatusBar1.Height()), 20);
  }
}

TEST_F(MainWindow, StoredValuesOutOfRangeDoNoHarm) {
  StoreOption("NoMapPic", "99");
  StoreOption("TrayIcon", "1");
  StoreOption("MainTop", "1e300");
  varnik::Store(varnik::kInstallsSection, "Active", "123456789");
  Open();
  EXPECT_EQ(CurrentInstall, -1);
  EXPECT_FALSE(main->mapPage.imgnomap.Image().Empty());
  EXPECT_LT(main->Top(), 200000);
  EXPECT_EQ(ReadOption("NoMapPic") + ReadOption("TrayIcon"), "990") << "there is no tray";
  EXPECT_FALSE(main->menu.mnuShowTray.Checked() || main->menu.mnuFileHide.Visible());
}

TEST_F(MainWindow, ClosesTheOtherFormsAndKeepsItsPlaceUnlessMinimized) {
  Open();
  main->Move(1500, 1800);
  win::Form other("frmOther", 1500, 1500);
  other.Show();
  varnik::GameRunning = true;
  EXPECT_FALSE(main->Close(win::UnloadMode::kControlMenu) || main->Close(win::UnloadMode::kAppWindows));
  varnik::GameRunning = false;
  EXPECT_TRUE(main->Close());
  EXPECT_FALSE(other.Loaded());
  EXPECT_NEAR(std::stod(ReadOption("MainLeft")), 1500, 30);
  EXPECT_NEAR(std::stod(ReadOption("MainTop")), 1800, 30);
  StoreOption("MainLeft", "1234");
  Open();
  main->SetState(win::WindowState::kMinimized);
  main->Close();
  EXPECT_EQ(ReadOption("MainLeft"), "1234");
}

TEST_F(MainWindow, FollowsTheSelectedInstall) {
  ListInstall("1.2");
  ListSecond("1.3");
  Put("addon/map.bzn", "");
  test::WriteFile(sandbox.App() / "Readme.txt", "Read this.\r\n");
  Open();
  EXPECT_EQ(State(), "tree launch new reload run mods row Mods");
  EXPECT_EQ(main->lblBZ2LocVer.Caption(), "Current BZ2 Dir: " + sandbox.InstallText() + "\r\nVersion: 1.2");
  EXPECT_EQ(main->SettingTree.SelectedItem(), "RMod");
  EXPECT_TRUE(main->menu.mnuBZ2Sel[0].Checked() && !main->menu.mnuBZ2Sel[0].Enabled());
  EXPECT_TRUE(main->modPage.txtModDesc.Text().starts_with("Standalone Battlezone II\r\nVersion 1.2 right out of"));
  EXPECT_TRUE(main->modPage.txtModDesc.Text().ends_with(std::string(100, '-') + "\r\nRead this.\r\n"));
  EXPECT_FALSE(main->menu.mnuFileEdit.Enabled() || main->menu.mnuEmergencyDeactivate.Enabled());
  EXPECT_EQ(main->menu.mnuBZ2Sel[1].Caption(), "Second && last");
  EXPECT_EQ(main->cmdLinePage.lstCmdLine.ListCount(), 3);
  EXPECT_EQ(main->cmdLinePage.txtCmdLine.Text(), "/win");
  main->SettingTree_NodeClick("RMap");
  EXPECT_EQ(varnik::MapList.size(), 2u);
  for (const int index : {1, 1, 0, 0, 1}) {
    main->hidden.mnuBZ2SelH.Click(index);
    EXPECT_EQ(main->SettingTree.Exists("CCFG1"), index == 1);
    EXPECT_EQ(main->modPage.txtModDesc.Text().find("have been enabled") != std::string::npos, index == 1);
    EXPECT_EQ(varnik::ReadStored(varnik::kInstallsSection, "Active"), std::to_string(index));
    EXPECT_EQ(main->hidden.mnuRunModHBZ2.Caption(), main->menu.mnuBZ2Sel[index].Caption());
    EXPECT_EQ(varnik::MapList.size(), 1u) << "the maps of the last install are forgotten";
  }
  varnik::Store(varnik::kInstallsSection, "BZ2Sel0", "yes");
  test::DuringModal([](win::Form& form) { test::ClickOn(dynamic_cast<varnik::frmAddRemBZ2&>(form).cmdSaveChanges); });
  test::ClickMenu(main->menu.mnuBZ2DirAddRem);
  EXPECT_EQ(State(), "please No BZ2 Location Selected") << "the player picks one";
  EXPECT_TRUE(CurrentInstall == -1 && main->hidden.mnuBZ2DirH.Visible());
  EXPECT_EQ(main->SettingTree.Text("RMod"), "Mods");
  main->activatebz2(1, false);
  EXPECT_EQ(State(), "tree launch reload run mods Mods") << "new files stay disabled";
  EXPECT_TRUE(main->Enabled() && !busy.Visible());
  main->activatebz2(-1, false);
  EXPECT_EQ(varnik::ReadStored(varnik::kInstallsSection, "Active"), "1");
}

TEST_F(MainWindow, AReloadSeesANewModAndForgetsHandEdits) {
  ListInstall();
  Open();
  AddMod("late.bzm", "dname(Late);\r\n");
  main->cmdLinePage.txtCmdLine.SetText("typed");
  test::PressKey(main->SettingTree, Qt::Key_F5);
  EXPECT_TRUE(SelectMod("Late"));
  EXPECT_EQ(main->cmdLinePage.txtCmdLine.Text(), "/win");
  main->SettingTree_NodeClick("RMap");
  main->cmdLinePage.txtMapFileName.SetText("chosen.bzn");
  test::ClickMenu(main->menu.mnubz2reload);
  EXPECT_TRUE(test::Await([&] { return main->cmdLinePage.txtMapFileName.Text().empty(); }));
  ASSERT_EQ(main->hidden.mnuModH.UBound(), 1);
  EXPECT_EQ(main->hidden.mnuModH[1].Tag(), "1");
  std::filesystem::remove_all(sandbox.Install());
  main->activatebz2(0, false);
  EXPECT_EQ(main->modPage.lstmods.ListCount(), 1) << "the install has vanished";
}

TEST_F(MainWindow, EachNodeShowsItsPage) {
  ListInstall("1.3");
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
  ExpectMsgBox("Sorry, but the 1.3 options file was not found.");
  main->SettingTree_NodeClick("CCFG1");
  EXPECT_EQ(main->SettingTree.SelectedItem(), "RCFG");
  EXPECT_TRUE(main->configPage.frmBZ2Config.Visible());
  Put("addon/gameprefs.ini", "[UserPrefs]\r\n");
  Put("screenshots/new.bmp", "");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.key);
    main->SettingTree_NodeClick(c.key);
    EXPECT_EQ(main->txtActivePage.Text(), c.title);
    for (const auto& other : cases)
      EXPECT_EQ(other.frame.Visible(), &other.frame == &c.frame) << other.key;
  }
  EXPECT_EQ(main->extrasPage.cmbScreenshots.ListCount(), 1);
  main->SettingTree_NodeClick("CCMD1");
  test::ClickTick(main->cmdLineEditPage.lstCmdLineParam, 0);
  ExpectMsgBox("Would you like to save your changes to the current file?", win::Answer::kNo);
  test::ClickNode(main->SettingTree, "Maps");
  // A page that reads a file runs events, as a held key in the tree sends them.
  for (const char* key : {"RCFG", "CCFG1"}) {
    test::RunEvents(kEventBudget);
    QTimer::singleShot(0, main->SettingTree.Widget(), [this] { main->SettingTree_NodeClick("RMod"); });
    main->SettingTree_NodeClick(key);
    test::RunEvents();
    EXPECT_EQ(main->txtActivePage.Text(), "Mods");
    for (const auto& other : cases)
      EXPECT_EQ(other.frame.Visible(), &other == &cases[0]) << key;
  }
}

// The tray's menu works while the window takes no input.
TEST_F(MainWindow, NoSecondSelectionStartsDuringTheFirst) {
  ListInstall();
  ListSecond("1.2");
  AddMod("one.bzm", "dname(One);\r\n");
  Open();
  main->activatebz2(1, false);
  test::RunEvents(kEventBudget);
  QTimer events;
  QObject::connect(&events, &QTimer::timeout, [this] {
    if (CurrentInstall == 0) main->hidden.mnuBZ2SelH.Click(1);
  });
  events.start(0);
  main->activatebz2(0, false);
  events.stop();
  EXPECT_EQ(CurrentInstall, 0);
  EXPECT_TRUE(SelectMod("One") && !SelectMod("Two") && main->Enabled());
}

TEST_F(MainWindow, EachRowOfTheMenuOpensItsWindow) {
  ListInstall();
  AddMod("own.bzm", "dname(Own);\r\n");
  Open();
  ASSERT_TRUE(SelectMod("Own"));
  const std::pair<win::MenuItem*, const char*> rows[] = {
      {&main->menu.mnuFileNew, "Create New Mod File"}, {&main->menu.mnuFileEdit, "Edit Mod File: own.bzm"},
      {&main->menu.mnuOptions, "Varnik Options"},      {&main->menu.mnuBZ2DirAddRem, "Add/Remove BZ2 Locations"},
      {&main->menu.mnuHelpAbout, "About Varnik"},
  };
  for (const auto& [row, title] : rows) {
    ASSERT_TRUE(SelectMod("Own")) << "a window for definitions reloads the install";
    std::string shown;
    test::DuringModal([this, &shown](win::Form& form) {
      shown = form.Caption();
      if (auto* about = dynamic_cast<varnik::frmAbout*>(&form)) {
        ExpectMsgBox("System Information Is Unavailable At This Time");
        about->cmdSysInfo.Press();
      }
      QTest::keyClick(form.Window(), Qt::Key_Escape);
    });
    test::ClickMenu(*row);
    EXPECT_EQ(shown, title);
  }
}

TEST_F(MainWindow, NotesStackUpAndButtonsFollowTheMod) {
  const std::string caution = "Caution: Emergeny deactivation is NOT available for this mod.\r\n\r\n";
  const std::string foreign =
      "This mod is a seperate EXE that Varnik has no control over. Thus, Map and Command line information are not "
      "available.\r\n\r\n";
  const std::string legacy =
      "This mod is in the older Halder style. You may want to contact the creator of the mod to get a newer definition "
      "file.\r\n\r\n";
  const struct {
    std::string name, state, lines, text, buttons;
  } cases[] = {
      {"Plain", "", "image(shot.bmp);", "Words", "Launch edit emergency pages"},
      {"Exe", "", "requireexe(own.exe);", foreign + caution + "Words", "Launch edit "},
      {"Undo", "", "requireexe(own.exe,/off);", foreign + "Words", "Launch edit emergency "},
      {"On", "(ACTIVE)", "activated();", "Words", "Deactivate edit emergency pages"},
      {"Off", "(INACTIVE)", "activated();\r\nactivatedfile(gone);", "Words", "Activate edit emergency pages"},
      {"", "", "", "Words", "Launch edit emergency pages"},
      {"Locked", "", "", "Words", "Launch emergency pages"},
      {"Old", "", "", legacy + "Sorry, but Old has no description.", "Launch emergency pages"},
  };
  ListInstall();
  Put("shot.bmp", test::SoundPicture("bmp"));
  Put("own.exe", "");
  for (const auto& c : cases)
    AddMod(c.name + ".bzm", "dname(" + c.name + ");\r\ndescription(Words);\r\n" + c.lines + "\r\n");
  Put("Locked.bzm", "BZ2HALD5 /x\r\ndname(Locked);\r\ndescription(Words);\r\n");
  Put("Old.bzm", "bz2hald1\r\ndesc Old\r\n\r\n\r\n\r\nmove a,b\r\n");
  Open();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ASSERT_TRUE(SelectMod(c.name + c.state));
    EXPECT_EQ(main->modPage.txtModDesc.Text(), c.text);
    EXPECT_NEAR(main->modPage.txtModDesc.Height(), c.name == "Plain" ? 1635 : 3255, 20);
    std::string buttons = main->cmdLaunchBZ2.Caption() + " ";
    if (main->menu.mnuFileEdit.Enabled()) buttons += "edit ";
    if (main->menu.mnuEmergencyDeactivate.Enabled()) buttons += "emergency ";
    if (main->SettingTree.Exists("SMap1.4") && main->SettingTree.Exists("CCMD1")) buttons += "pages";
    EXPECT_EQ(buttons, c.buttons);
    EXPECT_TRUE(main->SettingTree.Bold("RMod") && !main->modPage.picModPic.Visible());
  }
  ASSERT_TRUE(SelectMod("Exe") && SelectMod("<No Mod>"));
  EXPECT_FALSE(main->SettingTree.Bold("RMod"));
  EXPECT_EQ(main->SettingTree.FullPath("SMap1.3"), "Maps: DeathMatch: Loot");
}

TEST_F(MainWindow, HintsFollowTheMouseAndAtAComboBoxTheFocus) {
  ListInstall("1.3");
  Put("addon/gameprefs.ini", "[UserPrefs]\r\n");
  Open();
  const auto expectHint = [this](const win::Control& control, const std::string& hint) {
    test::HoverOver(control);
    test::RunEvents();
    EXPECT_EQ(main->StatusBar1.PanelText(1), hint);
    EXPECT_EQ(main->StatusBar1.Widget()->findChild<QLabel*>()->toolTip().toStdString(), hint);
  };
  expectHint(main->cmdLaunchBZ2, "Launches Battlezone II with whatever options you selected.");
  expectHint(main->modPage.txtModDesc, "Mod Description/Information.");
  expectHint(main->lblBZ2LocVer, "Mod Description/Information.");
  expectHint(main->modPage.lstmods, "List of Mods. Click to select.");
  main->SettingTree_NodeClick("CCFG1");
  expectHint(main->config13Page.cmbWalker, "List of Mods. Click to select.");
  test::ShowActive(*main);
  main->config13Page.cmbWalker.SetFocus();
  expectHint(main->config13Page.cmbWalker, "View mode for entering a Walker.");
}

}  // namespace
