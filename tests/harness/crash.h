#pragma once

#include <map>
#include <string>
#include <vector>

// Runs a program and stops it at a chosen file operation, so that a test can look at what it left and start it again:
//
//   const test::Command activate{{BINARY_DIR "/varnik-cli", "activate", "some.bzm"}};
//   const int operations = test::CountOperations(activate);            // in a fresh sandbox
//   for (int n = 1; n <= operations; ++n) {
//     ...fresh sandbox...
//     const test::Outcome outcome = test::RunKilledAt(n, activate);
//     SCOPED_TRACE(outcome.lastOperation);
//     ...what the next start makes of it...
//   }
//
// An operation is a system call by which the program itself, in any of its threads, changes what is on the disk:
// opening a file for writing, writing, renaming, removing, making folders and links, changing mode, size or times,
// flushing. The kernel hands each of them to the test before it is done (seccomp notification), so it does not matter
// which library makes the call. Calls of the programs that it starts, output to pipes and calls on /dev are not
// counted.
namespace test {

struct Command {
  std::vector<std::string> arguments;              // the first is the path of the program
  std::map<std::string, std::string> environment;  // added to ours
};

struct Outcome {
  int exitStatus = -1;        // 128 plus the signal for a killed program
  int operations = 0;         // counted ones, the one at which it was killed included
  std::string lastOperation;  // its name and file, such as "rename /tmp/a"
  std::string output;         // standard output and standard error
};

Outcome RunCounted(const Command& command);

// The program must end with status 0; anything else fails the test.
int CountOperations(const Command& command);

// Kills with SIGKILL before operation `n`, counted from 1, is done. A kill right after operation n leaves the same disk
// as one before operation n + 1. A program that makes fewer operations ends by itself.
Outcome RunKilledAt(int n, const Command& command);

// From operation `n` on, each write to a file fails as on a full disk; the program goes on.
Outcome RunWithFullDisk(int n, const Command& command);

}  // namespace test
