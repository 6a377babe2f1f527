#include "platform/system/process/picturedecoder.h"

#include "platform/system/paths/program.h"
#include "platform/system/process/picturemessage.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <thread>

namespace win {
namespace {

using Clock = std::chrono::steady_clock;

bool AwaitInput(int socket, Clock::time_point deadline) {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd wanted{socket, POLLIN, 0};
    const int ready = poll(&wanted, 1, static_cast<int>(std::clamp<std::int64_t>(left, 0, 60'000)));
    if (ready >= 0 || errno != EINTR) return ready > 0;
  }
}

bool ReadExactly(int socket, void* to, std::size_t size, Clock::time_point deadline) {
  char* next = static_cast<char*>(to);
  for (char* const end = next + size; next < end;) {
    if (!AwaitInput(socket, deadline)) return false;
    const ssize_t got = ReadSome(socket, next, static_cast<std::size_t>(end - next));
    if (got <= 0) return false;
    next += got;
  }
  return true;
}

// It has nothing but the socket, as its standard input, and our standard error.
pid_t Spawn(const std::string& program, int socket, int& error) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, socket, STDIN_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
  char* const arguments[] = {const_cast<char*>(program.c_str()), nullptr};
  pid_t process = -1;
  error = posix_spawn(&process, program.c_str(), &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : -1;
}

}  // namespace

PicturePixels ReadPictureAnswer(int socket, Clock::time_point deadline, bool& whole) {
  PictureHead head;
  whole = ReadExactly(socket, &head, sizeof head, deadline);
  if (!whole || (head.width == 0 && head.height == 0)) return {};
  whole = IsPictureSize(head.width, head.height);
  if (!whole) return {};
  const std::size_t count = std::size_t{head.width} * head.height;
  std::unique_ptr<std::uint32_t[]> pixels(new (std::nothrow) std::uint32_t[count]);
  whole = pixels && ReadExactly(socket, pixels.get(), count * sizeof pixels[0], deadline);
  if (!whole) return {};
  return {static_cast<int>(head.width), static_cast<int>(head.height), std::move(pixels)};
}

PictureDecoder::~PictureDecoder() { Stop(); }

PicturePixels PictureDecoder::Decode(const std::string& native, bool opaque) {
  // Another process reads it, so it is a descriptor of the system and no file of the current file system.
  const Descriptor file(open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status;
  if (!file.IsOpen() || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  if (!IsReady() && !Start()) return {};
  const auto deadline = Clock::now() + kTimeLimit;
  bool whole = false;
  PicturePixels picture;
  if (Ask(file, native, opaque)) picture = ReadPictureAnswer(socket_.Get(), deadline, whole);
  if (!whole) Stop();
  return picture;
}

// Between two pictures it has nothing to say: there is input when it has died, or has sent more than it was asked for.
bool PictureDecoder::IsReady() const { return socket_.IsOpen() && !AwaitInput(socket_.Get(), Clock::now()); }

bool PictureDecoder::Start() {
  Stop();
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
  socket_ = Descriptor(ends[0]);
  const Descriptor other(ends[1]);
  int error = 0;
  process_ = Spawn(program_, other.Get(), error);
  if (process_ >= 0) return true;
  if (!failed_)
    std::fprintf(stderr, "%s: no picture is shown, since their decoder%s%s cannot be started: %s\n",
                 Program().name.c_str(), program_.empty() ? "" : " ", program_.c_str(), std::strerror(error));
  failed_ = true;
  socket_ = Descriptor();
  return false;
}

bool PictureDecoder::Ask(const Descriptor& file, const std::string& native, bool opaque) const {
  PictureRequest request;
  request.opaque = opaque;
  const std::string extension = std::filesystem::path(native).extension().string();
  extension.copy(request.extension, sizeof request.extension - 1);
  iovec content{&request, sizeof request};
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
  const msghdr message{nullptr, 0, &content, 1, control, sizeof control, 0};
  cmsghdr* const attached = CMSG_FIRSTHDR(&message);
  attached->cmsg_level = SOL_SOCKET;
  attached->cmsg_type = SCM_RIGHTS;
  attached->cmsg_len = CMSG_LEN(sizeof(int));
  const int descriptor = file.Get();
  std::memcpy(CMSG_DATA(attached), &descriptor, sizeof descriptor);
  return sendmsg(socket_.Get(), &message, MSG_NOSIGNAL | MSG_DONTWAIT) == sizeof request;
}

// A process that waits for a disk dies only when that answers, so it is not waited for here.
void PictureDecoder::Stop() {
  socket_ = Descriptor();
  if (process_ < 0) return;
  kill(process_, SIGKILL);
  std::thread([process = process_] { waitpid(process, nullptr, 0); }).detach();
  process_ = -1;
}

}  // namespace win
