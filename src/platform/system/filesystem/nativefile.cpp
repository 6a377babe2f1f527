#include "platform/system/filesystem/nativefile.h"

#include "platform/system/filesystem/disk.h"
#include "platform/system/paths/pathfinder.h"
#include "platform/system/paths/paths.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace win {

Descriptor::~Descriptor() {
  if (IsOpen()) close(descriptor_);
}

namespace {

Descriptor OpenNative(const std::string& native) {
  return Descriptor(TheDisk().Open(native, O_RDONLY | O_CLOEXEC | O_NONBLOCK, 0));
}

}  // namespace

Descriptor OpenForReading(const std::string& native) {
  Descriptor file = OpenNative(native);
  return SizeOfRegularFile(file) ? std::move(file) : Descriptor();
}

Descriptor OpenPath(std::string_view path) {
  if (path.find('\0') != std::string_view::npos) return Descriptor();
  Descriptor file = OpenNative(Respelled(path));
  return file.IsOpen() ? std::move(file) : OpenNative(NativePath(path));
}

std::optional<std::size_t> SizeOfRegularFile(const Descriptor& file) {
  struct stat status;
  if (!file.IsOpen() || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::size_t>(status.st_size);
}

ssize_t ReadSome(int descriptor, char* buffer, std::size_t size) {
  ssize_t count = 0;
  do
    count = read(descriptor, buffer, size);
  while (count < 0 && errno == EINTR);
  return count;
}

std::string LinkTarget(const std::string& native) {
  char target[4096];
  const ssize_t length = readlink(native.c_str(), target, sizeof target);
  return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
}

bool FailWith(int error) {
  errno = error;
  return false;
}

bool WriteAll(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t count = write(descriptor, content.data(), content.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

std::string FolderOf(const std::string& native) { return native.substr(0, native.rfind('/') + 1); }

std::string TemporaryNameFor(const std::string& native) {
  constexpr std::size_t kLongestName = 240;
  const std::string folder = FolderOf(native);
  return folder + "." + native.substr(folder.size(), kLongestName) + ".new~";
}

bool FlushToDisk(const std::string& native) {
  const Descriptor file(TheDisk().Open(native.empty() ? "." : native, O_RDONLY | O_CLOEXEC, 0));
  // EINVAL: some file systems cannot flush a folder, and have nothing to flush.
  return file.IsOpen() && (fsync(file.Get()) == 0 || errno == EINVAL);
}

}  // namespace win
