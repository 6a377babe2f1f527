#pragma once

#include "diagnosis/leftovers.h"

#include <vector>

namespace varnik {

// What interrupted or failed runs left in the selected install and in the settings store, in the order in which it is
// to be mended. What the deactivation of an active mod would put back is not among it. Reloads the catalogue; changes
// nothing.
std::vector<Leftover> FindLeftovers();

// Keeps a copy, `<name>.kept-1` or the next free number, of every file that gets another content, then mends. True when
// the item is gone; nothing is mended when a copy cannot be kept.
bool Mend(const Leftover& leftover);

}  // namespace varnik
