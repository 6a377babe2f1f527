#include "tests/harness/crash.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace test {
namespace {

namespace fs = std::filesystem;

enum class Kind { kPath, kOpen, kDescriptor, kWrite };

// `argument` is the number of the path or of the descriptor; the flags of an open stand behind its path.
struct Call {
  int number;
  const char* name;
  Kind kind;
  int argument;
};

constexpr Call kCalls[] = {
#ifdef SYS_open
    {SYS_open, "open", Kind::kOpen, 0},           {SYS_creat, "creat", Kind::kPath, 0},
    {SYS_rename, "rename", Kind::kPath, 0},       {SYS_unlink, "unlink", Kind::kPath, 0},
    {SYS_mkdir, "mkdir", Kind::kPath, 0},         {SYS_rmdir, "rmdir", Kind::kPath, 0},
    {SYS_link, "link", Kind::kPath, 1},           {SYS_symlink, "symlink", Kind::kPath, 1},
    {SYS_mknod, "mknod", Kind::kPath, 0},         {SYS_chmod, "chmod", Kind::kPath, 0},
    {SYS_renameat, "renameat", Kind::kPath, 1},
#endif
    {SYS_openat, "openat", Kind::kOpen, 1},       {SYS_renameat2, "renameat2", Kind::kPath, 1},
    {SYS_unlinkat, "unlinkat", Kind::kPath, 1},   {SYS_mkdirat, "mkdirat", Kind::kPath, 1},
    {SYS_linkat, "linkat", Kind::kPath, 3},       {SYS_symlinkat, "symlinkat", Kind::kPath, 2},
    {SYS_mknodat, "mknodat", Kind::kPath, 1},     {SYS_fchmodat, "fchmodat", Kind::kPath, 1},
    {SYS_utimensat, "utimensat", Kind::kPath, 1}, {SYS_truncate, "truncate", Kind::kPath, 0},
    {SYS_fchmod, "fchmod", Kind::kDescriptor, 0}, {SYS_ftruncate, "ftruncate", Kind::kDescriptor, 0},
    {SYS_fsync, "fsync", Kind::kDescriptor, 0},   {SYS_fdatasync, "fdatasync", Kind::kDescriptor, 0},
    {SYS_write, "write", Kind::kWrite, 0},        {SYS_writev, "writev", Kind::kWrite, 0},
    {SYS_pwrite64, "pwrite64", Kind::kWrite, 0},  {SYS_pwritev, "pwritev", Kind::kWrite, 0},
    {SYS_pwritev2, "pwritev2", Kind::kWrite, 0},  {SYS_fallocate, "fallocate", Kind::kWrite, 0},
    {SYS_sendfile, "sendfile", Kind::kWrite, 0},  {SYS_copy_file_range, "copy_file_range", Kind::kWrite, 2},
};

const Call* FindCall(int number) {
  for (const Call& call : kCalls)
    if (call.number == number) return &call;
  return nullptr;
}

// Hands every call of the table to the listener whose descriptor it gives, and lets all others pass.
int InstallFilter() {
  constexpr std::size_t kCount = std::size(kCalls);
  std::array<sock_filter, kCount + 3> program;
  program[0] = BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
  for (std::size_t i = 0; i < kCount; ++i)
    program[i + 1] = BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(kCalls[i].number),
                              static_cast<unsigned char>(kCount - i), 0);
  program[kCount + 1] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
  program[kCount + 2] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF);
  const sock_fprog filter{program.size(), program.data()};
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  return static_cast<int>(syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &filter));
}

union DescriptorMessage {
  cmsghdr header;
  char space[CMSG_SPACE(sizeof(int))];
};

// Descriptors travel beside a byte. A negative one is not sent.
void SendDescriptor(int socket, int descriptor) {
  DescriptorMessage message{};
  message.header = {CMSG_LEN(sizeof(int)), SOL_SOCKET, SCM_RIGHTS};
  std::memcpy(CMSG_DATA(&message.header), &descriptor, sizeof descriptor);
  char byte = 0;
  iovec data{&byte, 1};
  msghdr sent{nullptr, 0, &data, 1, &message, descriptor < 0 ? 0 : sizeof message, 0};
  sendmsg(socket, &sent, 0);
}

int ReceiveDescriptor(int socket) {
  DescriptorMessage message{};
  char byte = 0;
  iovec data{&byte, 1};
  msghdr received{nullptr, 0, &data, 1, &message, sizeof message, 0};
  int descriptor = -1;
  if (recvmsg(socket, &received, MSG_CMSG_CLOEXEC) == 1 && received.msg_controllen >= CMSG_LEN(sizeof(int)))
    std::memcpy(&descriptor, CMSG_DATA(&message.header), sizeof descriptor);
  return descriptor;
}

[[noreturn]] void Execute(const Command& command, int socket, int output) {
  std::vector<char*> arguments;
  for (const std::string& argument : command.arguments)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  for (const auto& [name, value] : command.environment)
    setenv(name.c_str(), value.c_str(), 1);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  SendDescriptor(socket, InstallFilter());
  execv(arguments[0], arguments.data());
  _exit(127);
}

enum class Trouble { kNone, kKill, kFullDisk };

class Supervisor {
 public:
  Supervisor(Trouble trouble, int at) : trouble_(trouble), at_(at) {}
  Outcome Run(const Command& command);

