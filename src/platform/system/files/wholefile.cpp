#include "platform/system/files/files.h"
#include "platform/system/filesystem/deeds.h"
#include "platform/system/filesystem/disk.h"
#include "platform/system/filesystem/nativefile.h"
#include "platform/system/paths/paths.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace win {

namespace {

// Where the name leads when it is a link, also one to a file that does not exist yet.
std::string FollowLinks(std::string native) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    const std::string target = TheDisk().ReadLink(native);
    if (target.empty()) break;
    native = target.starts_with('/') ? target : FolderOf(native) + target;
  }
  return native;
}

bool IsStillNamed(const Descriptor& file, const std::string& native) {
  struct stat opened;
  struct stat named;
  return fstat(file.Get(), &opened) == 0 && TheDisk().LinkStat(native, named) == 0 && opened.st_ino == named.st_ino &&
         opened.st_dev == named.st_dev;
}

// An empty temporary file that no other writer of the same file holds: who waited for the lock may find that the name
// has moved on with the other's content.
Descriptor OpenTemporary(const std::string& native) {
  while (true) {
    Descriptor file(TheDisk().Open(native, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666));
    if (!file.IsOpen()) return file;
    flock(file.Get(), LOCK_EX);
    if (IsStillNamed(file, native)) return ftruncate(file.Get(), 0) == 0 ? std::move(file) : Descriptor();
  }
}

bool Write(const std::string& path, std::string_view content) {
  const std::string target = FollowLinks(NativePath(path));
  struct stat status;
  const bool exists = TheDisk().Stat(target, status) == 0;
  if (target.empty() || (exists && !S_ISREG(status.st_mode))) return FailWith(EISDIR);
  if (exists && (status.st_mode & S_IWUSR) == 0) return FailWith(EPERM);
  const std::string copy = TemporaryNameFor(target);
  const Descriptor file = OpenTemporary(copy);
  if (!file.IsOpen()) return FailWith(errno == ENOENT ? ENOTDIR : errno);
  if (WriteAll(file.Get(), content) && (!exists || fchmod(file.Get(), status.st_mode & 07777) == 0) &&
      fsync(file.Get()) == 0 && TheDisk().Rename(copy, target, 0) == 0)
    return FlushToDisk(FolderOf(target));
  TheDisk().Unlink(copy);
  return false;
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path) {
  const Descriptor file = OpenPath(path);
  const std::optional<std::size_t> size = SizeOfRegularFile(file);
  if (!size || *size > kMostBytes) return std::nullopt;
  // One byte more than its size: a read that does not fill this has found the end.
  std::string content(*size + 1, '\0');
  std::size_t length = 0;
  while (true) {
    const ssize_t count = ReadSome(file.Get(), content.data() + length, content.size() - length);
    if (count < 0) return std::nullopt;
    length += static_cast<std::size_t>(count);
    if (count == 0 || length == *size) break;
    if (length == content.size()) content.resize(2 * length);
  }
  content.resize(length);
  return content;
}

std::optional<std::string> ReadToLookAt(const std::string& path) {
  char piece[4096];
  const Descriptor file = OpenPath(path);
  const ssize_t count = file.IsOpen() ? ReadSome(file.Get(), piece, sizeof piece) : -1;
  if (count < 0) return std::nullopt;
  if (static_cast<std::size_t>(count) < sizeof piece) return std::string(piece, static_cast<std::size_t>(count));
  return ReadWholeFile(path);
}

bool WriteWholeFile(const std::string& path, std::string_view content) {
  return Tell(Act::kWrite, path, "", [&] { return Write(path, content); });
}

}  // namespace win
