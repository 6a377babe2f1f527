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
// Wine builds a program's command line anew from an argument list, which cannot carry every text: a second blank
// between two arguments is lost, and so is one at the end. It also ends with the program, though that may have started
// another that is the game. So the runner is given a small Windows program, the starter, which starts the real one with
// `tail` byte for byte and waits for all that it starts: `<name>-start32.exe` or `<name>-start64.exe`, found as
// CompanionProgram says. The arguments are passed instead when `Starter=Off` stands in platform.ini, the starter is not
// there, Wine has not set up the prefix yet, or the starter or the program would be out of sight: on no drive of the
// prefix, or the starter outside a container that the runner makes. Either way a text that is valid UTF-8 is taken as
// such, any other as Windows-1252.
Launch PrepareLaunch(const std::string& program, const std::string& tail);

bool IsWindowsProgram(const std::string& program);

// The path of the program of that name in PATH, or of `name` itself when it is a path. Empty when there is none that
// may be started.
std::string FindExecutable(const std::string& name);

// Why the runner could not run this program: see RunnerProblem of process.h. `program` is an absolute native path.
std::string RunnerProblemOf(const std::string& program);

}  // namespace win
