#include "support/modshellwait.h"

#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "platform/system/process/signals.h"
#include "support/install.h"
#include "support/runstate.h"

#include <csignal>

namespace varnik {

int ShellAndWait(const std::string& commandLine, unsigned creationFlags) {
  constexpr int kPumpEveryMilliseconds = 500;
  win::Process game = win::CreateProcess(commandLine, creationFlags, InstallRoot());
  GameRunning = true;
  int handedOn = 0;
  do {
    win::DoEvents();
    const win::NotedSignals noted = win::SignalsNoted();
    if (noted.count <= handedOn) continue;
    // Whoever asks again wants it to end in any case.
    game.Send(handedOn++ > 0 ? SIGKILL : noted.first == SIGINT ? SIGINT : SIGTERM);
  } while (game.Wait(kPumpEveryMilliseconds) == win::WaitResult::kTimedOut);
  // What was asked for while the game ran counts as asked during the run, and goes with it.
  win::DoEvents();
  GameRunning = false;
  return game.ExitStatus();
}

}  // namespace varnik
