#pragma once

#include "platform/system/files/lines.h"

#include <string>

// Mods of the older, line-oriented definition format: marker version 3 or less.
namespace varnik {

// Reads a definition whose first line has been read from `file` and adds its row to the catalogue; a file that passed
// line 1 always gets one. `path` may be cut down to its file name.
void LoadLegacyMod(win::LineReader& file, std::string& path);

// False when a line started a program in the game's place: no marker is written then and the game is not to be run.
bool ActivateLegacyMod(const std::string& definitionFile);

// Undoes the lines on the install at `root` (ends in a separator) and removes the crash marker.
void DeactivateLegacyMod(const std::string& definitionFile, const std::string& root);

}  // namespace varnik
