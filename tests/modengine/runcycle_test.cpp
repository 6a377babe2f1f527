#include "modengine/runcycle.h"

#include "modengine/crashmarker.h"
#include "modengine/runguard.h"
#include "platform/system/instance.h"
#include "support/settings.h"
#include "tests/modengine/modtest.h"

namespace varnik {
namespace {

using test::WriteFile;

constexpr char kReloading[] = "Reloading BZ2 location for you now.";
constexpr char kMissing[] =
    "Mod File is Missing.\r\nDon't delete files once Varnik has loaded, or reload your BZ2 location once you have.\r\n";
constexpr char kDoNotEdit[] =
    "Don't edit files once Varnik has loaded your mod list, or reload your BZ2 location once you have edited them.\r\n";

class RunCycle : public test::ModTest {
 protected:
  RunCycle() {
    InstallGame("bzone.exe");
    HighPriority = ClearBindataOnLaunch = false;
    hooks_.setTrayTip = [this](const std::string& tip) { Step("tip:" + tip); };
    hooks_.restoreTrayTip = [this] { Step("tip"); };
    hooks_.hideWindow = [this] { Step("hide"); };
    hooks_.restoreWindow = [this] { Step("restore"); };
    hooks_.showSplash = [this](const std::string& picture) {
      Step("splash:" + picture.substr(picture.rfind('\\') + 1));
    };
    hooks_.finishSplash = [this] { Step("finish"); };
    hooks_.reloadInstall = [this] { Step("reload"); };
  }

  // A stand-in for the game that notes its arguments and what the install looked like.
  void InstallGame(const std::string& name) {
    WriteFile(InRoot(name), "#!/bin/sh\necho $(basename $0) \"$@\" > ran\nls > seen\nexit 3\n");
    std::filesystem::permissions(InRoot(name), std::filesystem::perms::all);
  }

  void Step(const std::string& step) { steps_ += step + " "; }

  int AddMod(const std::string& lines, const std::string& name = "mod.bzm") {
    LoadModFile(Define(lines, name));
    return static_cast<int>(ModList.size()) - 1;
  }

  ClickOutcome Click(int mod, const std::string& line = "/win -edit") {
    return LaunchClick(
        mod, [&] { return line; }, hooks_);
  }

