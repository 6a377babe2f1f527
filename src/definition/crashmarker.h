#pragma once

#include "support/settings.h"

#include <string>

// What a start needs to finish a run that was interrupted: two values of section Crash, which every start reads, and an
// entry that makes the system start the program after the next log-in.
namespace varnik {

struct CrashMarker {
  std::string root;            // of the install, ends in a separator
  std::string definitionFile;  // full path
};

// Both texts are empty when there is no marker.
CrashMarker ReadCrashMarker(const win::SettingsSnapshot& stored = StoredSettings());

void WriteCrashMarker(const CrashMarker& marker);

// Gives what is stored then.
win::SettingsSnapshot RemoveCrashMarker(win::OtherKeys others = win::OtherKeys::kKeep);

}  // namespace varnik
