#include "startup/crashrecovery.h"

#include "definition/crashmarker.h"
#include "journal/journal.h"
#include "modengine/applymod.h"
#include "modengine/runguard.h"
#include "platform/system/paths/program.h"
#include "support/debuglog.h"
#include "support/modfileexists.h"
#include "support/settings.h"

#include <optional>
#include <string>

namespace varnik {

namespace {

void SayAll(const Report& report) {
  for (const ReportLine& problem : report)
    win::SayOnStandardError(TextOf(problem));
}

// What a start leaves to a person who asks for it.
void SayLeft(const std::string& definition, const std::string& root, const Report& left) {
  if (left.empty()) return;
  SayAll(left);
  win::SayOnStandardError("`varnik-cli --root '" + root +
                          "' doctor --fix` puts these back as well, and so does `deactivate` of " + definition);
}

bool UndoMarked(const CrashMarker& marker) {
  Report left;
  const Report failed = RevertAtStart(marker.definitionFile, marker.root, left).failed;
  SayAll(failed);
  SayLeft(marker.definitionFile, marker.root, left);
  return failed.empty();
}

// The definition of the marker has gone. The journal, if there is one, stays for whoever asks for it.
bool DropMarker(const CrashMarker& marker) {
  std::optional<Journal> journal;
  if (!marker.definitionFile.empty()) journal = FindJournal(marker.root, marker.definitionFile);
  if (journal) {
    journal->phase = JournalPhase::kLeft;
    WriteJournal(*journal);
    SayLeft(marker.definitionFile, marker.root,
            {{"", 0, marker.definitionFile + " is active in " + marker.root, "its definition has gone"}});
  }
  RemoveCrashMarker();
  Forget(kBackupSection);
  return !journal;
}

}  // namespace

Recovery RecoverFromCrash() {
  LogLine("RecoverFromCrash Begin");
  // While another process is at work, the marker belongs to a run that is still going on.
  const RunGuard guard;
  if (!guard.IsHeld()) return {};
  const win::SettingsSnapshot stored = StoredSettings();
  if (!stored.IsReadable()) return {false, false};  // the store has said so on standard error
  const CrashMarker marker = ReadCrashMarker(stored);
  const bool isMarked = !marker.root.empty() && !marker.definitionFile.empty() && FileExists(marker.definitionFile);
  const bool isDone = isMarked ? UndoMarked(marker) : DropMarker(marker);
  int count = 0;
  const Report failed = FinishInterrupted("", false, count);
  SayAll(failed);
  if (count > 0 && failed.empty()) win::SayOnStandardError("what an interrupted activation changed has been put back");
  return {isMarked, isDone && failed.empty()};
}

}  // namespace varnik
