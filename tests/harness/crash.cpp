#include "tests/harness/crash.h"

#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <map>
#include <regex>
#include <sstream>

namespace test {
namespace {

constexpr char kCalls[] =
    "open,openat,creat,rename,renameat,renameat2,unlink,unlinkat,mkdir,mkdirat,rmdir,link,linkat,symlink,symlinkat,"
    "mknod,mknodat,chmod,fchmod,fchmodat,truncate,ftruncate,utimensat,fsync,fdatasync,"
    "write,writev,pwrite64,pwritev,pwritev2,fallocate,sendfile,copy_file_range";
constexpr const char* kWrites[] = {"write",    "writev",    "pwrite64", "pwritev",
                                   "pwritev2", "fallocate", "sendfile", "copy_file_range"};

// Follows threads, and lets a process that the program makes go when it becomes another program. A leak check does not
// work under strace.
std::string Strace(const std::string& options) {
  return "exec env ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 strace -f -b execve -qq -s 0 -y -e trace=" +
         std::string(kCalls) + " " + options;
}

Outcome RunLine(std::string line, const Command& command) {
  for (const std::string& argument : command.arguments)
    line += " '" + argument + "'";
  FILE* const output = popen((line + " 2>&1").c_str(), "r");
  Outcome outcome;
  for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output))
    outcome.output += static_cast<char>(c);
  const int status = pclose(output);
  outcome.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return outcome;
}

bool ChangesTheDisk(const std::string& line) {
  static const std::regex opens("^(open|openat)\\("), forWriting("O_(CREAT|TRUNC|WRONLY|RDWR)");
  static const std::regex elsewhere("<(pipe|socket|anon_inode):|[\"<]/(dev|proc)/");
  if (std::regex_search(line, elsewhere)) return false;
  return !std::regex_search(line, opens) || std::regex_search(line, forWriting);
}

// `options` tell strace how to interfere.
void Sweep(const Command& command, const std::function<void()>& prepare, const std::function<void()>& judge,
           std::string Operation::*options) {
  prepare();
  const std::vector<Operation> operations = Operations(command);
  EXPECT_FALSE(operations.empty());
  for (const Operation& operation : operations) {
    if (testing::Test::HasFailure()) return;
    prepare();
    const Outcome outcome = RunLine(Strace("-o /dev/null " + operation.*options), command);
    SCOPED_TRACE("at " + operation.line + "\nended with " + std::to_string(outcome.exitStatus) + "\n" + outcome.output);
    EXPECT_TRUE(options != &Operation::kill || outcome.exitStatus == 128 + SIGKILL) << "it was not killed";
    judge();
  }
}

}  // namespace

Outcome Run(const Command& command) { return RunLine("exec", command); }

std::vector<Operation> Operations(const Command& command) {
  const std::filesystem::path log =
      std::filesystem::temp_directory_path() / ("varnik-strace-" + std::to_string(getpid()));
  const Outcome outcome = RunLine(Strace("-o '" + log.string() + "'"), command);
  EXPECT_EQ(outcome.exitStatus, 0) << outcome.output;
  std::istringstream lines(ReadFile(log));
  std::filesystem::remove(log);
  std::vector<Operation> operations;
  std::map<std::string, int> seen;  // of the first thread: strace counts the calls of each thread for itself
  std::string first, thread, line;
  while (lines >> thread && std::getline(lines >> std::ws, line)) {
    const std::string call = line.substr(0, line.find('('));
    if (!std::all_of(call.begin(), call.end(), isalnum)) continue;  // a signal, or the rest of a call
    if (first.empty()) first = thread;
    if (ChangesTheDisk(line)) {
      EXPECT_EQ(thread, first) << "an operation of another thread, which cannot be stopped there: " << line;
      Operation& operation = operations.emplace_back(line);
      operation.kill = "-e inject=" + call + ":signal=KILL:when=" + std::to_string(seen[call] + 1);
      for (const std::string write : kWrites)
        operation.fillsDisk += "-e inject=" + write + ":error=ENOSPC:when=" + std::to_string(seen[write] + 1) + "+ ";
    }
    if (thread == first) ++seen[call];
  }
  return operations;
}

void SweepKills(const Command& command, const std::function<void()>& prepare, const std::function<void()>& judge) {
  Sweep(command, prepare, judge, &Operation::kill);
}

void SweepFullDisk(const Command& command, const std::function<void()>& prepare, const std::function<void()>& judge) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer itself writes to pipes, and ends a program that cannot";
#endif
  Sweep(command, prepare, judge, &Operation::fillsDisk);
}

}  // namespace test
