#pragma once

#include "definition/passdirective.h"

#include <functional>
#include <string>
#include <vector>

namespace varnik {

// Deactivates a mod of the current format. `root` ends in a separator; it is an argument because this also runs
// at a start, with no install selected. False when an EXE took over: nothing else is touched then.
bool DeactivateMod(const std::string& definitionFile, const std::string& root);

// The first half of it: the lines, and nothing of the program's own, so that a rehearsal may call it.
bool UndoLines(const std::string& definitionFile, const std::string& root, bool& persistent);

// The second half: the crash marker, the map page, the player's values. What the lines did is on the disk before the
// marker goes. False when something could not be stored or put back.
bool EndDeactivation(const std::string& root, bool persistent);

std::vector<DirectiveForm> DeactivationDirectives();

// Called by DeactivateMod where the map page has to follow; set by the window once it exists.
void SetMapPageRefresh(std::function<void()> refresh);

}  // namespace varnik
