#include "modengine/runcycle.h"

#include "modengine/runguard.h"
#include "platform/system/process/instance.h"
#include "support/settings.h"
#include "tests/harness/cases.h"
#include "tests/modengine/modtest.h"

#include <sys/resource.h>

namespace varnik {
namespace {

class RunCycle : public test::ModTest {
 protected:
  RunCycle() {
    InstallGame("bzone.exe");
    HighPriority = ClearBindataOnLaunch = false;
    hooks_.setTrayTip = [this](const std::string& tip) { steps_ += "tip:" + tip + " "; };
    hooks_.restoreTrayTip = [this] { steps_ += "tip "; };
    hooks_.hideWindow = [this] { steps_ += "hide "; };
    hooks_.restoreWindow = [this] { steps_ += "restore "; };
    hooks_.showSplash = [this](const std::string& picture) {
      steps_ += "splash:" + picture.substr(Root().size()) + " ";
    };
    hooks_.finishSplash = [this] { steps_ += "finish "; };
    hooks_.reloadInstall = [this] { steps_ += "reload "; };
  }

  // A stand-in for the game that notes its arguments, its priority and what the install looked like.
  void InstallGame(const std::string& name) {
    PutProgram(name, "echo $(basename $0) \"$@\" > ran\n(nice; ls) > seen\nexit 3");
  }

  int AddMod(const std::string& lines, const std::string& name = "mod.bzm") {
    LoadModFile(Define(lines, name));
    return static_cast<int>(ModList.size()) - 1;
  }

  ClickOutcome Click(int mod, const std::string& line = "/win -edit") {
    const auto buildLine = [&] { return line; };
    return LaunchClick(mod, buildLine, hooks_);
  }
  RunOutcome Launch(int mod) { return LaunchBZ2(mod, "", false, hooks_); }

  RunHooks hooks_;
  std::string steps_;
};

TEST_F(RunCycle, RunsTheGameWithTheModAndPutsAllBack) {
  Put("a=a pic.bmp=p tool=x");
  const int mod = AddMod("rename(a,b);\nfold(x);\nsplash(pic.bmp);");
  auto before = test::Snapshot(sandbox_.Install());
  const ClickOutcome click = Click(mod);
  EXPECT_EQ(click.act, ClickOutcome::Act::kRun);
  EXPECT_EQ(click.run.commandLine, "\"" + Root() + "bzone.exe\" /win -edit");
  EXPECT_EQ(click.run.exitStatus, 3);
  ASSERT_EQ(Content("ran"), "bzone.exe /win -edit\n");
  EXPECT_NE(Content("seen")->find("\nb\nbinkw32.dll\nbzone.cfg\nbzone.exe\nbzonevarnik.bak\n"), std::string::npos);
  EXPECT_EQ(steps_, "tip:Varnik: Running Battlezone II hide splash:pic.bmp finish restore tip ");
  for (const char* made : {"ran", "seen"})
    before[made] = *Content(made);
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
  Put("bzone.exe");
  before.erase("bzone.exe");
  EXPECT_EQ(Click(mod).run.exitStatus, -1);
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
  steps_.clear();
  EXPECT_FALSE(Launch(AddMod("requireexe(tool);\nsplash(pic.bmp);", "exe.bzm")).ran);
  EXPECT_EQ(steps_, "tip:Varnik: Running Battlezone II hide splash:pic.bmp restore tip ");
}

TEST_F(RunCycle, ChangesNothingForAGameThatNothingHereRuns) {
  setenv("VARNIK_RUNNER", "no-such-runner", 1);
  Put("a=a bzone.exe=MZ battlezone.log=1 tool=x");
  StoreOption("RenameLog", "On");
  const int mod = AddMod("rename(a,b);");
  const int ownProgram = AddMod("requireexe(tool);", "exe.bzm");
  const auto before = test::Snapshot(sandbox_.Install());
  const std::string problem = Click(mod).run.problem;
  EXPECT_NE(problem.find("no-such-runner"), std::string::npos);
  EXPECT_EQ(Launch(mod).problem, problem);
  EXPECT_EQ(told_ + steps_, problem + problem);
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
  EXPECT_EQ(Launch(ownProgram).problem, "");  // a mod's own program needs no runner for the game,
  Put("tool=MZ");                             // unless it is a Windows program itself
  EXPECT_NE(Launch(ownProgram).problem.find("own program cannot be run: tool is"), std::string::npos);
  Put("tool");  // or is not there
  EXPECT_EQ(Launch(ownProgram).problem, problem);
  Put("bzone.exe");
  EXPECT_TRUE(Launch(mod).ran);  // and a game that is missing is found out by starting it
  unsetenv("VARNIK_RUNNER");
}

TEST_F(RunCycle, AsksForHighPriorityWhenThatIsChosen) {
  const int own = getpriority(PRIO_PROCESS, 0);
  const int high = setpriority(PRIO_PROCESS, 0, -5) == 0 ? -5 : own;  // where the system allows it
  setpriority(PRIO_PROCESS, 0, own);
  for (const int expected : {own, high}) {
    Launch(-1);
    EXPECT_TRUE(Content("seen")->starts_with(std::to_string(expected) + "\n")) << *Content("seen");
    HighPriority = true;
  }
}

TEST_F(RunCycle, RefusesADefinitionThatChangedBehindTheCatalogue) {
  const int mod = AddMod("");
  for (const test::Case& c : test::Cases("modengine/refusals.jsonl")) {
    steps_ = told_ = "";
    Put(c.at("definition"));
    const std::string told = c.at("told");
    EXPECT_EQ(Launch(mod).problem, told);
    EXPECT_EQ(told_, told);
    EXPECT_TRUE(steps_.ends_with(told.empty() ? "hide finish restore tip " : "hide reload restore tip ")) << c;
  }
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
  for (const test::Case& c : test::Cases("modengine/logs.jsonl")) {
    SCOPED_TRACE(c);
    StoreOption("RenameLog", c.at("option"));
    Put(c.at("files"));
    Launch(-1);
    Expect(c.at("after"));
  }
}

TEST_F(RunCycle, RefusesASecondProcess) {
  win::ExclusiveLock other("run");
  ASSERT_TRUE(other.TryAcquire());
  const int mod = AddMod("");
  EXPECT_EQ(Click(mod).run.problem, kRunRefused);
  EXPECT_EQ(Launch(mod).problem, kRunRefused);
  EXPECT_EQ(told_ + steps_, std::string(kRunRefused) + kRunRefused);
  other.Release();
  EXPECT_TRUE(Launch(mod).ran);
}

}  // namespace
}  // namespace varnik
