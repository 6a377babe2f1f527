#include "startup/crashrecovery.h"

#include "definition/crashmarker.h"
#include "journal/journal.h"
#include "modengine/applymod.h"
#include "modengine/runguard.h"
#include "platform/system/paths/program.h"
#include "support/debuglog.h"
#include "support/modfileexists.h"
#include "support/settings.h"

#include <cstdio>
#include <optional>
#include <string>

namespace varnik {

namespace {

void Say(const std::string& text) { std::fprintf(stderr, "%s: %s\n", win::Program().name.c_str(), text.c_str()); }

void SayAll(const Report& report) {
  for (const Problem& problem : report)
    Say(TextOf(problem));
}

// What a start leaves to a person who asks for it.
void SayLeft(const std::string& definition, const std::string& root, const Report& left) {
  if (left.empty()) return;
  SayAll(left);
  Say("`varnik-cli --root '" + root + "' doctor --fix` puts these back as well, and so does `deactivate` of " + definition);
}

void UndoMarked(const CrashMarker& marker) {
  Report left;
  SayAll(RevertAtStart(marker.definitionFile, marker.root, left).failed);
  SayLeft(marker.definitionFile, marker.root, left);
}

// The definition of the marker has gone. The journal, if there is one, stays for whoever asks for it.
void DropMarker(const CrashMarker& marker) {
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
}

}  // namespace

bool RecoverFromCrash() {
  LogLine("RecoverFromCrash Begin");
  // While another process is at work, the marker belongs to a run that is still going on.
  const RunGuard guard;
  if (!guard.IsHeld()) return false;
  const CrashMarker marker = ReadCrashMarker();
  const bool isMarked = !marker.root.empty() && !marker.definitionFile.empty() && FileExists(marker.definitionFile);
  if (isMarked)
    UndoMarked(marker);
  else
    DropMarker(marker);
  int count = 0;
  SayAll(FinishInterrupted("", false, count));
  if (count > 0) Say("what an interrupted activation changed has been put back");
  return isMarked;
}

}  // namespace varnik
