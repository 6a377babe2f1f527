#pragma once

#include <string>
#include <vector>

// How a program is started on this system, Windows programs included.
namespace win {

struct Launch {
  std::vector<std::string> arguments;    // the first is what to run: a native path, or a name to be found in PATH
  std::vector<std::string> environment;  // NAME=value
};

// `program` is the absolute native path of the program, `tail` the rest of its command line with the blank in front.
//
// A Windows program gets the tail byte for byte. Wine builds a program's command line from an argument list, which
// cannot carry every text: a second blank between two arguments is lost, and so is one at the end. Such a tail goes in
// the environment, and the runner is given a small Windows program of ours (`<name>-start32.exe` or
// `<name>-start64.exe`, beside the running executable or in ../libexec/<name>) that starts the real one with it and
// waits for it. When that program is not there, or the prefix has not been set up yet, the arguments have to do.
Launch PrepareLaunch(const std::string& program, const std::string& tail);

}  // namespace win
