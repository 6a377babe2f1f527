#include "platform/system/process/signals.h"

#include <signal.h>

#include <iterator>

namespace win {

namespace {

constexpr int kHeld[] = {SIGINT, SIGTERM, SIGHUP};

struct sigaction before[std::size(kHeld)];
volatile sig_atomic_t count = 0;
volatile sig_atomic_t first = 0;

extern "C" void NoteSignal(int number) {
  if (count == 0) first = number;
  count = count + 1;
}

}  // namespace

SignalHold::SignalHold() {
  struct sigaction action = {};
  action.sa_handler = NoteSignal;
  action.sa_flags = SA_RESTART;
  // One handler at a time: it counts.
  for (const int number : kHeld)
    sigaddset(&action.sa_mask, number);
  for (std::size_t i = 0; i < std::size(kHeld); ++i) {
    sigaction(kHeld[i], nullptr, &before[i]);
    if (before[i].sa_handler != SIG_IGN) sigaction(kHeld[i], &action, nullptr);
  }
}

SignalHold::~SignalHold() {
  for (std::size_t i = 0; i < std::size(kHeld); ++i)
    sigaction(kHeld[i], &before[i], nullptr);
  count = 0;
  first = 0;
}

NotedSignals SignalsNoted() { return {count, first}; }

}  // namespace win
