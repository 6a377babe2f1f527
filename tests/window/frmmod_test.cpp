#include "support/runstate.h"
#include "tests/window/main_window.h"

#include <gtest/gtest.h>

using test::WriteFile;

class ModPage : public test::MainWindowTest {};

TEST_F(ModPage, TellsOfTheGameAloneAndOfTheReadme) {
  WriteFile(sandbox.App() / "Readme.txt", "Read this.\r\n");
  for (const char* version : {"1.3", "1.2"}) {
    SCOPED_TRACE(version);
    ListInstall(version);
    Open();
    const std::string text = main->modPage.txtModDesc.Text();
    const bool is13 = std::string(version) == "1.3";
    EXPECT_TRUE(
        text.starts_with("Standalone Battlezone II\r\nVersion " + std::string(version) + " right out of the box"));
    EXPECT_NE(text.find(is13 ? "have been enabled" : "have been disabled"), std::string::npos);
    EXPECT_TRUE(text.ends_with("Varnik Readme:\r\n" + std::string(100, '-') + "\r\nRead this.\r\n"));
    EXPECT_EQ(varnik::SearchDirs.size(), is13 ? 2u : 3u);
    EXPECT_EQ(main->modPage.frmMod.Caption(), "No Mod");
    EXPECT_FALSE(main->menu.mnuFileEdit.Enabled());
    EXPECT_FALSE(main->menu.mnuEmergencyDeactivate.Enabled());
    main->Close();
  }
}

TEST_F(ModPage, NotesStackUpAndButtonsFollowTheMod) {
  ListInstall();
  WriteFile(sandbox.Install() / "own.exe", "");
  AddMod("plain.bzm", "dname(Plain);\r\ndescription(Words);\r\n");
  AddMod("mute.bzm", "dname(Mute);\r\ndescription( );\r\n");
  AddMod("exe.bzm", "dname(Exe);\r\ndescription(Words);\r\nrequireexe(own.exe);\r\n");
  AddMod("undo.bzm", "dname(Undo);\r\ndescription(Words);\r\nrequireexe(own.exe,/off);\r\n");
  AddMod("on.bzm", "dname(On);\r\ndescription(Words);\r\nactivated();\r\n");
  AddMod("off.bzm", "dname(Off);\r\ndescription(Words);\r\nactivated();\r\nactivatedfile(gone);\r\n");
  WriteFile(sandbox.Install() / "old.bzm", "bz2hald1\r\ndesc Old\r\n\r\n\r\n\r\nmove a,b\r\n");
  WriteFile(sandbox.Install() / "locked.bzm", "BZ2HALD5 /x\r\ndname(Locked);\r\ndescription(Words);\r\n");
  Open();
  const std::string caution = "Caution: Emergeny deactivation is NOT available for this mod.\r\n\r\n";
  const std::string foreign =
      "This mod is a seperate EXE that Varnik has no control over. Thus, Map and Command line information are not "
      "available.\r\n\r\n";
  const std::string legacy =
      "This mod is in the older Halder style. You may want to contact the creator of the mod to get a newer definition "
      "file.\r\n\r\n";
  const struct {
    const char* row;
    std::string text;
    const char* launch;
    bool edit, emergency, pages;
  } cases[] = {
      {"Plain", "Words", "Launch", true, true, true},
      {"Mute", "Sorry, but Mute has no description.", "Launch", true, true, true},
      {"Exe", foreign + caution + "Words", "Launch", true, false, false},
      {"Undo", foreign + "Words", "Launch", true, true, false},
      {"On(ACTIVE)", "Words", "Deactivate", true, true, true},
      {"Off(INACTIVE)", "Words", "Activate", true, true, true},
      {"Old", legacy + "Sorry, but Old has no description.", "Launch", false, true, true},
      {"Locked", "Words", "Launch", false, true, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.row);
    ASSERT_TRUE(SelectMod(c.row));
    EXPECT_EQ(main->modPage.txtModDesc.Text(), c.text);
    EXPECT_EQ(main->cmdLaunchBZ2.Caption(), c.launch);
    EXPECT_EQ(main->menu.mnuFileEdit.Enabled(), c.edit);
    EXPECT_EQ(main->menu.mnuEmergencyDeactivate.Enabled(), c.emergency);
    EXPECT_EQ(main->SettingTree.Exists("SMap1.4"), c.pages);
    EXPECT_EQ(main->SettingTree.Exists("CCMD1"), c.pages);
    EXPECT_TRUE(main->SettingTree.Bold("RMod"));
  }
  ASSERT_TRUE(SelectMod("Exe"));
  ASSERT_TRUE(SelectMod("<No Mod>"));
  EXPECT_FALSE(main->SettingTree.Bold("RMod"));
  EXPECT_EQ(main->SettingTree.FullPath("SMap1.3"), "Maps: DeathMatch: Loot");
}

TEST_F(ModPage, APictureOnlyShortensTheText) {
  ListInstall();
  AddMod("shown.bzm", "dname(Shown);\r\nimage(shot.bmp);\r\n");
  AddMod("bare.bzm", "dname(Bare);\r\nimage(gone.bmp);\r\n");
  std::filesystem::copy_file(SOURCE_DIR "/data/nomappics/stars.bmp", sandbox.Install() / "shot.bmp");
  Open();
  const struct {
    const char* row;
    double height;
  } cases[] = {{"<No Mod>", 3255}, {"Shown", 1635}, {"Bare", 3255}};
  for (const auto& c : cases) {
    ASSERT_TRUE(SelectMod(c.row));
    EXPECT_NEAR(main->modPage.txtModDesc.Height(), c.height, 20) << c.row;
    EXPECT_FALSE(main->modPage.picModPic.Visible()) << c.row;
  }
}

TEST_F(ModPage, AModWithoutANameIsTheFirstRow) {
  ListInstall();
  AddMod("nameless.bzm", "description(Words);\r\n");
  Open();
  EXPECT_EQ(main->modPage.lstmods.List(0), "");
  EXPECT_EQ(main->modPage.txtModDesc.Text(), "Words");
}

TEST_F(ModPage, HintsFollowTheMouse) {
  ListInstall();
  Open();
  test::HoverOver(main->cmdLaunchBZ2);
  EXPECT_EQ(main->StatusBar1.PanelText(1), "Launches Battlezone II with whatever options you selected.");
  test::HoverOver(main->lblBZ2LocVer);
  EXPECT_EQ(main->StatusBar1.PanelText(1), "Launches Battlezone II with whatever options you selected.");
  test::HoverOver(main->modPage.lstmods);
  EXPECT_EQ(main->StatusBar1.PanelText(1), "List of Mods. Click to select.");
}
