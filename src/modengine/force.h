#pragma once

#include "definition/modentry.h"

// The passes of either format, by a row of the catalogue, on the selected install.
namespace varnik {

// False when an EXE took over.
bool PutIntoForce(const ModEntry& mod);
bool TakeOutOfForce(const ModEntry& mod);

}  // namespace varnik
