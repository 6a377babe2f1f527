#pragma once

#include <functional>
#include <string>

namespace varnik {

// The busy window as pages reach it: while it is up, the main window takes no input.
struct BusyWindow {
  std::function<void()> begin;  // shows it, disables the main window
  std::function<void(const std::string& status)> setStatus;
  std::function<void()> end;  // enables the main window, takes the busy window down
  std::function<bool()> isUp;
  std::function<bool()> isStopped;  // the player pressed Escape or asked to close a window, or the program is to end
};

}  // namespace varnik