  RunHooks hooks_;
  std::string steps_;
};

TEST_F(RunCycle, RunsTheGameWithTheModAndPutsAllBack) {
  Put("a=a pic.bmp=p");
  const int mod = AddMod("rename(a,b);\nfold(x);\nsplash(pic.bmp);");
  auto before = test::Snapshot(sandbox_.Install());
  const ClickOutcome click = Click(mod);
  EXPECT_EQ(click.act, ClickOutcome::Act::kRun);
  EXPECT_TRUE(click.run.ran);
  EXPECT_EQ(click.run.program, Root() + "bzone.exe");
  EXPECT_EQ(click.run.commandLine, "\"" + Root() + "bzone.exe\" /win -edit");
  EXPECT_EQ(click.run.exitStatus, 3);
  ASSERT_EQ(Content("ran"), "bzone.exe /win -edit\n");
  EXPECT_NE(Content("seen")->find("\nb\n"), std::string::npos);
  EXPECT_NE(Content("seen")->find("bzonevarnik.bak"), std::string::npos);
  EXPECT_EQ(steps_, "tip:Varnik: Running Battlezone II hide splash:pic.bmp finish restore tip ");
  before["ran"] = *Content("ran");
  before["seen"] = *Content("seen");
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
  EXPECT_EQ(told_, "");
}

TEST_F(RunCycle, UndoesTheModOfAGameThatCannotBeStarted) {
  std::filesystem::remove(InRoot("bzone.exe"));
  Put("a=a");
  const RunOutcome run = LaunchBZ2(AddMod("rename(a,b);"), "", false, hooks_);
  EXPECT_TRUE(run.ran);
  EXPECT_EQ(run.exitStatus, -1);
  EXPECT_EQ(Content("a"), "a");
}

struct RefusalCase {
  const char* what;
  const char* definition;  // as it stands when the run begins; null: gone
  std::string told;
};

TEST_F(RunCycle, RefusesADefinitionThatChangedBehindTheCatalogue) {
  const RefusalCase cases[] = {
      {"gone", nullptr, std::string(kMissing) + kReloading},
      {"version 4", "bz2hald4", std::string("Mod has an invalid version #.\r\n") + kDoNotEdit + kReloading},
      {"version 0", "bz2haldx", std::string("Mod has an invalid version #.\r\n") + kDoNotEdit + kReloading},
      {"huge version", "bz2hald1e9", std::string("Mod has an invalid version #.\r\n") + kDoNotEdit + kReloading},
      {"no marker", "text", std::string("Mod File is improperly formatted.\r\n") + kDoNotEdit + kReloading},
      {"empty", "", std::string("Mod File is improperly formatted.\r\n") + kDoNotEdit + kReloading},
      {"rounded to 5", "bz2hald4.6", ""},
  };
  const int mod = AddMod("");
  for (const RefusalCase& c : cases) {
    SCOPED_TRACE(c.what);
    steps_ = told_ = "";
    std::filesystem::remove(InRoot("mod.bzm"));
    if (c.definition) WriteFile(InRoot("mod.bzm"), c.definition);
    const RunOutcome run = LaunchBZ2(mod, "", false, hooks_);
    EXPECT_EQ(run.ran, c.told.empty());
    EXPECT_EQ(run.problem, c.told);
    EXPECT_EQ(told_, c.told);
    EXPECT_EQ(steps_.find("reload") == std::string::npos, c.told.empty());
    EXPECT_TRUE(steps_.ends_with("restore tip "));
  }
}

TEST_F(RunCycle, LeavesTheSplashUpWhenAnExeTakesOver) {
  Put("tool=x");
  WriteFile(InMods("p.bmp"), "");
  const RunOutcome run = LaunchBZ2(AddMod("requireexe(tool);\nsplash(p.bmp);"), "", false, hooks_);
  EXPECT_FALSE(run.ran);
  EXPECT_EQ(run.problem, "");
  EXPECT_EQ(steps_, "tip:Varnik: Running Battlezone II hide splash:p.bmp restore tip ");
}

TEST_F(RunCycle, AClickSwitchesAPersistentModAndRunsNoGame) {
  Put("off=x");
  const int active = AddMod("activated();\nrename(on,off);", "active.bzm");
  const int inactive = AddMod("activated();\nactivatedfile(missing);\nrename(on,off);", "inactive.bzm");
  EXPECT_EQ(Click(active).act, ClickOutcome::Act::kDeactivated);
  EXPECT_EQ(Content("on"), "x");
  EXPECT_EQ(Click(inactive).act, ClickOutcome::Act::kActivated);
  EXPECT_EQ(Content("off"), "x");
  EXPECT_EQ(steps_, "");
  EXPECT_FALSE(Content("ran"));
}

TEST_F(RunCycle, StartsTheEditorOfVersion13Only) {
  MakeInstall("1.3");
  InstallGame("bzone.exe");
  const ClickOutcome refused = Click(-1);
  EXPECT_EQ(refused.act, ClickOutcome::Act::kNone);
  EXPECT_EQ(told_,
            "Sorry, but the current 1.3 install is missing bz2edit.exe and therefore /edit cannot be used. Aborting.");
  EXPECT_FALSE(Content("ran"));
  InstallGame("bz2edit.exe");
  Put("data/bindata/old=x data/bindata/sub/old=x");
  ClearBindataOnLaunch = true;
  Click(-1);
  EXPECT_EQ(Content("ran"), "bz2edit.exe /win -edit\n");
  EXPECT_FALSE(Content("data/bindata/old"));
  EXPECT_TRUE(Content("data/bindata/sub/old"));
  Click(-1, "/EDIT");
  EXPECT_EQ(Content("ran"), "bzone.exe /EDIT\n");
}

TEST_F(RunCycle, MovesTheLastLogToTheFirstFreeNumber) {
  StoreOption("RenameLog", "on");
  Put("battlezone.log=1");
  LaunchBZ2(-1, "", false, {});
  EXPECT_EQ(Content("battlezone.log"), "1");
  StoreOption("RenameLog", "On");
  LaunchBZ2(-1, "", false, {});
  EXPECT_EQ(Content("logs/battlezone.000"), "1");
  Put("battlezone.log=2 logs/battlezone.002=x");
  LaunchBZ2(-1, "", false, {});
  EXPECT_EQ(Content("logs/battlezone.001"), "2");
  for (int i = 3; i <= 999; ++i)
    WriteFile(InRoot("logs/battlezone." + std::to_string(1000 + i).substr(1)), "x");
  Put("battlezone.log=3");
  LaunchBZ2(-1, "", false, {});
  EXPECT_EQ(Content("battlezone.log"), "3");
  EXPECT_FALSE(Content("logs/battlezone.1000"));
}

TEST_F(RunCycle, RefusesASecondProcess) {
  win::ExclusiveLock other("run");
  ASSERT_TRUE(other.TryAcquire());
  Put("a=a");
  const int mod = AddMod("rename(a,b);");
  EXPECT_EQ(Click(mod).run.problem, kRunRefused);
  EXPECT_EQ(LaunchBZ2(mod, "", false, hooks_).problem, kRunRefused);
  EXPECT_EQ(told_, std::string(kRunRefused) + kRunRefused);
  EXPECT_EQ(steps_, "");
  other.Release();
  EXPECT_TRUE(LaunchBZ2(mod, "", false, hooks_).ran);
  EXPECT_TRUE(RunGuard().IsHeld());
}

}  // namespace
}  // namespace varnik
