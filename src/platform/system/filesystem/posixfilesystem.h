#pragma once

#include "platform/system/filesystem/filesystem.h"

namespace win {

// The file system of the operating system.
class PosixFileSystem : public FileSystem {
 public:
  std::unique_ptr<ReadableFile> OpenForReading(const std::string& path) override;
  std::unique_ptr<WritableFile> OpenForWriting(const std::string& path, OpenMode mode, mode_t permissions) override;
  std::unique_ptr<FolderListing> OpenFolder(const std::string& path) override;
  bool Status(const std::string& path, FileStatus& status) override;
  bool LinkStatus(const std::string& path, FileStatus& status) override;
  std::string LinkTarget(const std::string& path) override;
  bool IsAllowed(const std::string& path, int how) override;
  bool Rename(const std::string& from, const std::string& to) override;
  bool RenameWithoutReplacing(const std::string& from, const std::string& to) override;
  bool Remove(const std::string& path) override;
  bool MakeFolder(const std::string& path, mode_t permissions) override;
  bool RemoveFolder(const std::string& path) override;
  bool SetPermissions(const std::string& path, mode_t permissions) override;
  bool SetModified(const std::string& path, const timespec& time) override;
  bool Sync(const std::string& path) override;
  std::unique_ptr<FileLock> TryLock(const std::string& path) override;
  const FolderNames* NamesIn(const std::string& folder) override;
  std::uint64_t NameChanges() override;
  bool IsSeenByPrograms() const override { return true; }
};

}  // namespace win
