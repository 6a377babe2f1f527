#include "modengine/deactivation.h"

#include "definition/bzonecfg.h"
#include "definition/confines.h"
#include "definition/crashmarker.h"
#include "definition/includes.h"
#include "definition/recylist.h"
#include "legacy/legacydeactivation.h"
#include "modengine/runguard.h"
#include "modengine/sessiondefaults.h"
#include "platform/system/files/files.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "platform/system/text/wildcards.h"
#include "support/debuglog.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/runstate.h"

#include <utility>

namespace varnik {

namespace {

std::function<void()> refreshMapPage;

// One file of the pass.
struct Pass {
  const std::string& root;
  bool& noActionYet;
  bool& persistent;
  ReadBounds& bounds;
  Confines& confines;
  bool exeTookOver = false;

  std::string Below(const std::string& name) const { return root + name; }
};

// False when an EXE took over.
bool DeactivateFile(win::LineReader& file, Pass pass);

void Include(Pass& pass, const Args& args) {
  const std::string path = pass.Below(args[1]);
  if (!FileExists(path)) return;
  const IncludeScope scope(pass.bounds);
  if (!scope.IsAllowed()) return;
  win::LineReader file(path);
  pass.exeTookOver = !DeactivateFile(file, pass);
}

// Looks below the selected install, whatever the root of the pass; with none selected there is nothing to look at.
void RequireExe(Pass& pass, const Args& args) {
  const std::string selected = InstallRoot();
  if (!pass.noActionYet || selected.empty() || !FileExists(selected + args[1])) return;
  const std::string commandLine = "\"" + selected + args[1] + "\" " + args[2];
  if (!pass.confines.MayStart(commandLine)) return;
  pass.noActionYet = false;
  pass.exeTookOver = true;
  win::ShellExecute(commandLine);
}

void Rename(Pass& pass, const Args& args) {
  win::RenameFile(pass.Below(args[2]), pass.Below(args[1]));
  pass.noActionYet = false;
}

void Replace(Pass& pass, const Args& args) {
  win::RenameFile(pass.Below(args[1]), pass.Below(args[2]));
  pass.confines.DoEvents();
  win::RenameFile(pass.Below(args[3]), pass.Below(args[1]));
  pass.noActionYet = false;
}

void PakOrFold(Pass& pass, const Args&) {
  RestoreConfiguration(pass.root);
  pass.noActionYet = false;
}

void Activated(Pass& pass, const Args&) {
  if (!pass.noActionYet) return;
  pass.persistent = true;
  pass.noActionYet = false;
}

// An ID file has no wildcards in its name: deleting by a pattern would take the player's files with it.
void WriteId(Pass& pass, const Args& args) {
  if (!win::HasWildcards(args[1]) && FileExists(pass.Below(args[1]))) win::DeleteFiles(pass.Below(args[1]));
}

// The list goes only once its copy is whole, and the copy only while the list is still there.
void RemoveLines(const std::string& list, const std::string& copy, const std::string& own) {
  std::string kept;
  {
    win::LineReader lines(list);
    if (!lines.IsOpen()) return;
    while (!lines.AtEnd())
      if (const std::string line = lines.ReadLine(); !line.starts_with(own)) kept.append(line).append("\r\n");
  }
  if (!win::WriteWholeFile(copy, kept)) return;
  if (win::DeleteFiles(list))
    win::RenameFile(copy, list);
  else
    win::DeleteFiles(copy);
}

// Looks below the selected install like RequireExe. A list of its own is left alone where there is no RecyList.txt.
void AddRecy(Pass& pass, const Args& args) {
  const std::string name = args.size() > 3 ? args[3] : kRecyList;
  if (win::HasWildcards(name)) return;
  // An earlier undo that died ahead of its last step left the list under the name of its copy.
  if (!FileExists(pass.Below(name))) win::RenameFile(pass.Below(kRecyListCopy), pass.Below(name));
  const std::string selected = InstallRoot();
  if (!selected.empty() && FileExists(selected + kRecyList))
    RemoveLines(selected + name, selected + kRecyListCopy, args[1] + " ");
}

constexpr PassDirective<Pass> kDirectives[] = {
    {"include", 1, Include},  {"requireexe", 2, RequireExe}, {"rename", 2, Rename},
    {"renameex", 3, Replace}, {"replace", 3, Replace},       {"pak", 1, PakOrFold},
    {"fold", 1, PakOrFold},   {"activated", 0, Activated},  // works only above the first action, and is itself one
    {"writeid", 1, WriteId},  {"addrecy", 2, AddRecy},
};

bool DeactivateFile(win::LineReader& file, Pass pass) {
  LogLine("DeactivateFile Begin");
  Args args;
  while (!pass.exeTookOver && !file.AtEnd()) {
    pass.confines.DoEvents();
    ParseDirective(file.ReadLine(), args);
    const win::ScopedFileSystem confined = pass.confines.Enforce();
    ActOnDirective(kDirectives, pass, args);
  }
  return !pass.exeTookOver;
}

}  // namespace

std::vector<DirectiveForm> DeactivationDirectives() { return FormsOf(kDirectives); }

bool DeactivateMod(const std::string& definitionFile, const std::string& root) {
  LogLine("Deactivate Varnik Mod Begin");
  win::LineReader file(definitionFile);
  bool noActionYet = true;
  bool persistent = false;
  ReadBounds bounds;
  Confines confines(root);
  if (!DeactivateFile(file, {root, noActionYet, persistent, bounds, confines})) return false;
  win::SettingsSnapshot stored;
  if (!persistent) stored = RemoveCrashMarker();
  SelectedMapIndex = -1;
  if (refreshMapPage) refreshMapPage();
  if (!persistent) RestorePlayersValues(stored);
  return true;
}

UndoOutcome DeactivateByMarker(const std::string& definitionFile, const std::string& root) {
  const RunGuard guard(root);
  if (!guard.IsHeld()) {
    win::MsgBox(kRunRefused);
    return UndoOutcome::kRefused;
  }
  double version = 0;
  if (!ReadMarker(win::LineReader(definitionFile).ReadLine(), version)) return UndoOutcome::kNoFormat;
  if (version <= kLastLegacyFormat) {
    DeactivateLegacyMod(definitionFile, root);
    return UndoOutcome::kDone;
  }
  if (version != kCurrentFormat) return UndoOutcome::kNoFormat;
  return DeactivateMod(definitionFile, root) ? UndoOutcome::kDone : UndoOutcome::kExeTookOver;
}

void SetMapPageRefresh(std::function<void()> refresh) { refreshMapPage = std::move(refresh); }

}  // namespace varnik
