#pragma once

#include "definition/modentry.h"
#include "diagnosis/finding.h"

namespace varnik {

// Reports the files that both `mod` and another mod of ModList move or write, bzone.cfg included. What each does is
// found by a rehearsal of its activation. Of a mod with the file name of `mod` the catalogue lists only one, so it is
// left out. Changes nothing. False when there was too much to compare all.
bool CheckModsMeet(const ModEntry& mod, Findings& findings);

}  // namespace varnik
