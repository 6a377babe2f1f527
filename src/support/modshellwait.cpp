#include "support/modshellwait.h"

#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "support/install.h"
#include "support/runstate.h"

namespace varnik {

int ShellAndWait(const std::string& commandLine, unsigned creationFlags) {
  constexpr int kPumpEveryMilliseconds = 500;
  win::Process game = win::CreateProcess(commandLine, creationFlags, InstallRoot());
  GameRunning = true;
  do
    win::DoEvents();
  while (game.Wait(kPumpEveryMilliseconds) == win::WaitResult::kTimedOut);
  GameRunning = false;
  return game.ExitStatus();
}

}  // namespace varnik
