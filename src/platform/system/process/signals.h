#pragma once

namespace win {

// While one is alive, SIGINT, SIGTERM and SIGHUP do not end the process: they are noted, for code that has something to
// put back first. One that was ignored before stays so. Scopes do not nest.
class SignalHold {
 public:
  SignalHold();
  ~SignalHold();
  SignalHold(const SignalHold&) = delete;
  SignalHold& operator=(const SignalHold&) = delete;
};

struct NotedSignals {
  int count = 0;
  int first = 0;  // the number of the signal
};

// Those since the SignalHold began; none without one.
NotedSignals SignalsNoted();

}  // namespace win
