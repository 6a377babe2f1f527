#include "platform/system/filesystem/filesystem.h"

#include <algorithm>

namespace win {

bool FileSystem::HasEntry(const std::string& path) {
  FileStatus status;
  return LinkStatus(path, status);
}

bool FileSystem::Exists(const std::string& path) {
  FileStatus status;
  return Status(path, status);
}

bool FileSystem::IsFile(const std::string& path) {
  FileStatus status;
  return Status(path, status) && status.IsFile();
}

bool FileSystem::IsFolder(const std::string& path) {
  FileStatus status;
  return Status(path, status) && status.IsFolder();
}

std::unique_ptr<ReadableFile> OpenFile(FileSystem& files, const std::string& path, FileStatus& status) {
  auto file = files.OpenForReading(path);
  if (file != nullptr && !(file->Status(status) && status.IsFile())) {
    file.reset();
    errno = EISDIR;
  }
  return file;
}

std::optional<std::string> ReadUpTo(ReadableFile& file, std::uint64_t size, std::uint64_t limit) {
  // One byte more than its size: a read that does not fill this has found the end.
  std::string content(std::min(size + 1, limit), '\0');
  std::size_t length = 0;
  while (length < limit) {
    if (length == content.size()) content.resize(std::min(2 * static_cast<std::uint64_t>(length), limit));
    const ssize_t count = file.Read(content.data() + length, content.size() - length);
    if (count < 0) return std::nullopt;
    length += static_cast<std::size_t>(count);
    if (count == 0 || length == size) break;
  }
  content.resize(length);
  return content;
}

bool CopyFile(FileSystem& files, const std::string& from, const std::string& to) {
  constexpr std::size_t kPiece = std::size_t{64} * 1024;
  FileStatus status;
  const auto source = OpenFile(files, from, status);
  const auto copy = source ? files.OpenForWriting(to, OpenMode::kLocked, 0600) : nullptr;
  if (copy == nullptr) return false;
  std::string piece(kPiece, '\0');
  ssize_t count = 0;
  while ((count = source->Read(piece.data(), piece.size())) > 0)
    if (!copy->Append(std::string_view(piece.data(), static_cast<std::size_t>(count)))) return false;
  return count == 0 && copy->Close() && files.SetPermissions(to, status.permissions) &&
         files.SetModified(to, status.modified);
}

void MakeFolders(FileSystem& files, const std::string& path, mode_t permissions) {
  for (std::size_t end = 0; end < path.size();) {
    end = std::min(path.find('/', end + 1), path.size());
    files.MakeFolder(path.substr(0, end), permissions);
  }
}

}  // namespace win
