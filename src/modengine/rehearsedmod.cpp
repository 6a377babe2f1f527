#include "modengine/rehearsedmod.h"

#include "definition/bzonecfg.h"
#include "journal/record.h"
#include "legacy/legacydeactivation.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/sessiondefaults.h"
#include "platform/system/files/rehearsal.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/workingfolder.h"
#include "support/install.h"

#include <cerrno>
#include <set>
#include <utility>

namespace varnik {

namespace {

Journal NewJournal(const std::string& definitionFile, bool isLegacy) {
  Journal journal;
  journal.root = InstallRoot();
  journal.definitionFile = definitionFile;
  journal.legacy = isLegacy;
  journal.workingFolder = win::WorkingFolder();
  win::FileStatus status;
  if (win::CurrentFileSystem().Status(win::NativePath(journal.root), status)) journal.rootIdentity = status.identity;
  return journal;
}

void RehearseUndo(const Journal& journal) {
  bool persistent = false;
  if (journal.legacy)
    UndoLegacyLines(journal.definitionFile, journal.root);
  else if (UndoLines(journal.definitionFile, journal.root, persistent) && !persistent)
    RestorePlayersValues();
}

void RehearseActivation(RehearsedMod& mod) {
  ActivationState state;
  mod.active = RunActivation(mod.journal.definitionFile, mod.journal.legacy, state);
  mod.journal.persistent = state.persistent;
  if (!state.persistent) mod.journal.session = SessionValuesSet();
  mod.configuration = win::ReadWholeFile(mod.journal.root + kGameConfig);
}

bool NoteDefinitions(Journal& journal, const std::set<std::string>& files, std::string& failed) {
  for (const std::string& path : files) {
    std::optional<std::string> content = win::ReadWholeFile(path);
    failed = path;
    if (!content) return false;
    journal.definitions.push_back({path, *std::move(content)});
  }
  return true;
}

}  // namespace

RehearsedMod RehearseMod(const std::string& definitionFile, bool isLegacy) {
  RehearsedMod mod;
  mod.journal = NewJournal(definitionFile, isLegacy);
  win::FileSystem& present = win::CurrentFileSystem();
  std::set<std::string> files = {definitionFile};
  ActivationSteps steps;
  bool isUndo = false;
  const win::Rehearsal rehearsal;
  const win::OperationObserver observer([&](const win::FileOperation& operation) {
    if (operation.kind == win::Operation::kInclude && operation.done) files.insert(operation.target);
    if (!isUndo) steps.Take(operation);
  });
  RehearseActivation(mod);
  mod.steps = steps.All();
  isUndo = true;
  ActiveState active = NoteActiveState(rehearsal.Record());
  RehearseUndo(mod.journal);
  const win::ScopedFileSystem asItIs(present);
  mod.unreadable = rehearsal.Record().Unreadable();
  errno = rehearsal.Record().ReadError();
  if (mod.unreadable.empty() && NoteDefinitions(mod.journal, files, mod.unreadable) &&
      FillJournal(mod.journal, rehearsal.Record(), std::move(active), mod.unreadable))
    mod.unreadable.clear();
  else
    mod.why = win::ExplainError(errno);
  return mod;
}

}  // namespace varnik