 private:
  void Serve();
  void Answer();
  void ReadOutput();
  bool IsOfProgram(pid_t thread) const;
  std::string PathOf(const seccomp_notif& request, const Call& call) const;
  bool IsOperation(const seccomp_notif& request, const Call& call, const std::string& path) const;
  int ErrorFor(const seccomp_notif& request);

  Trouble trouble_;
  int at_;
  pid_t program_ = -1;
  int listener_ = -1;
  int output_ = -1;
  Outcome outcome_;
};

bool Supervisor::IsOfProgram(pid_t thread) const {
  return thread == program_ || fs::exists("/proc/" + std::to_string(program_) + "/task/" + std::to_string(thread));
}

std::string Supervisor::PathOf(const seccomp_notif& request, const Call& call) const {
  const auto value = request.data.args[call.argument];
  const std::string process = "/proc/" + std::to_string(request.pid);
  if (call.kind == Kind::kDescriptor || call.kind == Kind::kWrite) {
    std::error_code ignored;
    return fs::read_symlink(process + "/fd/" + std::to_string(static_cast<int>(value)), ignored).string();
  }
  std::ifstream memory(process + "/mem", std::ios::binary);
  memory.seekg(static_cast<std::streamoff>(value));
  std::string path;
  std::getline(memory, path, '\0');
  return path;
}

bool Supervisor::IsOperation(const seccomp_notif& request, const Call& call, const std::string& path) const {
  if (path.starts_with("/dev/") || path.starts_with("/proc/")) return false;
  if (call.kind == Kind::kOpen)
    return (request.data.args[call.argument + 1] & (O_CREAT | O_TRUNC | O_WRONLY | O_RDWR)) != 0;
  return call.kind == Kind::kPath || path.starts_with('/');  // pipes and sockets have no path
}

int Supervisor::ErrorFor(const seccomp_notif& request) {
  const Call* const call = FindCall(request.data.nr);
  if (!call || !IsOfProgram(static_cast<pid_t>(request.pid))) return 0;
  const std::string path = PathOf(request, *call);
  if (!IsOperation(request, *call, path)) return 0;
  outcome_.lastOperation = std::string(call->name) + " " + path;
  ++outcome_.operations;
  if (trouble_ == Trouble::kKill && outcome_.operations == at_) kill(program_, SIGKILL);
  return trouble_ == Trouble::kFullDisk && outcome_.operations >= at_ && call->kind == Kind::kWrite ? ENOSPC : 0;
}

void Supervisor::Answer() {
  seccomp_notif request{};
  if (ioctl(listener_, SECCOMP_IOCTL_NOTIF_RECV, &request) != 0) return;  // the caller is gone
  seccomp_notif_resp answer{};
  answer.id = request.id;
  answer.error = -ErrorFor(request);
  answer.flags = answer.error == 0 ? SECCOMP_USER_NOTIF_FLAG_CONTINUE : 0;
  if (trouble_ == Trouble::kKill && outcome_.operations >= at_ && IsOfProgram(static_cast<pid_t>(request.pid))) return;
  ioctl(listener_, SECCOMP_IOCTL_NOTIF_SEND, &answer);
}

void Supervisor::ReadOutput() {
  char buffer[4096];
  const ssize_t size = read(output_, buffer, sizeof buffer);
  if (size > 0) outcome_.output.append(buffer, static_cast<std::size_t>(size));
  if (size == 0) output_ = -1;
}

// Goes on for what the program leaves running: without an answer its calls would fail.
void Supervisor::Serve() {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (std::chrono::steady_clock::now() < deadline) {
    pollfd events[] = {{listener_, POLLIN, 0}, {output_, POLLIN, 0}};
    poll(events, 2, 1000);
    if (events[1].revents != 0) ReadOutput();
    if ((events[0].revents & POLLIN) != 0) Answer();
    if ((events[0].revents & POLLHUP) != 0 && events[1].revents == 0) return;
  }
  ADD_FAILURE() << "still running after a minute";
  kill(program_, SIGKILL);
}

Outcome Supervisor::Run(const Command& command) {
  int sockets[2], output[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0 || pipe2(output, O_CLOEXEC) != 0)
    return outcome_;
  program_ = fork();
  if (program_ == 0) Execute(command, sockets[1], output[1]);
  close(sockets[1]);
  close(output[1]);
  output_ = output[0];
  listener_ = ReceiveDescriptor(sockets[0]);
  if (listener_ >= 0)
    Serve();
  else
    ADD_FAILURE() << "this system does not allow seccomp notifications";
  int status = 0;
  waitpid(program_, &status, 0);
  outcome_.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  for (const int end : {sockets[0], output[0], listener_})
    close(end);
  return outcome_;
}

}  // namespace

Outcome RunCounted(const Command& command) { return Supervisor(Trouble::kNone, 0).Run(command); }

int CountOperations(const Command& command) {
  const Outcome outcome = RunCounted(command);
  EXPECT_EQ(outcome.exitStatus, 0) << outcome.output;
  return outcome.operations;
}

Outcome RunKilledAt(int n, const Command& command) { return Supervisor(Trouble::kKill, n).Run(command); }

Outcome RunWithFullDisk(int n, const Command& command) { return Supervisor(Trouble::kFullDisk, n).Run(command); }

}  // namespace test
