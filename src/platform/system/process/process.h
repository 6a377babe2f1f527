#pragma once

#include <memory>
#include <string>
#include <vector>

// Starting programs, Windows programs included. A program that this system can start is started as it is. A Windows
// program (its first bytes are `MZ`) goes through a runner: `VARNIK_RUNNER`, else the line `Runner=` of `platform.ini`
// in the configuration folder, else `wine`; a path, or a program with arguments of its own. When the program lies
// inside a Wine prefix, WINEPREFIX names that prefix for the child.
//
// A child has a session of its own, no input, and standard error for all that it prints. What a child prints that is
// waited for gets there during the waits.
namespace win {

constexpr unsigned kNormalPriorityClass = 32;
constexpr unsigned kHighPriorityClass = 128;  // a better nice value, where the system allows it

enum class WaitResult { kEnded, kTimedOut, kFailed };

// A started program with all that it leaves behind in its session: a runner may end before the game does. Empty when
// the start failed; the reason then went to standard error.
class Process {
 public:
  Process();
  ~Process();
  Process(Process&&) noexcept;
  Process& operator=(Process&&) noexcept;

  bool Started() const;

  // kEnded when the program and its whole session have ended; kFailed at once for a failed start. Sleeps while it
  // waits.
  WaitResult Wait(int milliseconds);

  // Sends a signal to all that run in the session now.
  void Send(int signal);

  // Exit status of the program itself once it has ended; 128 plus the signal for one that was killed; -1 before.
  int ExitStatus() const;

  // The whole call, word by word; the runner comes first when there is one.
  const std::vector<std::string>& Call() const;
  bool HasRunner() const;

  // The last lines that it printed, 4 KB at most.
  std::string LastOutput() const;

 private:
  friend Process CreateProcess(const std::string&, unsigned, const std::string&);
  struct State;
  std::unique_ptr<State> state_;
};

// `commandLine` begins with the program, in double quotes when it holds blanks; what follows reaches a Windows program
// byte for byte, and a native one split by the rules of Windows' C runtime. `folder` is a Windows path; a missing one
// fails the start.
Process CreateProcess(const std::string& commandLine, unsigned creationFlags, const std::string& folder);

// Why the runner could not run the Windows program that begins this command line, in one sentence: it is not there, or
// a Wine without the part for programs of this kind. Nothing is started for it. Empty when nothing speaks against it,
// and for any other program, a missing one too. The line is one for CreateProcess or for ShellExecute.
std::string RunnerProblem(const std::string& commandLine);

// Starts a program and does not wait: it outlives this one. `commandLine` as above; an unquoted path that names an
// existing file is taken whole, blanks included. The child starts in `folder`, or in the program's own folder when that
// is empty.
bool ShellExecute(const std::string& commandLine, const std::string& folder = "");

// Absolute native path of the program that ShellExecute starts for this command line.
std::string ProgramOf(const std::string& commandLine);

}  // namespace win
