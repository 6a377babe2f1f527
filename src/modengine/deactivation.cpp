#include "modengine/deactivation.h"

#include "definition/bzonecfg.h"
#include "definition/confines.h"
#include "definition/crashmarker.h"
#include "definition/includes.h"
#include "definition/recylist.h"
#include "modengine/sessiondefaults.h"
#include "platform/system/files/files.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/filesystem.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "platform/system/text/wildcards.h"
#include "support/debuglog.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/runstate.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace varnik {

namespace {

std::function<void()> refreshMapPage;

// The lines that go from one list. A list is read and written once for all `addrecy` that follow each other.
struct LineRemoval {
  std::string list;               // its name
  std::vector<std::string> owns;  // what the lines begin with; none: nothing to do
};

// One file of the pass.
struct Pass {
  const std::string& root;
  bool& noActionYet;
  bool& persistent;
  ReadBounds& bounds;
  LineRemoval& removal;
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
  win::ReportOperation(win::Operation::kInclude, path, "", [&] { return file.IsOpen() || win::FailWith(EISDIR); });
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

// `owns` are in order, and none begins with another.
bool IsOwnLine(const std::string& line, const std::vector<std::string>& owns) {
  const auto next = std::upper_bound(owns.begin(), owns.end(), line);
  return next != owns.begin() && line.starts_with(*std::prev(next));
}

// The list goes only once its copy is whole, and the copy only while the list is still there.
void RemoveLines(const std::string& list, const std::string& copy, const std::vector<std::string>& owns) {
  std::string kept;
  {
    win::LineReader lines(list);
    if (!lines.IsOpen()) return;
    while (!lines.AtEnd())
      if (const std::string line = lines.ReadLine(); !IsOwnLine(line, owns)) kept.append(line).append("\r\n");
    const auto isWhole = [&] { return !lines.Failed() || win::FailWith(EIO); };
    if (!isWhole()) return static_cast<void>(win::ReportOperation(win::Operation::kWrite, list, "", isWhole));
  }
  if (!win::WriteWholeFile(copy, kept)) return;
  if (win::DeleteFiles(list))
    win::RenameFile(copy, list);
  else
    win::DeleteFiles(copy);
}

// Looks below the selected install like RequireExe. A list of its own is left alone where there is no RecyList.txt.
void RemovePendingLines(Pass& pass) {
  if (pass.removal.owns.empty()) return;
  const win::ScopedFileSystem confined = pass.confines.Enforce();
  auto [name, owns] = std::exchange(pass.removal, {});
  std::sort(owns.begin(), owns.end());
  owns.erase(
      std::unique(owns.begin(), owns.end(), [](const auto& one, const auto& next) { return next.starts_with(one); }),
      owns.end());
  // An earlier undo that died ahead of its last step left the list under the name of its copy.
  if (!FileExists(pass.Below(name))) win::RenameFile(pass.Below(kRecyListCopy), pass.Below(name));
  const std::string selected = InstallRoot();
  if (!selected.empty() && FileExists(selected + kRecyList))
    RemoveLines(selected + name, selected + kRecyListCopy, owns);
}

void AddRecy(Pass& pass, const Args& args) {
  const std::string name = args.size() > 3 ? args[3] : kRecyList;
  if (win::HasWildcards(name)) return;
  if (name != pass.removal.list) RemovePendingLines(pass);
  pass.removal.list = name;
  pass.removal.owns.push_back(args[1] + " ");
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
    if (args[0] != "addrecy") RemovePendingLines(pass);
    const win::ScopedFileSystem confined = pass.confines.Enforce();
    ActOnDirective(kDirectives, pass, args);
  }
  RemovePendingLines(pass);
  return !pass.exeTookOver;
}

}  // namespace

std::vector<DirectiveForm> DeactivationDirectives() { return FormsOf(kDirectives); }

bool UndoLines(const std::string& definitionFile, const std::string& root, bool& persistent) {
  LogLine("Deactivate Varnik Mod Begin");
  win::LineReader file(definitionFile);
  bool noActionYet = true;
  persistent = false;
  ReadBounds bounds;
  LineRemoval removal;
  Confines confines(root);
  return DeactivateFile(file, {root, noActionYet, persistent, bounds, removal, confines});
}

bool EndDeactivation(const std::string& root, bool persistent) {
  bool isDone = win::SyncFileSystemOf(root);
  win::SettingsSnapshot stored;
  if (!persistent) stored = RemoveCrashMarker();
  SelectedMapIndex = -1;
  if (refreshMapPage) refreshMapPage();
  if (!persistent) isDone = RestorePlayersValues(stored) && isDone;
  return isDone && (persistent || ReadCrashMarker(stored).root.empty());
}

bool DeactivateMod(const std::string& definitionFile, const std::string& root) {
  bool persistent = false;
  if (!UndoLines(definitionFile, root, persistent)) return false;
  EndDeactivation(root, persistent);
  return true;
}

void SetMapPageRefresh(std::function<void()> refresh) { refreshMapPage = std::move(refresh); }

}  // namespace varnik
