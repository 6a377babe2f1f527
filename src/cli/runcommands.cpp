#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "cmdline/optionlist.h"
#include "definition/crashmarker.h"
#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "modengine/deactivation.h"
#include "modengine/force.h"
#include "modengine/runcycle.h"
#include "platform/system/paths/paths.h"
#include "startup/startup.h"

namespace varnik::cli {

namespace {

bool IsSamePath(const std::string& a, const std::string& b) {
  return win::NativePath(a) == win::NativePath(b);
}

// The marker of another mod, or of another install, that is still to be undone. Whatever follows would lose what the
// store holds for that.
std::string OtherModInForce(const std::string& definitionFile) {
  const CrashMarker marker = ReadCrashMarker(SessionSettings());
  const bool isOurs = IsSamePath(marker.definitionFile, definitionFile) && IsSamePath(marker.root, InstallRoot());
  return marker.root.empty() || isOurs ? "" : marker.definitionFile;
}

void NoteExeTookOver() {
  Note("an EXE of the mod has taken over");
}

int PrintDone(const Arguments& arguments, bool done, const std::string& what) {
  if (!done) NoteExeTookOver();
  if (arguments.json) return Print({{"Done", done}});
  return done ? PrintLine(what) : kDone;
}

std::string LineFor(const Arguments& arguments) {
  CommandLineParts parts{"", arguments.map, arguments.edit};
  parts.options = arguments.options ? *arguments.options : JoinTickedOptions(ReadOptionList(OptionListFile()));
  return BuildCommandLine(parts, true);
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

int Launch(const Arguments& arguments, int row) {
  SilenceMessages();
  const RunOutcome run = LaunchClick(
                             row, [&] { return LineFor(arguments); }, {}, SessionSettings())
                             .run;
  if (!run.problem.empty()) return Fail(arguments.mod, OneLine(run.problem));
  if (run.ran && run.exitStatus == -1) return Fail(run.program, "could not be started; everything was put back");
  return PrintRun(arguments, run);
}

// A mod that does not fit the install any more can still be taken out of force: its definition is all that it takes.
int DeactivateUnlisted(const Arguments& arguments, const std::string& file) {
  const UndoOutcome outcome = DeactivateByMarker(file, InstallRoot());
  if (outcome == UndoOutcome::kNoFormat) return Fail(file, "is no definition");
  return PrintDone(arguments, outcome == UndoOutcome::kDone, file + " is out of force");
}

int DeactivateListed(const Arguments& arguments, const ModEntry& mod) {
  if (mod.State == -1) Note(mod.DefinitionFile + ": counts as inactive already");
  return PrintDone(arguments, TakeOutOfForce(mod), mod.DefinitionFile + " is out of force");
}

}  // namespace

int ActivateGivenMod(const Arguments& arguments) {
  const std::size_t row = FindGivenMod(arguments.mod);
  if (row == 0) return FailWithoutMod(arguments.mod);
  SelectModFolders(static_cast<int>(row));
  const ModEntry& mod = ModList[row];
  if (const int refused = RefuseActivation(mod); refused != kDone) return refused;
  if (mod.State == 0)
    Note(mod.DefinitionFile + ": is taken out of force by `deactivate`, or by the next start of Varnik");
  return PrintDone(arguments, PutIntoForce(mod), mod.DefinitionFile + " is in force");
}

int DeactivateGivenMod(const Arguments& arguments) {
  const std::size_t row = FindGivenMod(arguments.mod);
  const std::string file = row == 0 ? FindGivenDefinition(arguments.mod) : ModList[row].DefinitionFile;
  if (file.empty()) return FailWithoutMod(arguments.mod);
  if (const std::string other = OtherModInForce(file); !other.empty()) return FailOverModInForce(other);
  SelectModFolders(row == 0 ? -1 : static_cast<int>(row));
  return row == 0 ? DeactivateUnlisted(arguments, file) : DeactivateListed(arguments, ModList[row]);
}

int RunGivenMod(const Arguments& arguments) {
  const std::optional<int> row = SelectMod(arguments.mod);
  if (!row) return kFailed;
  if (*row == -1) return Launch(arguments, *row);
  const ModEntry& mod = ModList[*row];
  if (mod.State == 1) return Fail(mod.DefinitionFile, "is persistent and active: use `varnik-cli deactivate`");
  if (mod.State == -1) return Fail(mod.DefinitionFile, "is persistent and inactive: use `varnik-cli activate`");
  if (const CrashMarker marker = ReadCrashMarker(SessionSettings()); !marker.root.empty())
    return FailOverModInForce(marker.definitionFile);
  return Launch(arguments, *row);
}

int Recover(const Arguments& arguments) {
  const bool recovered = RecoverFromCrash();
  if (arguments.json) return Print({{"Recovered", recovered}});
  return PrintLine(recovered ? "An interrupted run was undone." : "There was no interrupted run.");
}

}  // namespace varnik::cli
