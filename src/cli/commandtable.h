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
  const char* name;  // of a subcommand: the name of its command, a blank, its own
  const char* help;
  unsigned needs;                                        // of kInstall and kRunLock
  void (*declare)(CLI::App& app, Arguments& arguments);  // its own arguments; null for none
  int (*act)(const Arguments& arguments);
  const char* examples;  // behind `varnik-cli`, one a line
};

// In the order of the help. A command precedes its subcommands.
extern const std::vector<Command> kCommands;

}  // namespace varnik::cli
