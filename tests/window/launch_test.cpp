#include "installs/ui/frmaddrembz2.h"
#include "support/install.h"
#include "tests/window/pagetest.h"

#include <QTimer>

namespace {

class Launch : public test::MainWindowTest {
 protected:
  Launch() {
    ListInstall();
    Put("bzone.exe", "#!/bin/sh\nls > seen.txt\necho \"line:$*\" >> seen.txt\n");
    Put("old.txt", "");
    std::filesystem::copy_file(SOURCE_DIR "/data/nomappics/stars.bmp", InRoot("splash.bmp"));
    AddMod("plain.bzm", "dname(Plain);\r\nrename(old.txt,new.txt);\r\n");
    AddMod("stay.bzm", "dname(Stay);\r\nactivated();\r\nactivatedfile(stayed.txt);\r\nrename(old.txt,stayed.txt);\r\n");
    AddMod("pretty.bzm", "dname(Pretty);\r\nsplash(splash.bmp);\r\nrename(old.txt,new.txt);\r\n");
    Open();
  }

  bool Exists(const char* name) const { return std::filesystem::exists(InRoot(name)); }
  bool HasSeen(const char* text) const { return Content("seen.txt").find(text) != std::string::npos; }
  win::MenuItem& TrayRow(const char* mod) { return main->hidden.mnuModH[static_cast<int>(varnik::FindMod(mod))]; }
};

TEST_F(Launch, APersistentModIsSwitchedAndTheListFollows) {
  ASSERT_TRUE(SelectMod("Stay(INACTIVE)"));
  test::ClickOn(main->cmdLaunchBZ2);
  EXPECT_TRUE(Exists("stayed.txt"));
  EXPECT_FALSE(Exists("seen.txt"));
  ASSERT_TRUE(SelectMod("Stay(ACTIVE)"));
  test::ClickOn(main->cmdLaunchBZ2);
  EXPECT_TRUE(Exists("old.txt") && SelectMod("Stay(INACTIVE)"));
}

TEST_F(Launch, TheTrayRunsAPersistentModLikeAPlainOneAndNothingDuringTheGame) {
  main->cmdLinePage.txtMapFileName.SetText("map.bzn");
  main->cmdLinePage.txtCmdLine.SetText("/win /edit");
  main->Hide();
  varnik::GameRunning = true;
  test::ClickMenu(main->hidden.mnuVarnikOpenH);
  test::ClickMenu(TrayRow("stay.bzm"));
  varnik::GameRunning = false;
  EXPECT_FALSE(main->Visible() || Exists("seen.txt"));
  test::ClickMenu(TrayRow("stay.bzm"));
  EXPECT_TRUE(HasSeen("stayed.txt") && HasSeen("line:/win"));
  EXPECT_FALSE(HasSeen("edit") || HasSeen("map.bzn") || main->Visible());
  EXPECT_TRUE(Exists("old.txt"));
}

TEST_F(Launch, AChangedCatalogueIsSaidAndReloaded) {
  ASSERT_TRUE(SelectMod("Plain"));
  std::filesystem::remove(InRoot("plain.bzm"));
  ExpectMsgBox("Mod File is Missing.");
  test::ClickOn(main->cmdLaunchBZ2);
  EXPECT_FALSE(SelectMod("Plain") || Exists("seen.txt"));
  EXPECT_TRUE(main->Visible());
}

TEST_F(Launch, TheSplashHoldsTheGameBackAndNoOtherRunComesBetween) {
  Put("bzone.exe", "#!/bin/sh\ndate +%s%N >> seen.txt\n");
  ASSERT_TRUE(SelectMod("Pretty"));
  const auto start = std::chrono::system_clock::now().time_since_epoch();
  QTimer::singleShot(500, main->SettingTree.Widget(), [this] {
    test::ClickMenu(TrayRow("plain.bzm"));
    main->cmdLaunchBZ2.Press();
    main->activatebz2(-1, false);
  });
  test::ClickOn(main->cmdLaunchBZ2);
  const std::string seen = Content("seen.txt");
  EXPECT_GE((std::stod(seen) - std::chrono::duration<double, std::nano>(start).count()) / 1e9, 3.9);
  EXPECT_EQ(std::count(seen.begin(), seen.end(), '\n'), 1);
  EXPECT_EQ(varnik::CurrentInstall, 0);
  EXPECT_EQ(win::OpenForms().size(), 1u);
}

TEST_F(Launch, WhatIsAskedForDuringTheGameEndsWithItButWhatWasSavedCounts) {
  Put("bzone.exe", "#!/bin/sh\nsleep 0.3\necho >> seen.txt\n");
  main->modPage.lstmods.SetFocus();
  QTimer::singleShot(100, main->SettingTree.Widget(), [this] {
    test::ClickMenu(TrayRow("plain.bzm"));
    test::ClickMenu(main->hidden.mnuCloseH);
    main->Window()->close();
  });
  test::ClickMenu(TrayRow("plain.bzm"));
  EXPECT_TRUE(test::Await([this] { return main->modPage.lstmods.Widget()->hasFocus(); }));
  EXPECT_TRUE(main->Loaded() && main->Visible());
  EXPECT_EQ(Content("seen.txt"), "\n");
  QTimer::singleShot(100, main->SettingTree.Widget(), [this] {
    test::DuringModal([this](win::Form& form) {
      test::ClickOn(dynamic_cast<varnik::frmAddRemBZ2&>(form).cmdSaveChanges);
      EXPECT_EQ(varnik::CurrentInstall, 0);
    });
    test::ClickMenu(main->menu.mnuBZ2DirAddRem);
  });
  main->cmdLaunchBZ2.Press();
  EXPECT_TRUE(test::Await([] { return varnik::CurrentInstall == -1; }));
}

TEST_F(Launch, AGameThatEndsAtOnceIsSaidOnceTheWindowIsBack) {
  Put("bzone.exe", "#!/bin/sh\nexit 126\n");
  for (const bool byTray : {false, true}) {
    ExpectMsgBox("The game ended at once, with status 126.");
    byTray ? test::ClickMenu(TrayRow("plain.bzm")) : main->cmdLaunchBZ2.Press();
  }
}

TEST_F(Launch, AWindowComesBackAsItWasUnlessItIsClosedDuringTheRun) {
  main->SetState(win::WindowState::kMinimized);
  test::RunEvents();
  main->cmdLaunchBZ2.Press();
  EXPECT_TRUE(Exists("seen.txt"));
  EXPECT_EQ(main->State(), win::WindowState::kMinimized);
  ASSERT_TRUE(SelectMod("Pretty"));
  QTimer::singleShot(100, main->SettingTree.Widget(), [this] { main->Close(); });
  main->cmdLaunchBZ2.Press();
  EXPECT_TRUE(HasSeen("new.txt") && Exists("old.txt"));
  EXPECT_FALSE(main->Loaded());
}

TEST_F(Launch, ForcedDeactivationAsksFirst) {
  std::filesystem::rename(InRoot("old.txt"), InRoot("new.txt"));
  ASSERT_TRUE(SelectMod("Plain"));
  for (const win::Answer answer : {win::Answer::kNo, win::Answer::kYes}) {
    Expect({win::BoxKind::kMessage, "WARNING: CLICKING ON 'YES'", "Varnik WARNING", 20, ""}, {answer, ""});
    test::ClickMenu(main->menu.mnuEmergencyDeactivate);
    EXPECT_EQ(Exists("old.txt"), answer == win::Answer::kYes);
  }
}

}  // namespace
