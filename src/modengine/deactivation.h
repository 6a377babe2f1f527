#pragma once

#include "definition/passdirective.h"

#include <functional>
#include <string>
#include <vector>

namespace varnik {

// Deactivates a mod of the current format. `root` ends in a separator; it is an argument because this also runs
// at a start, with no install selected. False when an EXE took over: nothing else is touched then.
bool DeactivateMod(const std::string& definitionFile, const std::string& root);

enum class UndoOutcome {
  kDone,
  kExeTookOver,
  kNoFormat,  // the file cannot be read, its marker is bad, or its version is no format
  kRefused,   // another process of Varnik is at work; a message has said so
};

// Undoes a mod of either format, by the marker in its line 1.
UndoOutcome DeactivateByMarker(const std::string& definitionFile, const std::string& root);

std::vector<DirectiveForm> DeactivationDirectives();

// Called by DeactivateMod where the map page has to follow; set by the window once it exists.
void SetMapPageRefresh(std::function<void()> refresh);

}  // namespace varnik
