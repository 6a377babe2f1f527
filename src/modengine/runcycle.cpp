#include "modengine/runcycle.h"

#include "cmdline/optionlist.h"
#include "definition/directive.h"
#include "definition/includes.h"
#include "gameconfig/screenshots.h"
#include "modengine/applymod.h"
#include "modengine/catalogue.h"
#include "modengine/runguard.h"
#include "modengine/takeover.h"
#include "platform/system/files/files.h"
#include "platform/system/files/lines.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "platform/system/process/signals.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/modshellwait.h"
#include "support/runstate.h"

#include <cstdio>
#include <utility>

namespace varnik {

namespace {

constexpr char kMissing[] =
    "Mod File is Missing.\r\n"
    "Don't delete files once Varnik has loaded, or reload your BZ2 location once you have.\r\n";
constexpr char kBadVersion[] = "Mod has an invalid version #.\r\n";
constexpr char kBadFormat[] = "Mod File is improperly formatted.\r\n";
constexpr char kDoNotEdit[] =
    "Don't edit files once Varnik has loaded your mod list, or reload your BZ2 location once you have edited them.\r\n";
constexpr char kReloading[] = "Reloading BZ2 location for you now.";
constexpr char kNoEditor[] =
    "Sorry, but the current 1.3 install is missing bz2edit.exe and therefore /edit cannot be used. Aborting.";

template <class Hook, class... Values>
void Call(const Hook& hook, const Values&... values) {
  if (hook) hook(values...);
}

// A copy, since a handler may reload the list during a run; an empty row for an index that has gone.
ModEntry RowOf(int modIndex) {
  const bool isRow = modIndex > 0 && static_cast<std::size_t>(modIndex) < ModList.size();
  return isRow ? ModList[modIndex] : ModEntry();
}

std::string GameOf(const std::string& root, bool useEditor) { return root + (useEditor ? "bz2edit.exe" : "bzone.exe"); }

struct Run {
  const std::string& commandLine;
  bool useEditor;
  const RunHooks& hooks;
  const std::string root;
  RunOutcome outcome;
};

// The log of the previous run; the game overwrites it when there is no number left.
void RotateLog(const std::string& root) {
  const std::string log = root + "battlezone.log";
  if (!FileExists(root + "logs")) win::MakeFolder(root + "logs");
  if (!FileExists(log)) return;
  for (int number = 0; number <= 999; ++number) {
    char name[] = "logs\\battlezone.000";
    std::snprintf(name, sizeof name, "logs\\battlezone.%03d", number);
    if (FileExists(root + name)) continue;
    win::RenameFile(log, root + name);
    return;
  }
}

void RunGame(Run& run) {
  Call(run.hooks.finishSplash);
  if (win::SignalsNoted().count > 0) return;
  run.outcome.ran = true;
  run.outcome.program = GameOf(run.root, run.useEditor);
  run.outcome.commandLine = "\"" + run.outcome.program + "\" " + run.commandLine;
  GameEnd end =
      ShellAndWait(run.outcome.commandLine, HighPriority ? win::kHighPriorityClass : win::kNormalPriorityClass);
  run.outcome.exitStatus = end.status;
  run.outcome.earlyEnd = std::move(end.earlyEnd);
}

void EndWithProblem(Run& run, const std::string& problem) {
  run.outcome.problem = problem;
  win::MsgBox(problem);
  Call(run.hooks.reloadInstall);
}

void EndWithRefusal(Run& run, const std::string& problem) {
  run.outcome.problem = problem;
  win::MsgBox(problem);
}

void RunMod(Run& run, const ModEntry& mod) {
  const std::string& file = mod.DefinitionFile;
  if (!FileExists(file)) return EndWithProblem(run, std::string(kMissing) + kReloading);
  const std::string picture = mod.Splash.empty() ? "" : FindModFile(mod.Splash);
  if (!picture.empty()) Call(run.hooks.showSplash, picture);
  double version = 0;
  const bool isGood = ReadMarker(win::LineReader(file).ReadLine(), version);
  const RunFormat format = isGood ? RunFormatOf(version) : RunFormat::kNone;
  if (format == RunFormat::kNone)
    return EndWithProblem(run, std::string(isGood ? kBadVersion : kBadFormat) + kDoNotEdit + kReloading);
  const ApplyResult applied = ApplyMod(file, format == RunFormat::kLegacy, run.hooks.foretell);
  if (!applied.refusal.empty()) return EndWithRefusal(run, applied.refusal);
  run.outcome.failed = applied.failed;
  run.outcome.asPromised = applied.IsAsPromised() || applied.foretold.size() + applied.failed.size() == 0;
  if (!applied.active) return;
  RunGame(run);
  const RevertResult reverted = RevertMod(file, run.root, true);
  run.outcome.failed.insert(run.outcome.failed.end(), reverted.failed.begin(), reverted.failed.end());
  run.outcome.asPromised = run.outcome.asPromised && reverted.failed.empty();
}

RunOutcome Refused(const std::string& problem) {
  win::MsgBox(problem);
  RunOutcome refused;
  refused.problem = problem;
  return refused;
}

// Why this system cannot run what a run with this row comes to; empty when it can. With a window it also goes to
// standard error.
std::string RunnerProblem(int modIndex, bool useEditor, const RunHooks& hooks) {
  const ModEntry mod = RowOf(modIndex);
  const std::string game = "\"" + GameOf(InstallRoot(), useEditor) + "\"";
  const std::string problem =
      mod.Standard ? GameProblem(game) : ActivationProblem(mod.DefinitionFile, mod.Legacy, game);
  if (!problem.empty() && hooks.hideWindow) win::SayOnStandardError(problem.substr(0, problem.find('\r')));
  return problem;
}

ClickOutcome Activated(const ApplyResult& result) {
  if (!result.refusal.empty()) return {ClickOutcome::Act::kNone, false, {}, Refused(result.refusal)};
  return {ClickOutcome::Act::kActivated, result.IsAsPromised(), result.failed, {}};
}

ClickOutcome Deactivated(const RevertResult& result) {
  if (!result.refusal.empty()) return {ClickOutcome::Act::kNone, false, {}, Refused(result.refusal)};
  const bool isDone = result.end == RevertResult::End::kDone && result.failed.empty();
  return {ClickOutcome::Act::kDeactivated, isDone, result.failed, {}};
}

}  // namespace

RunOutcome LaunchBZ2(int modIndex, const std::string& commandLine, bool useEditor, const RunHooks& hooks,
                     const win::SettingsSnapshot& stored) {
  const RunGuard guard(InstallRoot());
  if (!guard.IsHeld()) return Refused(kRunRefused);
  if (const std::string problem = RunnerProblem(modIndex, useEditor, hooks); !problem.empty()) return Refused(problem);
  Run run{commandLine, useEditor, hooks, InstallRoot(), {}};
  Call(hooks.setTrayTip, "Varnik: Running Battlezone II");
  if (OptionIsOn("RenameLog", stored)) RotateLog(run.root);
  Call(hooks.hideWindow);
  win::DoEvents();
  if (modIndex == -1)
    RunGame(run);
  else
    RunMod(run, RowOf(modIndex));
  Call(hooks.restoreWindow);
  Call(hooks.restoreTrayTip);
  return run.outcome;
}

ClickOutcome LaunchClick(int modIndex, const std::function<std::string()>& buildLine, const RunHooks& hooks,
                         const win::SettingsSnapshot& stored) {
  const RunGuard guard(InstallRoot());
  const auto refuse = [](const std::string& problem) {
    return ClickOutcome{ClickOutcome::Act::kNone, false, {}, Refused(problem)};
  };
  if (!guard.IsHeld()) return refuse(kRunRefused);
  const ModEntry mod = modIndex == -1 ? ModEntry() : RowOf(modIndex);
  if (mod.State != 0) {
    const std::string problem = mod.State == 1 ? DeactivationProblem(mod.DefinitionFile, InstallRoot())
                                               : ActivationProblem(mod.DefinitionFile, false);
    if (!problem.empty()) return refuse(problem);
  }
  if (mod.State == 1) return Deactivated(RevertMod(mod.DefinitionFile, InstallRoot(), true));
  if (mod.State == -1) return Activated(ApplyMod(mod.DefinitionFile, false, hooks.foretell));
  const bool useEditor = IsVersion13() && HasEditSwitch(buildLine());
  if (useEditor && !FileExists(GameOf(InstallRoot(), true))) return refuse(kNoEditor);
  if (const std::string problem = RunnerProblem(modIndex, useEditor, hooks); !problem.empty()) return refuse(problem);
  if (ClearBindataOnLaunch) ClearBindata();
  return {ClickOutcome::Act::kRun, false, {}, LaunchBZ2(modIndex, buildLine(), useEditor, hooks, stored)};
}

}  // namespace varnik
