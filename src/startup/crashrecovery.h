#pragma once

namespace varnik {

// Finishes a run that was interrupted, by its marker. True when a marker was acted on, whatever came of it. Does
// nothing while another process of Varnik changes an install or runs the game, and nothing when the settings cannot be
// read: `isKnown` then becomes false, and true otherwise.
bool RecoverFromCrash(bool* isKnown = nullptr);

}  // namespace varnik
