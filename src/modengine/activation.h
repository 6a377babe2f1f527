#pragma once

#include <array>
#include <string>

namespace varnik {

// New race names by letter A to Z, from index 0. Written by the activation pass, cleared at its start.
extern const std::array<std::string, 26>& RaceNames;

// What one walk over a definition collects; goes through included files but for `persistent`.
struct ActivationWalk {
  std::string sessionName;
  std::string password;
  std::string message;
  bool noActionYet = true;
  bool persistent = false;
};

// Puts a mod of the current format into force on the selected install. False when an EXE took over or there is no such
// file: the game is not to be run then. No roll-back: a step that fails is skipped.
bool ActivateMod(const std::string& definitionFile);

}  // namespace varnik
