#pragma once

#include "platform/system/filesystem/foldernames.h"

#include <sys/types.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// The seam to the file system. Everything in this layer that looks at the disk or changes it calls a FileSystem, so
// that a rehearsal or a test can put another one in its place. Paths are native ones: bytes, exact case, `/` separates.
//
// A call that fails returns false or null, has changed nothing, and leaves the reason in errno. For one thread.
namespace win {

// Leaves the reason in errno. Returns false.
inline bool FailWith(int error) {
  errno = error;
  return false;
}

// Equal for two names of the same file or folder.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;
  bool operator==(const FileIdentity&) const = default;
};

struct FileStatus {
  enum class Kind { kFile, kFolder, kLink, kOther };

  Kind kind = Kind::kOther;
  mode_t permissions = 0;  // the twelve bits of chmod
  std::uint64_t size = 0;  // bytes
  uid_t owner = 0;
  timespec modified = {};
  FileIdentity identity = {};

  bool IsFile() const { return kind == Kind::kFile; }
  bool IsFolder() const { return kind == Kind::kFolder; }
  bool IsReadOnly() const { return (permissions & 0200) == 0; }
};

class ReadableFile {
 public:
  virtual ~ReadableFile() = default;

  // At most `size` bytes. 0 at the end of the file, -1 on failure, also for a folder.
  virtual ssize_t Read(char* buffer, std::size_t size) = 0;
  virtual bool Status(FileStatus& status) = 0;
};

// What is appended need not have reached the disk before Sync has returned true. The destructor closes.
class WritableFile {
 public:
  virtual ~WritableFile() = default;

  virtual bool Append(std::string_view content) = 0;
  virtual bool Sync() = 0;

  // False when something appended is lost.
  virtual bool Close() = 0;
};

enum class OpenMode {
  kTruncate,
  kAppend,
  kExclusive,  // fails with EEXIST when the name is taken
  kLocked,     // empties the file, waits while another process holds it so, and never follows a link
};

struct FoundEntry {
  std::string name;       // as it stands on disk
  bool isFolder = false;  // a link to a folder counts as a folder
  bool isLink = false;
};

// The entries of one folder, `.` and `..` included, in the order of the file system.
class FolderListing {
 public:
  virtual ~FolderListing() = default;

  // False at the end. `entry` is filled in place.
  virtual bool Next(FoundEntry& entry) = 0;

  // One of its sub-folders, opened relative to this one: no path is looked up again. Null when it is no folder.
  virtual std::unique_ptr<FolderListing> Descend(const std::string& name) = 0;
  virtual FileIdentity Identity() = 0;
};

// Held until it is destroyed, or the process ends.
class FileLock {
 public:
  virtual ~FileLock() = default;
};

class FileSystem {
 public:
  FileSystem() = default;
  virtual ~FileSystem() = default;
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;

  // Opens whatever has this name, and does not block on a pipe.
  virtual std::unique_ptr<ReadableFile> OpenForReading(const std::string& path) = 0;

  // A file that is made gets `permissions` less the user's mask.
  virtual std::unique_ptr<WritableFile> OpenForWriting(const std::string& path, OpenMode mode, mode_t permissions) = 0;

  // Null when it is no folder or cannot be read.
  virtual std::unique_ptr<FolderListing> OpenFolder(const std::string& path) = 0;

  // Status follows a link in the last name, LinkStatus describes the link itself.
  virtual bool Status(const std::string& path, FileStatus& status) = 0;
  virtual bool LinkStatus(const std::string& path, FileStatus& status) = 0;

  // Empty for what is no link.
  virtual std::string LinkTarget(const std::string& path) = 0;

  // Whether this process may use the file or folder: `how` adds up R_OK, W_OK and X_OK as in access(2).
  virtual bool IsAllowed(const std::string& path, int how) = 0;

  // Both rename files and folders. Rename replaces a file at `to`, RenameWithoutReplacing fails with EEXIST.
  virtual bool Rename(const std::string& from, const std::string& to) = 0;
  virtual bool RenameWithoutReplacing(const std::string& from, const std::string& to) = 0;

  // Removes a file or a link. RemoveFolder removes an empty folder.
  virtual bool Remove(const std::string& path) = 0;
  virtual bool MakeFolder(const std::string& path, mode_t permissions) = 0;
  virtual bool RemoveFolder(const std::string& path) = 0;
  virtual bool SetPermissions(const std::string& path, mode_t permissions) = 0;
  virtual bool SetModified(const std::string& path, const timespec& time) = 0;

  // True when the content of the file has reached the disk, or the names in the folder. Neither covers the other.
  virtual bool Sync(const std::string& path) = 0;

  // True when everything on the file system that holds `path` has reached the disk.
  virtual bool SyncAll(const std::string& path) = 0;

  // Locks the file against other processes and makes it when it is missing. Null with EWOULDBLOCK while another holds
  // it. Where the file system has no locks, it succeeds.
  virtual std::unique_ptr<FileLock> TryLock(const std::string& path) = 0;

  // The same on a folder that is there, which need not be writable. It leaves nothing behind.
  virtual std::unique_ptr<FileLock> TryLockFolder(const std::string& path) = 0;

  // The names in the folder as it is now, without `.` and `..`. Null when it is no folder or cannot be read. Valid
  // until the next call.
  virtual const FolderNames* NamesIn(const std::string& folder) = 0;

  // Stays the same as long as all names given out so far are sure to be the folders' own. 0: cannot tell.
  virtual std::uint64_t NameChanges() { return 0; }

  // True when other programs see what is written here, so that starting one makes sense.
  virtual bool IsSeenByPrograms() const = 0;

  // Questions in terms of the calls above. A link counts as what it leads to, for HasEntry as itself.
  bool HasEntry(const std::string& path);
  bool Exists(const std::string& path);
  bool IsFile(const std::string& path);
  bool IsFolder(const std::string& path);
};

// A regular file opened for reading, with its status. Null for anything else.
std::unique_ptr<ReadableFile> OpenFile(FileSystem& files, const std::string& path, FileStatus& status);

// The content to its end, but `limit` bytes at most. Nothing when a read fails. `size` is what the status said.
std::optional<std::string> ReadUpTo(ReadableFile& file, std::uint64_t size, std::uint64_t limit);

// Copies content, permissions and time of a regular file. An existing file at `to` is replaced in place; after a
// failure it may hold a part. Nothing is synced.
bool CopyFile(FileSystem& files, const std::string& from, const std::string& to);

// Makes the folder and those above it that are missing.
void MakeFolders(FileSystem& files, const std::string& path, mode_t permissions);

}  // namespace win
