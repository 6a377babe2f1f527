#include "legacy/legacydeactivation.h"

#include "definition/bzonecfg.h"
#include "definition/confines.h"
#include "definition/crashmarker.h"
#include "legacy/legacyformat.h"
#include "platform/system/files/files.h"
#include "platform/system/files/lines.h"
#include "support/install.h"
#include "support/modfileexists.h"

#include <set>

namespace varnik {

namespace {

// The lines are undone from the first to the last, as they were done: parking names go by that count.
struct UndoPass {
  std::string root;
  LegacyPlaces places;
  LegacyArguments arguments{};
  LegacyConfig config = LegacyConfig::kUndecided;
  std::set<std::string> swappedFolders = {};

  std::string InRoot(const std::string& name) const { return root + name; }
};

// Without the saved configuration there is nothing to put back, and a later line may still be the one that saved it.
bool TakeSavedConfig(UndoPass& pass, LegacyConfig config) {
  if (pass.config != LegacyConfig::kUndecided || !FileExists(pass.InRoot(kLegacyConfigBackup))) return false;
  pass.config = config;
  return true;
}

void Dynamic(UndoPass& pass, const LegacyLine&) {
  if (!TakeSavedConfig(pass, LegacyConfig::kGenerated)) return;
  win::DeleteFiles(pass.InRoot(kGameConfig));
  win::RenameFile(pass.InRoot(kLegacyConfigBackup), pass.InRoot(kGameConfig));
}

void Predefined(UndoPass& pass, const LegacyLine& line) {
  if (!TakeSavedConfig(pass, LegacyConfig::kPredefined)) return;
  const std::string path = pass.places.ExpandRootDir(line.Value());
  win::RenameFile(pass.InRoot(kGameConfig), path);
  win::RenameFile(pass.InRoot(kLegacyConfigBackup), pass.InRoot(kGameConfig));
}

void NoBzoneCfg(UndoPass& pass, const LegacyLine&) {
  if (pass.config == LegacyConfig::kUndecided) pass.config = LegacyConfig::kUntouched;
}

void SwapBack(UndoPass& pass, const LegacyLine& line) {
  const std::string folder = line.Keyword();
  if (!pass.swappedFolders.insert(folder).second) return;
  const std::string path = pass.places.ExpandRootDir(line.Value());
  win::RenameFile(pass.InRoot(folder), path);
  win::RenameFile(pass.InRoot(folder + kLegacyFolderBackup), pass.InRoot(folder));
}

void Replace(UndoPass& pass, const LegacyLine& line) {
  pass.places.SplitExpanded(line, pass.arguments);
  win::RenameFile(pass.arguments.first, pass.arguments.second);
  win::RenameFile(pass.places.NextTempName(), pass.arguments.first);
}

void Move(UndoPass& pass, const LegacyLine& line) {
  pass.places.SplitExpanded(line, pass.arguments);
  win::RenameFile(pass.arguments.second, pass.arguments.first);
}

void Remove(UndoPass& pass, const LegacyLine& line) {
  const std::string path = pass.places.ExpandRootDir(win::Trim(line.Value()));
  win::RenameFile(pass.places.NextTempName(), path);
}

// `exec`, `pak` and `fold` leave nothing behind.
constexpr LegacyDirective<UndoPass> kDirectives[] = {
    {"dynamic", Dynamic},  {"predefined ", Predefined}, {"nobzonecfg", NoBzoneCfg},
    {"pilots ", SwapBack}, {"saved ", SwapBack},        {"replace ", Replace},
    {"move ", Move},       {"remove ", Remove},
};

}  // namespace

void UndoLegacyLines(const std::string& definitionFile, const std::string& root) {
  win::LineReader file(definitionFile);
  // Recovery at a start has no install selected; the interrupted run had this one.
  const std::string selected = InstallRoot();
  UndoPass pass{root, {selected.empty() ? root : selected}};
  // A file that cannot be opened has no lines; what every undo ends with takes place all the same.
  Confines confines(root);
  while (!file.AtEnd()) {
    const win::ScopedFileSystem confined = confines.Enforce();
    ActOnLegacyLine(kDirectives, pass, ReadLegacyLine(file));
  }
}

bool EndLegacyDeactivation(const std::string& root) {
  // The folder goes while the marker still stands: a kill in between leaves nothing behind that a start would not find.
  win::RemoveFolder(root + kParkingFolder);
  const bool isOnDisk = win::SyncFileSystemOf(root);
  return ReadCrashMarker(RemoveCrashMarker(win::OtherKeys::kRemove)).root.empty() && isOnDisk;
}

void DeactivateLegacyMod(const std::string& definitionFile, const std::string& root) {
  UndoLegacyLines(definitionFile, root);
  EndLegacyDeactivation(root);
}

}  // namespace varnik
