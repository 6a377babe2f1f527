#include "platform/system/process/process.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/descriptor.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/capturedoutput.h"
#include "platform/system/process/launch.h"
#include "platform/system/text/argumentlist.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace win {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kNormalNice = 19;  // no better than our own
constexpr int kHighNice = -5;

// posix_spawn's settings: a session of its own, no signal blocked or ignored, and of our files only standard error.
class SpawnSettings {
 public:
  // `output` is where it prints; -1: nowhere.
  SpawnSettings(const std::string& folder, int output) {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&actions_);
    sigset_t signals;
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (fcntl(output, F_GETFD) < 0)
      posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    else
      posix_spawn_file_actions_adddup2(&actions_, output, STDERR_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, STDERR_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
    posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str());
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  const posix_spawnattr_t* Attributes() const { return &attributes_; }
  const posix_spawn_file_actions_t* Actions() const { return &actions_; }

 private:
  posix_spawnattr_t attributes_;
  posix_spawn_file_actions_t actions_;
};

// A child is given the nice value of the thread that starts it. A better one than ours may be refused.
class NiceForChild {
 public:
  explicit NiceForChild(int nice) : own_(getpriority(PRIO_PROCESS, 0)) {
    if (nice < own_) setpriority(PRIO_PROCESS, 0, nice);
  }
  ~NiceForChild() { setpriority(PRIO_PROCESS, 0, own_); }
  NiceForChild(const NiceForChild&) = delete;
  NiceForChild& operator=(const NiceForChild&) = delete;

 private:
  int own_;
};

std::vector<char*> PointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts)
    pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

void SayFailure(const std::string& what, int error) {
  SayOnStandardError("cannot start " + what + ": " + std::strerror(error));
}

struct Order {
  std::string program;  // native, absolute
  std::string tail;
  std::string folder;  // native
  int nice = kNormalNice;
  int output = -1;
};

// The process id, -1 for a failed start, whose reason has then been said. `call` receives what was started.
pid_t Spawn(const Order& order, std::vector<std::string>& call) {
  if (!CurrentFileSystem().IsFolder(order.folder)) {
    SayFailure(order.program + " in " + order.folder, ENOENT);
    return -1;
  }
  // An ended child of a process that ignores this signal leaves no exit status behind.
  struct sigaction action;
  if (sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) signal(SIGCHLD, SIG_DFL);
  Launch launch = PrepareLaunch(order.program, order.tail);
  const SpawnSettings settings(order.folder, order.output);
  const NiceForChild nice(order.nice);
  pid_t process = -1;
  const int error = posix_spawnp(&process, launch.arguments[0].c_str(), settings.Actions(), settings.Attributes(),
                                 PointersTo(launch.arguments).data(), PointersTo(launch.environment).data());
  call = std::move(launch.arguments);
  if (error == 0) return process;
  SayFailure(order.program + (call[0] != order.program ? " with " + call[0] : ""), error);
  return -1;
}

// Descriptors through which a process can be waited for, even one that is no child.
using Processes = std::vector<Descriptor>;

bool HasEnded(const Descriptor& process) {
  pollfd wanted{process.Get(), POLLIN, 0};
  return poll(&wanted, 1, 0) == 1;
}

// True when one of them may have ended, false when the time is over.
bool AwaitAny(const Processes& processes, int milliseconds) {
  std::vector<pollfd> wanted;
  for (const Descriptor& process : processes)
    wanted.push_back({process.Get(), POLLIN, 0});
  return poll(wanted.data(), wanted.size(), milliseconds) != 0;
}

Descriptor OpenProcess(pid_t process) { return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0))); }

bool IsInSession(pid_t process, pid_t session) { return getsid(process) == session || getpgid(process) == session; }

Processes FindSession(pid_t session) {
  Processes found;
  std::error_code error;
  for (auto it = fs::directory_iterator("/proc", error); !error && it != fs::end(it); it.increment(error)) {
    const pid_t process = static_cast<pid_t>(std::strtol(it->path().filename().c_str(), nullptr, 10));
    if (process <= 0 || !IsInSession(process, session)) continue;
    Descriptor opened = OpenProcess(process);
    // Asked again: the number may have gone to another process in between.
    if (opened.IsOpen() && IsInSession(process, session) && !HasEnded(opened)) found.push_back(std::move(opened));
  }
  return found;
}

// Nothing while it runs.
std::optional<int> StatusOf(pid_t process, int options) {
  siginfo_t info{};
  int result = 0;
  do
    result = waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | options);
  while (result != 0 && errno == EINTR);
  if (result != 0 || info.si_pid == 0) return std::nullopt;
  return info.si_code == CLD_EXITED ? info.si_status : 128 + info.si_status;
}

// Reaps a program that has no other waiter, so that it leaves no zombie.
void ReapInBackground(pid_t process) {
  std::thread([process] { StatusOf(process, 0); }).detach();
}

}  // namespace

