#pragma once

#include <functional>
#include <string>
#include <vector>

// Runs a program under strace and stops it at a chosen file operation, so that a test can look at what it left.
//
// An operation is a system call by which the program itself, in any of its threads, changes what is on the disk:
// opening a file for writing, writing, renaming, removing, making folders and links, changing mode, size or times,
// flushing. Calls of the programs that it starts, output to pipes and calls on /dev are no operations.
namespace test {

struct Command {
  std::vector<std::string> arguments;  // the first is the program
};

struct Operation {
  std::string line;             // as strace writes it
  std::string kill, fillsDisk;  // what strace is told in order to interfere here
};

struct Outcome {
  int exitStatus = -1;  // 128 plus the signal for a killed program
  std::string output;   // standard output and standard error
};

Outcome Run(const Command& command);

// The operations of a run that must end with status 0; anything else fails the test.
std::vector<Operation> Operations(const Command& command);

// Interferes at each operation in turn, each time on what `prepare` set up, and has the result judged. Stops at the
// first failure. SweepKills kills with SIGKILL before the operation is done. A kill right after an operation leaves the
// same disk as one before the next. With SweepFullDisk each write fails from the operation on as on a full disk, output
// to pipes as well; the program goes on.
void SweepKills(const Command& command, const std::function<void()>& prepare, const std::function<void()>& judge);
void SweepFullDisk(const Command& command, const std::function<void()>& prepare, const std::function<void()>& judge);

}  // namespace test
