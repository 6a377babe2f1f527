#pragma once

#include "cli/arguments.h"

#include <vector>

namespace CLI {
class App;
}

namespace varnik::cli {

constexpr unsigned kNothing = 0;
constexpr unsigned kInstall = 1;  // refused when none is selected
constexpr unsigned kRunLock = 2;  // refused while another process changes an install or runs the game

struct Command {
  const char* name;  // with a blank: one below the command of the first word
  const char* help;
  unsigned needs;                                        // of kInstall and kRunLock
  void (*declare)(CLI::App& app, Arguments& arguments);  // its own arguments; null for none
  int (*act)(const Arguments& arguments);
  const char* examples;  // behind `varnik-cli`, one a line
};

// In the order in which the help tells them; a command stands ahead of those below it.
extern const std::vector<Command> kCommands;

}  // namespace varnik::cli
