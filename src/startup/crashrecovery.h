#pragma once

namespace varnik {

struct Recovery {
  bool acted = false;  // on the marker of an interrupted run, whatever came of it
  bool isDone = true;  // false: something is left to put back, or the settings cannot be read; standard error says what
};

// Finishes a run that was interrupted, by its marker, and puts back what an activation changed that was cut off before
// it had left one. Does nothing while another process of Varnik changes an install or runs the game, or when the
// settings cannot be read.
Recovery RecoverFromCrash();

}  // namespace varnik
