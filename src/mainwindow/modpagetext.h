#pragma once

#include "definition/modentry.h"

#include <string>

// The description box of the mod page.
namespace varnik {

// For no mod: the game itself, and the program's Readme.txt where there is one.
std::string NoModText();

// The mod's description under the notes that it needs.
std::string ModText(const ModEntry& mod);

// Full path of the mod's picture: below the install root, else below `mods\` of the program's folder; empty without
// one.
std::string ModPicture(const ModEntry& mod);

}  // namespace varnik
