#include "modengine/catalogue.h"
#include "support/install.h"
#include "support/runstate.h"
#include "tests/window/main_window.h"

#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

#include <algorithm>

using test::ReadFile;
using test::WriteFile;

class Launch : public test::MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    ListInstall();
    WriteFile(sandbox.Install() / "bzone.exe", "#!/bin/sh\nls > seen.txt\necho \"line:$*\" >> seen.txt\n");
    WriteFile(sandbox.Install() / "old.txt", "");
    AddMod("plain.bzm", "dname(Plain);\r\nrename(old.txt,new.txt);\r\nfold(extra);\r\n");
    AddMod("stay.bzm", "dname(Stay);\r\nactivated();\r\nactivatedfile(stayed.txt);\r\nrename(old.txt,stayed.txt);\r\n");
  }

  std::string Seen() const { return ReadFile(sandbox.Install() / "seen.txt"); }
  bool Exists(const char* name) const { return std::filesystem::exists(sandbox.Install() / name); }
};

TEST_F(Launch, RunsAModAndPutsEverythingBack) {
  Open();
  const auto before = test::Snapshot(sandbox.Install());
  ASSERT_TRUE(SelectMod("Plain"));
  test::ClickOn(main->cmdLaunchBZ2);
  EXPECT_NE(Seen().find("new.txt"), std::string::npos);
  EXPECT_NE(Seen().find("bzonevarnik.bak"), std::string::npos);
  EXPECT_NE(Seen().find("line:/win"), std::string::npos);
  std::filesystem::remove(sandbox.Install() / "seen.txt");
  EXPECT_EQ(test::Snapshot(sandbox.Install()), before);
  EXPECT_TRUE(main->Visible());
  EXPECT_EQ(main->State(), win::WindowState::kNormal);
}

TEST_F(Launch, APersistentModIsSwitchedAndTheListFollows) {
  Open();
  ASSERT_TRUE(SelectMod("Stay(INACTIVE)"));
  test::ClickOn(main->cmdLaunchBZ2);
  EXPECT_TRUE(Exists("stayed.txt"));
  EXPECT_FALSE(Exists("seen.txt"));
  ASSERT_TRUE(SelectMod("Stay(ACTIVE)"));
  test::ClickOn(main->cmdLaunchBZ2);
  EXPECT_TRUE(Exists("old.txt"));
  EXPECT_TRUE(SelectMod("Stay(INACTIVE)"));
}

TEST_F(Launch, TheTrayRunsAPersistentModLikeAPlainOne) {
  Open();
  main->cmdLinePage.txtMapFileName.SetText("map.bzn");
  main->cmdLinePage.txtCmdLine.SetText("/win /edit");
  const int row = static_cast<int>(varnik::FindMod("stay.bzm"));
  test::ClickMenu(main->hidden.mnuModH[row]);
  EXPECT_NE(Seen().find("stayed.txt"), std::string::npos);
  EXPECT_NE(Seen().find("line:/win"), std::string::npos);
  EXPECT_EQ(Seen().find("edit"), std::string::npos);
  EXPECT_EQ(Seen().find("map.bzn"), std::string::npos);
  EXPECT_TRUE(Exists("old.txt"));
}

TEST_F(Launch, AChangedCatalogueIsSaidAndReloaded) {
  const std::string end = "Reloading BZ2 location for you now.";
  const struct {
    const char* content;  // nullptr: the file is gone
    std::string message;
  } cases[] = {
      {nullptr,
       "Mod File is Missing.\r\nDon't delete files once Varnik has loaded, or reload your BZ2 location once "
       "you have.\r\n" +
           end},
      {"BZ2HALD4\r\n",
       "Mod has an invalid version #.\r\nDon't edit files once Varnik has loaded your mod list, or "
       "reload your BZ2 location once you have edited them.\r\n" +
           end},
      {"nothing\r\n",
       "Mod File is improperly formatted.\r\nDon't edit files once Varnik has loaded your mod list, or "
       "reload your BZ2 location once you have edited them.\r\n" +
           end},
  };
  for (const auto& c : cases) {
    AddMod("plain.bzm", "dname(Plain);\r\nrename(old.txt,new.txt);\r\n");
    Open();
    ASSERT_TRUE(SelectMod("Plain"));
    std::filesystem::remove(sandbox.Install() / "plain.bzm");
    if (c.content) WriteFile(sandbox.Install() / "plain.bzm", c.content);
    boxes.ExpectMsgBox(c.message);
    test::ClickOn(main->cmdLaunchBZ2);
    EXPECT_FALSE(SelectMod("Plain"));
    EXPECT_FALSE(Exists("seen.txt"));
    EXPECT_TRUE(main->Visible());
    main->Close();
  }
}

