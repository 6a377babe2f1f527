#pragma once

#include "definition/passdirective.h"
#include "modengine/activationstate.h"

#include <string>
#include <vector>

namespace varnik {

// Activates a mod of the current format on the selected install. False when an EXE took over or there is no such file:
// the game is not to be run then. No roll-back: a step that fails is skipped.
// `state` receives what was collected.
bool ActivateMod(const std::string& definitionFile, ActivationState& state);
// Of either format.
bool RunActivation(const std::string& definitionFile, bool isLegacy, ActivationState& state);

inline bool ActivateMod(const std::string& definitionFile) {
  ActivationState state;
  return ActivateMod(definitionFile, state);
}

std::vector<DirectiveForm> ActivationDirectives();

}  // namespace varnik
