#include "support/modshellwait.h"

#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "platform/system/process/signals.h"
#include "support/install.h"
#include "support/runstate.h"

#include <chrono>
#include <csignal>
#include <cstddef>
#include <vector>

namespace varnik {

namespace {

constexpr std::chrono::seconds kAtOnce(2);
constexpr std::size_t kMaxLines = 12;

std::string LastLines(const std::string& text) {
  std::size_t begin = text.find_last_not_of('\n');
  for (std::size_t lines = 0; lines < kMaxLines && begin != std::string::npos && begin > 0; ++lines)
    begin = text.rfind('\n', begin - 1);
  return text.substr(begin == std::string::npos || begin == 0 ? 0 : begin + 1);
}

std::string Joined(const std::vector<std::string>& words) {
  std::string line;
  for (const std::string& word : words)
    line += (line.empty() ? "" : " ") + (word.find(' ') == std::string::npos ? word : "\"" + word + "\"");
  return line;
}

// 126 and 127 are what shells and runners end with that could not start a program. A runner that is not set up has
// statuses of its own.
bool IsEarlyEnd(const win::Process& game, std::chrono::steady_clock::duration lasted) {
  const int status = game.ExitStatus();
  const bool isSuspicious = status == 126 || status == 127 || (game.HasRunner() && status != 0);
  return game.Started() && isSuspicious && lasted < kAtOnce && win::SignalsNoted().count == 0;
}

}  // namespace

GameEnd ShellAndWait(const std::string& commandLine, unsigned creationFlags) {
  constexpr int kPumpEveryMilliseconds = 500;
  const auto start = std::chrono::steady_clock::now();
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
  const auto lasted = std::chrono::steady_clock::now() - start;
  // What was asked for while the game ran counts as asked during the run, and goes with it.
  win::DoEvents();
  GameRunning = false;
  GameEnd end{game.ExitStatus(), ""};
  if (IsEarlyEnd(game, lasted))
    end.earlyEnd = "The game ended at once, with status " + std::to_string(end.status) + ". Started was:\r\n" +
                   Joined(game.Call()) + "\r\n\r\n" + LastLines(game.LastOutput());
  return end;
}

}  // namespace varnik
