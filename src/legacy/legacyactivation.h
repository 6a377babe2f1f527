#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace varnik {

// Carries out a mod of the older format on the selected install. False when a line started a program in the game's
// place: no marker is written then and the game is not to be run.
bool ActivateLegacyMod(const std::string& definitionFile);

// Every keyword that a pass acts on: those of the activation.
std::vector<std::string_view> LegacyKeywords();

}  // namespace varnik
