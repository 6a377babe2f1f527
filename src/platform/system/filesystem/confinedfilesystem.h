#pragma once

#include "platform/system/filesystem/filesystem.h"

#include <cerrno>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace win {

// The reason of a refusal. No call of this operating system gives it.
constexpr int kErrorOutside = EDOTDOT;

// Another file system in which nothing changes outside the given folders: a call that would change something elsewhere
// fails with kErrorOutside. Links on the way are followed first, and one in the last name where the call follows it.
// Reading is not restricted. The folders themselves can be neither renamed nor removed.
class ConfinedFileSystem : public FileSystem {
 public:
  // `base` must outlive this object. Folders are native paths, whose links are followed now.
  ConfinedFileSystem(FileSystem& base, const std::vector<std::string>& folders);

  FileSystem& Base() { return base_; }

  // Whether the path lies below one of the folders. It need not exist. False leaves kErrorOutside in errno.
  bool Contains(const std::string& path, bool followLast);

  std::unique_ptr<ReadableFile> OpenForReading(const std::string& path) override { return base_.OpenForReading(path); }
  std::unique_ptr<WritableFile> OpenForWriting(const std::string& path, OpenMode mode, mode_t permissions) override;
  std::unique_ptr<FolderListing> OpenFolder(const std::string& path) override { return base_.OpenFolder(path); }
  bool Status(const std::string& path, FileStatus& status) override { return base_.Status(path, status); }
  bool LinkStatus(const std::string& path, FileStatus& status) override { return base_.LinkStatus(path, status); }
  std::string LinkTarget(const std::string& path) override { return base_.LinkTarget(path); }
  bool IsAllowed(const std::string& path, int how) override { return base_.IsAllowed(path, how); }
  bool Rename(const std::string& from, const std::string& to) override;
  bool RenameWithoutReplacing(const std::string& from, const std::string& to) override;
  bool Remove(const std::string& path) override;
  bool MakeFolder(const std::string& path, mode_t permissions) override;
  bool RemoveFolder(const std::string& path) override;
  bool SetPermissions(const std::string& path, mode_t permissions) override;
  bool SetModified(const std::string& path, const timespec& time) override;
  bool Sync(const std::string& path) override { return base_.Sync(path); }
  bool SyncAll(const std::string& path) override { return base_.SyncAll(path); }
  std::unique_ptr<FileLock> TryLock(const std::string& path) override { return base_.TryLock(path); }
  std::unique_ptr<FileLock> TryLockFolder(const std::string& path) override { return base_.TryLockFolder(path); }
  const FolderNames* NamesIn(const std::string& folder) override { return base_.NamesIn(folder); }
  std::uint64_t NameChanges() override { return base_.NameChanges(); }
  bool IsSeenByPrograms() const override { return base_.IsSeenByPrograms(); }

 protected:
  // Whether what stands at this path may change: an absolute one without links on the way. False leaves the reason in
  // errno.
  virtual bool MayChange(const std::string& resolved);

 private:
  std::string Resolved(const std::string& path, bool followLast);
  bool MayRename(const std::string& from, const std::string& to);
  bool AfterRename(const std::string& to, bool done);

  FileSystem& base_;
  std::vector<std::string> folders_;             // each ends in a separator
  std::map<std::string, std::string> resolved_;  // folders as they were given; no link has moved since
};

}  // namespace win