// The program is reaped last, since its number, which is that of the session, stays taken until then.
struct Process::State {
  pid_t session = -1;
  Processes alive;  // those of the session that are known
  bool ended = false;
  int exitStatus = -1;
  std::string program;
  std::vector<std::string> call;
  CapturedOutput output;

  ~State() {
    if (!ended) ReapInBackground(session);
  }

  // Looks twice: a process that starts another and ends may slip through between the two in the list.
  bool SessionIsEmpty() {
    std::erase_if(alive, HasEnded);
    for (int look = 0; look < 2 && alive.empty(); ++look)
      alive = FindSession(session);
    return alive.empty();
  }
};

Process::Process() = default;
Process::~Process() = default;
Process::Process(Process&&) noexcept = default;
Process& Process::operator=(Process&&) noexcept = default;

bool Process::Started() const { return state_ != nullptr; }

WaitResult Process::Wait(int milliseconds) {
  if (!Started()) return WaitResult::kFailed;
  const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
  WaitResult result = WaitResult::kEnded;
  while (!state_->ended && result == WaitResult::kEnded) {
    if (state_->SessionIsEmpty()) {
      state_->exitStatus = StatusOf(state_->session, 0).value_or(-1);
      state_->ended = true;
      break;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (!AwaitAny(state_->alive, static_cast<int>(std::max<std::int64_t>(left, 0)))) result = WaitResult::kTimedOut;
  }
  state_->output.HandOn();
  return result;
}

void Process::Send(int signal) {
  if (!Started() || state_->ended) return;
  for (const Descriptor& process : FindSession(state_->session))
    syscall(SYS_pidfd_send_signal, process.Get(), signal, nullptr, 0);
}

int Process::ExitStatus() const {
  if (!Started()) return -1;
  return state_->ended ? state_->exitStatus : StatusOf(state_->session, WNOHANG | WNOWAIT).value_or(-1);
}

const std::vector<std::string>& Process::Call() const {
  static const std::vector<std::string> kNone;
  return Started() ? state_->call : kNone;
}

bool Process::HasRunner() const { return Started() && state_->call[0] != state_->program; }

std::string Process::LastOutput() const { return Started() ? state_->output.Tail() : ""; }

Process CreateProcess(const std::string& commandLine, unsigned creationFlags, const std::string& folder) {
  const ProgramAndTail line = SplitProgram(commandLine);
  const int nice = creationFlags & kHighPriorityClass ? kHighNice : kNormalNice;
  auto state = std::make_unique<Process::State>();
  state->program = AbsoluteNativePath(line.program);
  const int captured = state->output.ForWriting(), output = captured < 0 ? STDERR_FILENO : captured;
  state->session = Spawn({state->program, line.tail, AbsoluteNativePath(folder), nice, output}, state->call);
  state->ended = state->session < 0;
  Process result;
  if (state->ended) return result;
  result.state_ = std::move(state);
  if (Descriptor program = OpenProcess(result.state_->session); program.IsOpen())
    result.state_->alive.push_back(std::move(program));
  return result;
}

namespace {

// Without starting it.
bool CouldBeStarted(const std::string& program) {
  FileStatus status;
  if (!CurrentFileSystem().Status(program, status)) return false;
  if (IsWindowsProgram(program)) return RunnerProblemOf(program).empty() || FailWith(ENOEXEC);
  return (status.IsFile() && (status.permissions & 0111) != 0) || FailWith(EACCES);
}

ProgramAndTail WholeOrSplit(const std::string& commandLine) {
  const bool whole = CurrentFileSystem().IsFile(NativePath(commandLine));
  return whole ? ProgramAndTail{commandLine, ""} : SplitProgram(commandLine);
}

bool StartWithoutWaiting(const std::string& commandLine, const std::string& folder) {
  const ProgramAndTail line = WholeOrSplit(commandLine);
  const std::string program = AbsoluteNativePath(line.program);
  const std::string start = folder.empty() ? FolderAbove(program) : AbsoluteNativePath(folder);
  if (!CurrentFileSystem().IsSeenByPrograms()) return CouldBeStarted(program);
  std::vector<std::string> call;
  const pid_t process = Spawn({program, line.tail, start, kNormalNice, /*output=*/-1}, call);
  if (process < 0) return false;
  ReapInBackground(process);
  return true;
}

}  // namespace

std::string RunnerProblem(const std::string& commandLine) { return RunnerProblemOf(ProgramOf(commandLine)); }

std::string ProgramOf(const std::string& commandLine) { return AbsoluteNativePath(WholeOrSplit(commandLine).program); }

bool ShellExecute(const std::string& commandLine, const std::string& folder) {
  return ReportOperation(Operation::kStart, commandLine, "", [&] { return StartWithoutWaiting(commandLine, folder); });
}

}  // namespace win
