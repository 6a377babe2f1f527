#pragma once

#include <string>

namespace varnik {

struct GameEnd {
  int status = -1;  // of the program; -1 for a failed start
  std::string
      earlyEnd;  // one that ended at once, as a broken runner does: what was started, its status and its last lines
};

// Runs `commandLine` in the folder of the selected install and returns when it, and what it leaves behind, has ended.
// Pumps events while it waits, with GameRunning set, and those that came last before it returns. A failed start ends at
// once. Gives the exit status of the program, -1 for a failed start. Under a win::SignalHold the first signal is handed
// on to the game, and a second one kills it.
GameEnd ShellAndWait(const std::string& commandLine, unsigned creationFlags);

}  // namespace varnik
