#pragma once

#include "platform/system/files/files.h"
#include "platform/system/filesystem/filesystem.h"
#include "platform/system/filesystem/nativepath.h"

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace test {

// Another file system, failing as disks do. Calls that change something are counted from 1, syncs and appends included.
// What has been written and not synced can be taken back, newest first, as a power cut may; permissions and times stay.
class FaultyFileSystem : public win::FileSystem {
 public:
  explicit FaultyFileSystem(win::FileSystem& base) : base_(base) {}

  int Calls() const { return calls_; }

  // Call `n` fails with `error` and changes nothing. With `cutShort` an append writes its first half before it fails.
  void FailAt(int n, int error, bool cutShort = false) {
    failAt_ = n;
    error_ = error;
    cutShort_ = cutShort;
  }

  // Content waits for the sync of its file, a name for that of its folder.
  void ForgetUnsynced() {
    for (; !unsynced_.empty(); unsynced_.pop_back())
      unsynced_.back().undo(unsynced_.back().path);
  }

  std::unique_ptr<win::ReadableFile> OpenForReading(const std::string& path) override {
    return base_.OpenForReading(path);
  }
  std::unique_ptr<win::WritableFile> OpenForWriting(const std::string& path, win::OpenMode mode,
                                                    mode_t permissions) override {
    const Content before = Read(path);
    if (Fails()) return nullptr;
    auto file = base_.OpenForWriting(path, mode, permissions);
    if (!file) return nullptr;
    if (!before.exists) Note(path, win::FolderAbove(path), [this](const auto& at) { base_.Remove(at); });
    Note(path, path, [this, before](const auto& at) { Write(at, before); });
    return std::make_unique<File>(*this, path, std::move(file));
  }
  std::unique_ptr<win::FolderListing> OpenFolder(const std::string& path) override { return base_.OpenFolder(path); }
  bool Status(const std::string& path, win::FileStatus& status) override { return base_.Status(path, status); }
  bool LinkStatus(const std::string& path, win::FileStatus& status) override { return base_.LinkStatus(path, status); }
  std::string LinkTarget(const std::string& path) override { return base_.LinkTarget(path); }
  bool IsAllowed(const std::string& path, int how) override { return base_.IsAllowed(path, how); }
  bool Rename(const std::string& from, const std::string& to) override {
    const Content replaced = Read(to);
    return !Fails() && base_.Rename(from, to) && NoteRename(from, to, replaced);
  }
  bool RenameWithoutReplacing(const std::string& from, const std::string& to) override {
    return !Fails() && base_.RenameWithoutReplacing(from, to) && NoteRename(from, to, {});
  }
  bool Remove(const std::string& path) override {
    const Content before = Read(path);
    return !Fails() && base_.Remove(path) &&
           Note(path, win::FolderAbove(path), [this, before](const auto& at) { Write(at, before); });
  }
  bool MakeFolder(const std::string& path, mode_t permissions) override {
    return !Fails() && base_.MakeFolder(path, permissions) &&
           Note(path, win::FolderAbove(path), [this](const auto& at) { base_.RemoveFolder(at); });
  }
  bool RemoveFolder(const std::string& path) override {
    return !Fails() && base_.RemoveFolder(path) &&
           Note(path, win::FolderAbove(path), [this](const auto& at) { base_.MakeFolder(at, 0777); });
  }
  bool SetPermissions(const std::string& path, mode_t permissions) override {
    return !Fails() && base_.SetPermissions(path, permissions);
  }
  bool SetModified(const std::string& path, const timespec& time) override {
    return !Fails() && base_.SetModified(path, time);
  }
  bool Sync(const std::string& path) override { return !Fails() && base_.Sync(path) && Keep(path); }
  std::unique_ptr<win::FileLock> TryLock(const std::string& path) override { return base_.TryLock(path); }
  const win::FolderNames* NamesIn(const std::string& folder) override { return base_.NamesIn(folder); }
  std::uint64_t NameChanges() override { return base_.NameChanges(); }
  bool IsSeenByPrograms() const override { return base_.IsSeenByPrograms(); }

 private:
  struct Content {
    bool exists = false;
    std::string bytes = {};
  };
  struct Change {
    std::string path;
    std::string awaited;  // what has to be synced
    std::function<void(const std::string& path)> undo;
  };

  class File : public win::WritableFile {
   public:
    File(FaultyFileSystem& files, std::string path, std::unique_ptr<win::WritableFile> file)
        : files_(files), path_(std::move(path)), file_(std::move(file)) {}
    bool Append(std::string_view content) override {
      const bool fails = files_.Fails();
      if (fails && files_.cutShort_) file_->Append(content.substr(0, content.size() / 2));
      return fails ? win::FailWith(files_.error_) : file_->Append(content);
    }
    bool Sync() override { return !files_.Fails() && file_->Sync() && files_.Keep(path_); }
    bool Close() override { return file_->Close(); }

   private:
    FaultyFileSystem& files_;
    std::string path_;
    std::unique_ptr<win::WritableFile> file_;
  };

  bool Fails() { return ++calls_ == failAt_ && !win::FailWith(error_); }
  bool Note(const std::string& path, const std::string& awaited, std::function<void(const std::string&)> undo) {
    unsynced_.push_back({path, awaited, std::move(undo)});
    return true;
  }
  bool Keep(const std::string& synced) {
    unsynced_.remove_if([&](const Change& change) { return change.awaited == synced; });
    return true;
  }

  // Unsynced content goes with its file.
  bool NoteRename(const std::string& from, const std::string& to, const Content& replaced) {
    for (Change& change : unsynced_)
      if (change.awaited == from) change.path = change.awaited = to;
    return Note(to, win::FolderAbove(to), [this, from, to, replaced](const auto&) {
      base_.Rename(to, from);
      for (Change& change : unsynced_)
        if (change.awaited == to) change.path = change.awaited = from;
      if (replaced.exists) Write(to, replaced);
    });
  }
  Content Read(const std::string& path) {
    win::FileStatus status;
    const auto file = win::OpenFile(base_, path, status);
    return file ? Content{true, win::ReadUpTo(*file, status.size, status.size + 1).value_or("")} : Content{};
  }
  void Write(const std::string& path, const Content& content) {
    if (const auto file = base_.OpenForWriting(path, win::OpenMode::kTruncate, 0666)) file->Append(content.bytes);
  }

  win::FileSystem& base_;
  std::list<Change> unsynced_;
  int calls_ = 0;
  int failAt_ = 0;
  int error_ = 0;
  bool cutShort_ = false;
};

}  // namespace test
