#include "platform/system/filesystem/recordingfilesystem.h"

#include "platform/system/filesystem/nativepath.h"

#include <utility>

namespace win {

void RecordingFileSystem::Touch(const std::string& resolved) {
  touched_.insert(resolved);
  if (std::string below = PathBelow(resolved); !below.empty()) touched_.insert(std::move(below));
}

// What stands there ends with the call.
void RecordingFileSystem::TouchForGood(const std::string& resolved) {
  Touch(resolved);
  FileStatus status;
  if (const auto content = ContentInMemory(resolved))
    written_.insert(ContentIdOf(*content));
  else if (LinkStatus(resolved, status) && !status.IsFolder())
    destroyed_.insert(PathBelow(resolved));
}

void RecordingFileSystem::TouchForRename(const std::string& from, const std::string& to) {
  Touch(from);
  Touch(to);
  if (const auto content = ContentInMemory(from)) written_.insert(ContentIdOf(*content));
  FileStatus source;
  FileStatus folder;
  // To another file system a file is copied, under this name first.
  if (LinkStatus(from, source) && Status(FolderAbove(to), folder) && source.identity.device != folder.identity.device)
    Touch(TemporaryNameFor(to));
}

class RecordingFileSystem::Reader : public ReadableFile {
 public:
  Reader(RecordingFileSystem& files, std::string path, std::unique_ptr<ReadableFile> file)
      : files_(files), path_(std::move(path)), file_(std::move(file)) {}

  ssize_t Read(char* buffer, std::size_t size) override {
    const ssize_t count = file_->Read(buffer, size);
    if (count < 0) files_.NoteUnreadable(path_);
    return count;
  }
  bool Status(FileStatus& status) override { return file_->Status(status); }

 private:
  RecordingFileSystem& files_;
  std::string path_;
  std::unique_ptr<ReadableFile> file_;
};

// A folder is not read as a file.
void RecordingFileSystem::NoteUnreadable(const std::string& path) {
  const int error = errno;
  FileStatus status;
  if (unreadable_.empty() && error != EISDIR && Status(path, status) && status.IsFile()) {
    unreadable_ = path;
    readError_ = error;
  }
  errno = error;
}

std::unique_ptr<ReadableFile> RecordingFileSystem::OpenForReading(const std::string& path) {
  auto file = OverlayFileSystem::OpenForReading(path);
  if (file) return std::make_unique<Reader>(*this, path, std::move(file));
  NoteUnreadable(path);
  return nullptr;
}

std::unique_ptr<WritableFile> RecordingFileSystem::OpenForWriting(const std::string& path, OpenMode mode,
                                                                  mode_t permissions) {
  const std::string resolved = Resolved(path, mode == OpenMode::kTruncate || mode == OpenMode::kAppend);
  FileStatus status;
  const bool goesOn = mode == OpenMode::kAppend && ContentInMemory(resolved);
  if (!goesOn && Status(resolved, status) && status.IsFile() && IsAllowed(resolved, W_OK))
    TouchForGood(resolved);
  else
    Touch(resolved);
  return OverlayFileSystem::OpenForWriting(path, mode, permissions);
}

bool RecordingFileSystem::Rename(const std::string& from, const std::string& to) {
  TouchForRename(Resolved(from, false), Resolved(to, false));
  TouchForGood(Resolved(to, false));
  return OverlayFileSystem::Rename(from, to);
}

bool RecordingFileSystem::RenameWithoutReplacing(const std::string& from, const std::string& to) {
  TouchForRename(Resolved(from, false), Resolved(to, false));
  return OverlayFileSystem::RenameWithoutReplacing(from, to);
}

bool RecordingFileSystem::Remove(const std::string& path) {
  TouchForGood(Resolved(path, false));
  return OverlayFileSystem::Remove(path);
}

bool RecordingFileSystem::MakeFolder(const std::string& path, mode_t permissions) {
  Touch(Resolved(path, false));
  return OverlayFileSystem::MakeFolder(path, permissions);
}

bool RecordingFileSystem::RemoveFolder(const std::string& path) {
  Touch(Resolved(path, false));
  return OverlayFileSystem::RemoveFolder(path);
}

bool RecordingFileSystem::SetPermissions(const std::string& path, mode_t permissions) {
  TouchForGood(Resolved(path, true));
  return OverlayFileSystem::SetPermissions(path, permissions);
}

std::set<ContentId> RecordingFileSystem::Written() const {
  std::set<ContentId> all = written_;
  ForEachChange([&](const std::string& path, const std::string&) {
    if (const auto content = ContentInMemory(path)) all.insert(ContentIdOf(*content));
  });
  return all;
}

std::map<std::string, std::string> RecordingFileSystem::Contents() const {
  std::map<std::string, std::string> contents;
  ForEachChange([&](const std::string& path, const std::string&) {
    if (const auto content = ContentInMemory(path)) contents.emplace(path, *content);
  });
  return contents;
}

std::map<std::string, std::string> RecordingFileSystem::Moves() const {
  std::map<std::string, std::string> moves;
  ForEachChange([&](const std::string& path, const std::string& below) {
    if (!below.empty()) moves[below] = path;
  });
  return moves;
}

}  // namespace win
