#pragma once

#include "definition/modentry.h"

// The passes of either format, for a row of the catalogue, on the selected install. False when an EXE took over.
namespace varnik {

bool ActivateListedMod(const ModEntry& mod);
bool DeactivateListedMod(const ModEntry& mod);

}  // namespace varnik
