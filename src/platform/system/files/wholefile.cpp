#include "platform/system/files/wholefile.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"

namespace win {

namespace {

// Whatever has this path. No look-up for one that is spelled as on disk.
std::unique_ptr<ReadableFile> OpenPath(const std::string& path) {
  if (path.find('\0') != std::string::npos) return nullptr;
  auto file = CurrentFileSystem().OpenForReading(ToNativeSpelling(path));
  return file ? std::move(file) : CurrentFileSystem().OpenForReading(NativePath(path));
}

bool Write(const std::string& path, std::string_view content, std::optional<mode_t> permissions) {
  FileSystem& files = CurrentFileSystem();
  const std::string target = FollowLinks(NativePath(path));
  FileStatus status;
  const bool exists = files.Status(target, status);
  if (exists && !status.IsFile()) return FailWith(EISDIR);
  if (exists && status.IsReadOnly()) return FailWith(EPERM);
  const std::string copy = TemporaryNameFor(target);
  const mode_t mode = permissions.value_or(exists ? status.permissions : 0666);
  const auto file = files.OpenForWriting(copy, OpenMode::kLocked, mode);
  if (!file) return FailWith(errno == ENOENT ? ENOTDIR : errno);
  // A file system without permissions is no reason to lose the content.
  const bool isMarked = (!exists && !permissions) || files.SetPermissions(copy, mode) || permissions;
  if (isMarked && file->Append(content) && file->Sync() && files.Rename(copy, target))
    return files.Sync(FolderAbove(target));
  files.Remove(copy);
  return false;
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path) {
  const auto file = OpenPath(path);
  FileStatus status;
  if (!file || !file->Status(status) || !status.IsFile() || status.size > kMaxBytes) return std::nullopt;
  std::optional<std::string> content = ReadUpTo(*file, status.size, kMaxBytes + 1);
  if (content && content->size() > kMaxBytes) return std::nullopt;
  return content;
}

std::optional<std::string> ReadFileOnce(const std::string& path) {
  char piece[4096];
  const auto file = OpenPath(path);
  const ssize_t count = file ? file->Read(piece, sizeof piece) : -1;
  if (count < 0) return std::nullopt;
  if (static_cast<std::size_t>(count) < sizeof piece) return std::string(piece, static_cast<std::size_t>(count));
  return ReadWholeFile(path);
}

bool WriteWholeFile(const std::string& path, std::string_view content, std::optional<mode_t> permissions) {
  return ReportOperation(Operation::kWrite, path, "", [&] { return Write(path, content, permissions); });
}

}  // namespace win
