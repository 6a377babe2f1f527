#pragma once

namespace win {

// Called once at program start: removes what a kill left of a write in the program's configuration folder, unless
// another process is just writing it, and takes the stores that others may read from them.
void TidyConfigFolder();

}  // namespace win
