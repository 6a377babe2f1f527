#include "platform/system/process/instance.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/descriptor.h"
#include "platform/system/paths/environment.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

namespace win {
namespace {

// ":0" and its first screen ":0.0" are one display.
std::string DisplayName() {
  std::string x11 = Variable("DISPLAY");
  if (x11.ends_with(".0")) x11.resize(x11.size() - 2);
  std::string name = Variable("WAYLAND_DISPLAY") + x11;
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

// Anything but a pipe under this name stays alone: it would always be readable.
Descriptor OpenPipe(const std::string& path) {
  mkfifo(path.c_str(), 0600);
  Descriptor pipe(open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW));
  struct stat status;
  const bool isPipe = pipe.IsOpen() && fstat(pipe.Get(), &status) == 0 && S_ISFIFO(status.st_mode);
  return isPipe ? std::move(pipe) : Descriptor();
}

bool EmptyPipe(int pipe) {
  char requests[64];
  bool any = false;
  while (read(pipe, requests, sizeof requests) > 0)
    any = true;
  return any;
}

}  // namespace

// A named pipe is both: its lock is the place, what is written to it asks the holder to close. Everyone opens it for
// both directions before trying the lock, so a request that is sent to a holder cannot miss it.
struct Instance::State {
  win::Descriptor pipe;
  bool claimed = false;
  bool requestSent = false;
  std::function<void()> closeRequested;

  void Claim() {
    claimed = LockUnlessHeld(pipe.Get());
    // The one we asked was gone before it read the request; it is not meant for us.
    if (claimed && requestSent) EmptyPipe(pipe.Get());
  }
};

Instance::Instance() : state_(std::make_unique<State>()) {
  state_->pipe = OpenPipe(RuntimeFolder() + "/" + Program().name + "-instance" + DisplayName());
  if (state_->pipe.IsOpen()) state_->Claim();
}

Instance::~Instance() = default;

bool Instance::OtherIsRunning() {
  if (!state_->pipe.IsOpen()) return false;
  if (!state_->claimed) state_->Claim();
  return !state_->claimed;
}

void Instance::CloseOther() {
  if (OtherIsRunning()) state_->requestSent = write(state_->pipe.Get(), "c", 1) == 1;
}

void Instance::OnCloseRequest(std::function<void()> handler) { state_->closeRequested = std::move(handler); }

int Instance::Descriptor() const { return state_->claimed ? state_->pipe.Get() : -1; }

void Instance::HandleRequests() {
  if (!state_->claimed || !EmptyPipe(state_->pipe.Get())) return;
  if (const auto handler = state_->closeRequested) handler();
}

ExclusiveLock::ExclusiveLock(const char* name) : path_(ConfigFolder() + "/" + name + ".lock") {}

ExclusiveLock::~ExclusiveLock() = default;

bool ExclusiveLock::TryAcquire() {
  if (IsHeld()) return true;
  lock_ = CurrentFileSystem().TryLock(path_);
  if (IsHeld()) return true;
  if (errno == EWOULDBLOCK) return false;
  // No process can hold a file that cannot be made, and a read-only home does not prevent playing.
  SayOnStandardError(path_ + ": " + std::strerror(errno));
  return true;
}

void ExclusiveLock::Release() { lock_.reset(); }

bool ExclusiveLock::IsHeld() const { return lock_ != nullptr; }

FolderLock::FolderLock(const std::string& folder) {
  struct Held {
    FileIdentity identity;
    std::weak_ptr<FileLock> lock;
  };
  static std::vector<Held> held;
  const std::string native = AbsoluteNativePath(folder);
  FileStatus status;
  if (!CurrentFileSystem().Status(native, status)) return;
  std::erase_if(held, [](const Held& one) { return one.lock.expired(); });
  for (const Held& one : held)
    if (one.identity == status.identity) lock_ = one.lock.lock();
  if (lock_) return;
  lock_ = CurrentFileSystem().TryLockFolder(native);
  allowed_ = lock_ || errno != EWOULDBLOCK;
  if (lock_) held.push_back({status.identity, lock_});
}

}  // namespace win
