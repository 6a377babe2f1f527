#include "modengine/runcycle.h"

#include "definition/crashmarker.h"
#include "modengine/runguard.h"
#include "platform/system/process/instance.h"
#include "support/settings.h"
#include "tests/modengine/modtest.h"

namespace varnik {
namespace {

using test::WriteFile;

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
  EXPECT_EQ(click.run.commandLine, "\"" + Root() + "bzone.exe\" /win -edit");
  EXPECT_EQ(click.run.exitStatus, 3);
  ASSERT_EQ(Content("ran"), "bzone.exe /win -edit\n");
  EXPECT_NE(Content("seen")->find("\nb\n"), std::string::npos);
  EXPECT_NE(Content("seen")->find("bzonevarnik.bak"), std::string::npos);
  EXPECT_EQ(steps_, "tip:Varnik: Running Battlezone II hide splash:pic.bmp finish restore tip ");
  before["ran"] = *Content("ran");
  before["seen"] = *Content("seen");
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
  Put("bzone.exe");
  before.erase("bzone.exe");
  EXPECT_EQ(Click(mod).run.exitStatus, -1);
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
}

TEST_F(RunCycle, ChangesNothingForAGameThatNothingHereRuns) {
  setenv("VARNIK_RUNNER", "no-such-runner", 1);
  Put("a=a bzone.exe=MZ battlezone.log=1");
  StoreOption("RenameLog", "On");
  const int mod = AddMod("rename(a,b);");
  const auto before = test::Snapshot(sandbox_.Install());
  const ClickOutcome click = Click(mod);
  EXPECT_EQ(click.act, ClickOutcome::Act::kNone);
  EXPECT_NE(click.run.problem.find("no-such-runner"), std::string::npos);
  EXPECT_FALSE(LaunchBZ2(mod, "", false, hooks_).ran);
  EXPECT_EQ(told_, click.run.problem + click.run.problem);
  EXPECT_EQ(steps_, "");
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
  Put("bzone.exe tool=x");  // one that is missing is no matter of runners, nor is a mod's own program
  EXPECT_TRUE(LaunchBZ2(mod, "", false, hooks_).ran);
  Put("bzone.exe=MZ");
  EXPECT_EQ(LaunchBZ2(AddMod("requireexe(tool);", "exe.bzm"), "", false, hooks_).problem, "");
  unsetenv("VARNIK_RUNNER");
}

TEST_F(RunCycle, RefusesADefinitionThatChangedBehindTheCatalogue) {
  const std::string reload = "Reloading BZ2 location for you now.";
  const std::string edited =
      "Don't edit files once Varnik has loaded your mod list, or reload your BZ2 location once you have edited "
      "them.\r\n" +
      reload;
  const std::string badVersion = "Mod has an invalid version #.\r\n" + edited;
  const std::pair<const char*, std::string> cases[] = {
      {"mod.bzm",
       "Mod File is Missing.\r\nDon't delete files once Varnik has loaded, or reload your BZ2 location once you "
       "have.\r\n" +
           reload},
      {"mod.bzm=bz2hald4", badVersion},
      {"mod.bzm=bz2haldx", badVersion},
      {"mod.bzm=bz2hald1e9", badVersion},
      {"mod.bzm=text", "Mod File is improperly formatted.\r\n" + edited},
      {"mod.bzm=bz2hald4.6", ""},  // rounded to 5
  };
  const int mod = AddMod("");
  for (const auto& [definition, told] : cases) {
    SCOPED_TRACE(definition);
    steps_ = told_ = "";
    Put(definition);
    const RunOutcome run = LaunchBZ2(mod, "", false, hooks_);
    EXPECT_EQ(run.ran, told.empty());
    EXPECT_EQ(run.problem, told);
    EXPECT_EQ(told_, told);
    EXPECT_TRUE(steps_.ends_with(told.empty() ? "hide finish restore tip " : "hide reload restore tip "));
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
  Expect("on=x off");
  EXPECT_EQ(Click(inactive).act, ClickOutcome::Act::kActivated);
  Expect("on off=x ran");
  EXPECT_EQ(steps_, "");
}

TEST_F(RunCycle, StartsTheEditorOfVersion13Only) {
  MakeInstall("1.3");
  InstallGame("bzone.exe");
  EXPECT_EQ(Click(-1).act, ClickOutcome::Act::kNone);
  EXPECT_EQ(told_,
            "Sorry, but the current 1.3 install is missing bz2edit.exe and therefore /edit cannot be used. Aborting.");
  Expect("ran");
  InstallGame("bz2edit.exe");
  Put("data/bindata/old=x data/bindata/sub/old=x");
  ClearBindataOnLaunch = true;
  Click(-1);
  EXPECT_EQ(Content("ran"), "bz2edit.exe /win -edit\n");
  Expect("data/bindata/old data/bindata/sub/old=x");
  Click(-1, "/EDIT");
  EXPECT_EQ(Content("ran"), "bzone.exe /EDIT\n");
}

TEST_F(RunCycle, MovesTheLastLogToTheFirstFreeNumber) {
  const auto runWithLog = [&](const std::string& option, const std::string& files) {
    StoreOption("RenameLog", option);
    Put(files);
    LaunchBZ2(-1, "", false, {});
  };
  runWithLog("on", "battlezone.log=1");
  Expect("battlezone.log=1");
  runWithLog("On", "battlezone.log=1");
  runWithLog("On", "battlezone.log=2 logs/battlezone.002=x");
  Expect("battlezone.log logs/battlezone.000=1 logs/battlezone.001=2");
  for (int i = 3; i <= 999; ++i)
    Put("logs/battlezone." + std::to_string(1000 + i).substr(1) + "=x");
  runWithLog("On", "battlezone.log=3");
  Expect("battlezone.log=3 logs/battlezone.1000");
}

TEST_F(RunCycle, RefusesASecondProcess) {
  win::ExclusiveLock other("run");
  ASSERT_TRUE(other.TryAcquire());
  const int mod = AddMod("");
  EXPECT_EQ(Click(mod).run.problem, kRunRefused);
  EXPECT_EQ(LaunchBZ2(mod, "", false, hooks_).problem, kRunRefused);
  EXPECT_EQ(told_, std::string(kRunRefused) + kRunRefused);
  EXPECT_EQ(steps_, "");
  other.Release();
  EXPECT_TRUE(LaunchBZ2(mod, "", false, hooks_).ran);
}

}  // namespace
}  // namespace varnik
