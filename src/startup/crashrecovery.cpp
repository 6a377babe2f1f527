#include "startup/crashrecovery.h"

#include "definition/crashmarker.h"
#include "modengine/deactivation.h"
#include "modengine/runguard.h"
#include "support/debuglog.h"
#include "support/modfileexists.h"
#include "support/settings.h"

namespace varnik {

bool RecoverFromCrash(bool* isKnown) {
  LogLine("RecoverFromCrash Begin");
  // While another process is at work, the marker belongs to a run that is still going on.
  const RunGuard guard;
  if (!guard.IsHeld()) return false;
  const win::SettingsSnapshot stored = StoredSettings();
  if (isKnown) *isKnown = stored.IsReadable();
  if (!stored.IsReadable()) return false;  // the store has said so on standard error
  const CrashMarker marker = ReadCrashMarker(stored);
  if (!marker.root.empty() && !marker.definitionFile.empty() && FileExists(marker.definitionFile)) {
    DeactivateByMarker(marker.definitionFile, marker.root);
    return true;
  }
  RemoveCrashMarker();
  Forget(kBackupSection);
  return false;
}

}  // namespace varnik
