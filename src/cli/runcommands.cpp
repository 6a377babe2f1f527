#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "cmdline/optionlist.h"
#include "definition/crashmarker.h"
#include "journal/journal.h"
#include "modengine/applymod.h"
#include "modengine/catalogue.h"
#include "modengine/runcycle.h"
#include "modengine/takeover.h"
#include "platform/system/paths/paths.h"
#include "platform/system/process/signals.h"
#include "platform/system/text/text.h"
#include "startup/crashrecovery.h"
#include "support/install.h"

namespace varnik::cli {

namespace {

// The marker of another mod, or of another install, that is still to be undone. Whatever follows would lose what the
// store holds for that.
std::string OtherActiveMod(const std::string& definitionFile) {
  const CrashMarker marker = ReadCrashMarker(SessionSettings());
  const bool isOurs =
      win::IsSamePath(marker.definitionFile, definitionFile) && win::IsSamePath(marker.root, InstallRoot());
  return marker.root.empty() || isOurs ? "" : marker.definitionFile;
}

void NoteExeTookOver() { Note("an EXE of the mod has taken over"); }

void NoteAll(const Report& report) {
  for (const ReportLine& problem : report)
    Note(TextOf(problem));
}

void Foretell(const Report& report) {
  for (const ReportLine& problem : report)
    Note(TextOf(problem) + "; this step is skipped");
}

int PrintDone(const Arguments& arguments, bool done, const std::string& what) {
  if (arguments.json) return Print({{"Done", done}});
  return done ? PrintLine(what) : kDone;
}

int PrintApplied(const Arguments& arguments, const std::string& file, const ApplyResult& result) {
  if (!result.refusal.empty()) return Fail(file, result.refusal);
  const bool isFailed = !result.failed.empty() || (result.active && !result.IsAsPromised());
  if (!result.active && !isFailed) NoteExeTookOver();
  NoteAll(result.failed);
  const int printed = PrintDone(arguments, result.IsAsPromised(), file + " is active");
  return isFailed ? kFailed : printed;
}

// An EXE that takes over is no failure, though nothing was done here.
int PrintReverted(const Arguments& arguments, const std::string& file, const RevertResult& result) {
  if (result.end == RevertResult::End::kRefused) return Fail(file, OneLine(result.refusal));
  if (result.end == RevertResult::End::kNoFormat) return Fail(file, "is no definition");
  const bool isActive = result.end != RevertResult::End::kNotActive;
  if (!isActive) Note(file + ": nothing tells that it is active; nothing was changed (--force undoes it all the same)");
  const bool isDone = result.end != RevertResult::End::kExeTookOver && result.failed.empty();
  if (result.end == RevertResult::End::kExeTookOver) NoteExeTookOver();
  NoteAll(result.failed);
  const int printed = PrintDone(arguments, isDone, file + " is inactive");
  return result.failed.empty() ? printed : kFailed;
}

int PrintRun(const Arguments& arguments, const RunOutcome& run) {
  if (!run.ran) NoteExeTookOver();
  NoteAll(run.failed);
  // Its last lines stand above already.
  if (!run.earlyEnd.empty()) Note(OneLine(run.earlyEnd.substr(0, run.earlyEnd.find("\r\n\r\n"))));
  Json result = {
      {"Ran", run.ran && run.asPromised}, {"Program", nullptr}, {"CommandLine", nullptr}, {"ExitStatus", nullptr}};
  if (run.ran) {
    result["Program"] = Text(run.program);
    result["CommandLine"] = Text(run.commandLine);
    result["ExitStatus"] = run.exitStatus;
  }
  int printed = kDone;
  if (arguments.json)
    printed = Print(result);
  else if (run.ran)
    printed = PrintLine(run.commandLine + "\nended with status " + std::to_string(run.exitStatus));
  return run.asPromised || !run.ran ? printed : kFailed;
}

constexpr char kCarriedOut[] = "waited until the command had been carried out";

int Launch(const Arguments& arguments, int row) {
  SilenceMessages();
  std::string options = arguments.options.value_or("");
  if (!arguments.options) {
    const std::string file = OptionListFile();
    const std::optional<std::vector<OptionEntry>> list = ReadOptionList(file);
    if (!list) return Fail(arguments.mod, OneLine(OptionListProblem(file)));
    options = JoinTickedOptions(*list);
  }
  const auto buildLine = [&] { return BuildCommandLine({options, arguments.map, arguments.edit}, true); };
  RunHooks hooks;
  hooks.foretell = Foretell;
  const RunOutcome run = LaunchClick(row, buildLine, hooks, SessionSettings()).run;
  if (win::SignalsNoted().count > 0) {
    NoteAll(run.failed);
    return run.failed.empty() ? kDone : kFailed;
  }
  if (!run.problem.empty()) return Fail(arguments.mod, OneLine(run.problem));
  if (run.ran && run.exitStatus == -1) {
    NoteAll(run.failed);
    return Fail(run.program, run.asPromised ? "could not be started; everything was put back" : "could not be started");
  }
  return PrintRun(arguments, run);
}

// The definition of a mod that is active though its definition has gone.
std::string FindJournaledDefinition(const std::string& mod) {
  for (const Journal& journal : ReadJournals())
    if (IsAbout(journal, InstallRoot()) &&
        win::EqualNoCase(win::FileNameOf(journal.definitionFile), win::FileNameOf(mod)))
      return journal.definitionFile;
  return "";
}

int LaunchUninterrupted(const Arguments& arguments, int row) {
  return Uninterrupted("everything was put back", [&] { return Launch(arguments, row); });
}

}  // namespace

int ActivateGivenMod(const Arguments& arguments) {
  const std::size_t row = FindGivenMod(arguments.mod);
  if (row == 0) return FailWithoutMod(arguments.mod);
  SelectModFolders(static_cast<int>(row));
  const ModEntry& mod = ModList[row];
  if (const int refused = RefuseActivation(mod); refused != kDone) return refused;
  const std::string file = mod.DefinitionFile;
  const bool isLegacy = mod.Legacy;
  if (const std::string problem = ActivationProblem(file, isLegacy); !problem.empty())
    return Fail(file, OneLine(problem));
  if (mod.State == 0) Note(file + ": is deactivated by `deactivate`, or by the next start of Varnik");
  return Uninterrupted(kCarriedOut, [&] { return PrintApplied(arguments, file, ApplyMod(file, isLegacy, Foretell)); });
}

int DeactivateGivenMod(const Arguments& arguments) {
  const std::size_t row = FindGivenMod(arguments.mod);
  std::string file = row == 0 ? FindGivenDefinition(arguments.mod) : ModList[row].DefinitionFile;
  if (file.empty()) file = FindJournaledDefinition(arguments.mod);
  if (file.empty()) return FailWithoutMod(arguments.mod);
  if (const std::string other = OtherActiveMod(file); !other.empty()) return FailOverActiveMod(other);
  SelectModFolders(row == 0 ? -1 : static_cast<int>(row));
  if (const std::string problem = DeactivationProblem(file, InstallRoot()); !problem.empty())
    return Fail(file, OneLine(problem));
  const bool isForced = arguments.force || ModList[row].State == 1;
  return Uninterrupted(kCarriedOut,
                       [&] { return PrintReverted(arguments, file, RevertMod(file, InstallRoot(), isForced)); });
}

int RunGivenMod(const Arguments& arguments) {
  const std::optional<int> row = SelectMod(arguments.mod);
  if (!row) return kFailed;
  if (*row == -1) return LaunchUninterrupted(arguments, *row);
  const ModEntry& mod = ModList[*row];
  if (mod.State == 1) return Fail(mod.DefinitionFile, "is persistent and active: use `varnik-cli deactivate`");
  if (mod.State == -1) return Fail(mod.DefinitionFile, "is persistent and inactive: use `varnik-cli activate`");
  if (const CrashMarker marker = ReadCrashMarker(SessionSettings()); !marker.root.empty())
    return FailOverActiveMod(marker.definitionFile);
  return LaunchUninterrupted(arguments, *row);
}

int Recover(const Arguments& arguments) {
  return Uninterrupted(kCarriedOut, [&] {
    const Recovery recovery = RecoverFromCrash();
    const int printed =
        arguments.json ? Print({{"Recovered", recovery.acted}})
                       : PrintLine(recovery.acted ? "An interrupted run was undone." : "There was no interrupted run.");
    return recovery.isDone ? printed : kFailed;
  });
}

}  // namespace varnik::cli
