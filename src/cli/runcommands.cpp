#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "cmdline/optionlist.h"
#include "definition/crashmarker.h"
#include "modengine/catalogue.h"
#include "modengine/deactivation.h"
#include "modengine/listedmod.h"
#include "modengine/runcycle.h"
#include "platform/system/paths/paths.h"
#include "platform/system/process/signals.h"
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

int PrintDone(const Arguments& arguments, bool done, const std::string& what) {
  if (!done) NoteExeTookOver();
  if (arguments.json) return Print({{"Done", done}});
  return done ? PrintLine(what) : kDone;
}

int PrintRun(const Arguments& arguments, const RunOutcome& run) {
  if (!run.ran) NoteExeTookOver();
  if (!arguments.json) {
    if (!run.ran) return kDone;
    return PrintLine(run.commandLine + "\nended with status " + std::to_string(run.exitStatus));
  }
  Json result = {{"Ran", run.ran}, {"Program", nullptr}, {"CommandLine", nullptr}, {"ExitStatus", nullptr}};
  if (run.ran) {
    result["Program"] = Text(run.program);
    result["CommandLine"] = Text(run.commandLine);
    result["ExitStatus"] = run.exitStatus;
  }
  return Print(result);
}

constexpr char kCarriedOut[] = "waited until the command had been carried out";

int Launch(const Arguments& arguments, int row) {
  const auto buildLine = [&] {
    const std::string ticked = JoinTickedOptions(ReadOptionList(OptionListFile()));
    return BuildCommandLine({arguments.options.value_or(ticked), arguments.map, arguments.edit}, true);
  };
  SilenceMessages();
  const RunOutcome run = LaunchClick(row, buildLine, {}, SessionSettings()).run;
  if (win::SignalsNoted().count > 0) return kFailed;
  if (!run.problem.empty()) return Fail(arguments.mod, OneLine(run.problem));
  if (run.ran && run.exitStatus == -1) return Fail(run.program, "could not be started; everything was put back");
  return PrintRun(arguments, run);
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
  if (mod.State == 0) Note(mod.DefinitionFile + ": is deactivated by `deactivate`, or by the next start of Varnik");
  return Uninterrupted(kCarriedOut,
                       [&] { return PrintDone(arguments, ActivateListedMod(mod), mod.DefinitionFile + " is active"); });
}

int DeactivateGivenMod(const Arguments& arguments) {
  const std::size_t row = FindGivenMod(arguments.mod);
  const std::string file = row == 0 ? FindGivenDefinition(arguments.mod) : ModList[row].DefinitionFile;
  if (file.empty()) return FailWithoutMod(arguments.mod);
  if (const std::string other = OtherActiveMod(file); !other.empty()) return FailOverActiveMod(other);
  SelectModFolders(row == 0 ? -1 : static_cast<int>(row));
  const std::string inactive = file + " is inactive";
  if (ModList[row].State == -1) Note(file + ": counts as inactive already");
  return Uninterrupted(kCarriedOut, [&] {
    if (row != 0) return PrintDone(arguments, DeactivateListedMod(ModList[row]), inactive);
    // A mod that does not fit the install any more can still be deactivated: its definition is all that it takes.
    const UndoOutcome outcome = DeactivateByMarker(file, InstallRoot());
    if (outcome == UndoOutcome::kNoFormat) return Fail(file, "is no definition");
    return PrintDone(arguments, outcome == UndoOutcome::kDone, inactive);
  });
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
    const bool recovered = RecoverFromCrash();
    if (arguments.json) return Print({{"Recovered", recovered}});
    return PrintLine(recovered ? "An interrupted run was undone." : "There was no interrupted run.");
  });
}

}  // namespace varnik::cli
