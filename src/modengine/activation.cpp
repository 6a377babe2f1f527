#include "modengine/activation.h"

#include "definition/bzonecfg.h"
#include "definition/confines.h"
#include "definition/crashmarker.h"
#include "definition/currentline.h"
#include "definition/includes.h"
#include "definition/recylist.h"
#include "legacy/legacyactivation.h"
#include "modengine/activationstate.h"
#include "modengine/sessiondefaults.h"
#include "platform/system/files/files.h"
#include "platform/system/files/lines.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "platform/system/text/text.h"
#include "platform/system/text/wildcards.h"
#include "support/install.h"
#include "support/modfileexists.h"

namespace varnik {

namespace {

// One file of the pass.
struct Pass {
  ActivationState& state;
  const std::string& root;
  ReadBounds& bounds;
  Confines& confines;
  bool exeTookOver = false;

  std::string Below(const std::string& name) const { return root + name; }
};

// False when an EXE took over.
bool ActivateFile(win::LineReader& file, Pass pass);

void Include(Pass& pass, const Args& args) {
  const std::string path = FindModFile(args[1]);
  if (path.empty()) return;
  const IncludeScope scope(pass.bounds);
  if (!scope.IsAllowed()) return;
  const bool persistent = pass.state.persistent;
  win::LineReader file(path);
  win::ReportOperation(win::Operation::kInclude, path, "", [&] { return file.IsOpen() || win::FailWith(EISDIR); });
  pass.exeTookOver = !ActivateFile(file, pass);
  pass.state.persistent = persistent;
}

void RequireExe(Pass& pass, const Args& args) {
  const std::string program = pass.Below(args[1]);
  if (!pass.state.noActionYet || !FileExists(program) || !pass.confines.MayStart(program)) return;
  pass.state.noActionYet = false;
  pass.exeTookOver = true;
  win::ShellExecute(program);
}

// Reading the attributes and storing them back changes none of them: a read-only file stays one.
void KeepAttributes(const std::string& path) {
  if (const auto attributes = win::GetAttributes(path)) win::SetAttributes(path, *attributes);
}

void Rename(Pass& pass, const Args& args) {
  pass.state.noActionYet = false;
  KeepAttributes(pass.Below(args[1]));
  win::RenameFile(pass.Below(args[1]), pass.Below(args[2]));
}

void Replace(Pass& pass, const Args& args) {
  pass.state.noActionYet = false;
  KeepAttributes(pass.Below(args[1]));
  KeepAttributes(pass.Below(args[2]));
  win::RenameFile(pass.Below(args[1]), pass.Below(args[3]));
  pass.confines.DoEvents();
  win::RenameFile(pass.Below(args[2]), pass.Below(args[1]));
}

void Pak(Pass& pass, const Args& args) {
  const std::string pack = args[1].ends_with(".pak") ? args[1] : args[1] + ".pak";
  if (!GeneratePackEntry(pass.root, pack)) pass.state.configurationFailed = true;
  pass.state.noActionYet = false;
}

void Fold(Pass& pass, const Args& args) {
  if (!GenerateFolderEntry(pass.root, args[1])) pass.state.configurationFailed = true;
  pass.state.noActionYet = false;
}

// The first value given counts.
void SetFirst(std::string& field, const std::string& value) {
  if (field.empty()) field = value;
}

template <std::string ActivationState::*kField>
void SessionDefault(Pass& pass, const Args& args) {
  SetFirst(pass.state.*kField, args[1]);
}

void RaceName(Pass& pass, const Args& args) {
  const std::string letter = win::UpperCase(args[1].substr(0, 1));
  if (letter >= "A" && letter <= "Z") SetFirst(pass.state.RaceNames[letter[0] - 'A'], args[2]);
}

void Activated(Pass& pass, const Args&) {
  if (!pass.state.noActionYet) return;
  pass.state.persistent = true;
  pass.state.noActionYet = false;
}

void WriteId(Pass& pass, const Args& args) {
  if (!win::HasWildcards(args[1])) win::LineWriter(pass.Below(args[1]), win::WriteMode::kOutput).Close();
}

void AddRecy(Pass& pass, const Args& args) {
  const std::string name = args.size() > 3 ? args[3] : kRecyList;
  if (!win::HasWildcards(name))
    win::LineWriter(pass.Below(name), win::WriteMode::kAppend).WriteLine(args[1] + " " + args[2]);
}

constexpr PassDirective<Pass> kDirectives[] = {
    {"include", 1, Include},
    {"requireexe", 1, RequireExe},
    {"rename", 2, Rename},
    {"renameex", 3, Replace},
    {"replace", 3, Replace},
    {"pak", 1, Pak},
    {"fold", 1, Fold},
    {"defaultname", 1, SessionDefault<&ActivationState::sessionName>},
    {"defaultpass", 1, SessionDefault<&ActivationState::password>},
    {"defaultsmsg", 1, SessionDefault<&ActivationState::message>},
    {"racename", 2, RaceName},
    {"activated", 0, Activated},  // works only above the first action, and is itself one
    {"writeid", 1, WriteId},
    {"addrecy", 2, AddRecy},
};

bool ActivateFile(win::LineReader& file, Pass pass) {
  Args args;
  while (!pass.exeTookOver && !file.AtEnd()) {
    pass.confines.DoEvents();
    ParseDirective(file.ReadLine(), args);
    const ScopedLine line(file);
    const win::ScopedFileSystem confined = pass.confines.Enforce();
    ActOnDirective(kDirectives, pass, args);
  }
  return !pass.exeTookOver;
}

}  // namespace

bool RunActivation(const std::string& definitionFile, bool isLegacy, ActivationState& state) {
  return isLegacy ? ActivateLegacyMod(definitionFile) : ActivateMod(definitionFile, state);
}

std::vector<DirectiveForm> ActivationDirectives() { return FormsOf(kDirectives); }

bool ActivateMod(const std::string& definitionFile, ActivationState& state) {
  win::DoEvents();
  const std::string root = InstallRoot();
  win::LineReader file(definitionFile);
  if (root.empty() || !file.IsOpen()) return false;
  win::DoEvents();
  ReadBounds bounds;
  Confines confines(root);
  if (!ActivateFile(file, {state, root, bounds, confines})) {
    DropConfiguration(root);
    return false;
  }
  if (state.configurationFailed) DropConfiguration(root);
  ActivateConfiguration(confines, root, IsVersion13());
  // A persistent mod has no marker, since it stays active across starts, and leaves the player's own files alone.
  if (state.persistent) return true;
  if (IsVersion13()) ApplyPlayersValues(state);
  // What undoes the mod starts from what is on the disk.
  win::SyncFileSystemOf(root);
  WriteCrashMarker({root, definitionFile});
  return true;
}

}  // namespace varnik