TEST_F(Launch, AMinimizedWindowComesBackMinimized) {
  Open();
  main->SetState(win::WindowState::kMinimized);
  test::RunEvents();
  main->cmdLaunchBZ2.Press();
  EXPECT_TRUE(Exists("seen.txt"));
  EXPECT_EQ(main->State(), win::WindowState::kMinimized);
}

TEST_F(Launch, TheSplashHoldsTheGameBackAndNoOtherRunComesBetween) {
  std::filesystem::copy_file(SOURCE_DIR "/data/nomappics/stars.bmp", sandbox.Install() / "splash.bmp");
  AddMod("pretty.bzm", "dname(Pretty);\r\nsplash(splash.bmp);\r\n");
  WriteFile(sandbox.Install() / "bzone.exe", "#!/bin/sh\ndate +%s%N >> seen.txt\n");
  Open();
  ASSERT_TRUE(SelectMod("Pretty"));
  const auto start = std::chrono::system_clock::now().time_since_epoch();
  QTimer::singleShot(500, main->SettingTree.Widget(), [this] {
    main->hidden.mnuModH.Click(static_cast<int>(varnik::FindMod("plain.bzm")));
    main->cmdLaunchBZ2.Press();
    main->activatebz2(-1, false);
  });
  test::ClickOn(main->cmdLaunchBZ2);
  const std::string seen = Seen();
  const double seconds = (std::stod(seen) - std::chrono::duration<double, std::nano>(start).count()) / 1e9;
  EXPECT_GE(seconds, 3.9);
  EXPECT_EQ(std::count(seen.begin(), seen.end(), '\n'), 1);
  EXPECT_EQ(varnik::CurrentInstall, 0);
  EXPECT_EQ(win::OpenForms().size(), 1u);
}

TEST_F(Launch, AWindowClosedDuringARunStaysClosed) {
  std::filesystem::copy_file(SOURCE_DIR "/data/nomappics/stars.bmp", sandbox.Install() / "splash.bmp");
  AddMod("pretty.bzm", "dname(Pretty);\r\nsplash(splash.bmp);\r\nrename(old.txt,new.txt);\r\n");
  Open();
  ASSERT_TRUE(SelectMod("Pretty"));
  QTimer::singleShot(100, main->SettingTree.Widget(), [this] { main->Close(); });
  main->cmdLaunchBZ2.Press();
  EXPECT_NE(Seen().find("new.txt"), std::string::npos);
  EXPECT_TRUE(Exists("old.txt"));
  EXPECT_FALSE(main->Loaded());
}

TEST_F(Launch, ForcedDeactivationAsksFirst) {
  Open();
  std::filesystem::rename(sandbox.Install() / "old.txt", sandbox.Install() / "new.txt");
  ASSERT_TRUE(SelectMod("Plain"));
  for (const win::Answer answer : {win::Answer::kNo, win::Answer::kYes}) {
    boxes.ExpectMsgBox(
        "WARNING: CLICKING ON 'YES' COULD CAUSE DAMAGE TO YOUR BATTLEZONE II INSTALL. IN ORDER TO CORRECT THIS DAMAGE "
        "A "
        "FULL REINSTALL OF BATTLEZONE II MAY BE NECESSARY. ARE YOU SURE YOU WANT TO ATTEMPT A FORCED DEACTIVATION OF "
        "THE SELECTED MOD?\r\nAdditional note: This code is untested as very few people have had trouble with mods and "
        "noone wants to intentionally screw something up to test it.\r\n\r\nIf this mod uses a seperate EXE then the "
        "restoration will be done BY THAT EXE, not by Varnik, and Varnik will have no control over the EXE while the "
        "deactivation occurs.",
        answer, "Varnik WARNING");
    test::ClickMenu(main->menu.mnuEmergencyDeactivate);
    EXPECT_EQ(boxes.Last().style, 20);
    EXPECT_EQ(Exists("old.txt"), answer == win::Answer::kYes);
  }
}
