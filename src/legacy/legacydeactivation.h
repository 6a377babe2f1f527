#pragma once

#include <string>

namespace varnik {

// Undoes the lines of a definition of the older format on the install at `root`, which ends in a separator, and removes
// the parking folder and the crash marker, also when the definition cannot be read.
void DeactivateLegacyMod(const std::string& definitionFile, const std::string& root);

// Its two halves: what the definition says, which a rehearsal may call, and the rest. What the lines did is on the disk
// before the marker goes. False when the marker could not be removed.
void UndoLegacyLines(const std::string& definitionFile, const std::string& root);
bool EndLegacyDeactivation(const std::string& root);

}  // namespace varnik
