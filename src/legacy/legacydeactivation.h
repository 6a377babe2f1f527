#pragma once

#include <string>

namespace varnik {

// Undoes the lines of a definition of the older format on the install at `root`, which ends in a separator, and removes
// the crash marker. A definition that cannot be read has no lines; the marker goes all the same.
void DeactivateLegacyMod(const std::string& definitionFile, const std::string& root);

}  // namespace varnik
