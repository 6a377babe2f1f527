#include "platform/system/filesystem/posixfilesystem.h"

#include "platform/system/filesystem/descriptor.h"
#include "platform/system/filesystem/folderindex.h"

#include <dirent.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace win {

namespace {

FileStatus StatusFrom(const struct stat& status) {
  using Kind = FileStatus::Kind;
  const Kind kind = S_ISREG(status.st_mode)   ? Kind::kFile
                    : S_ISDIR(status.st_mode) ? Kind::kFolder
                    : S_ISLNK(status.st_mode) ? Kind::kLink
                                              : Kind::kOther;
  return {kind,          status.st_mode & 07777u, static_cast<std::uint64_t>(status.st_size),
          status.st_uid, status.st_mtim,          {status.st_dev, status.st_ino}};
}

bool StatusOf(int descriptor, FileStatus& status) {
  struct stat found;
  if (fstat(descriptor, &found) != 0) return false;
  status = StatusFrom(found);
  return true;
}

class PosixReader : public ReadableFile {
 public:
  explicit PosixReader(Descriptor file) : file_(std::move(file)) {}
  ssize_t Read(char* buffer, std::size_t size) override { return ReadSome(file_.Get(), buffer, size); }
  bool Status(FileStatus& status) override { return StatusOf(file_.Get(), status); }

 private:
  Descriptor file_;
};

class PosixWriter : public WritableFile {
 public:
  explicit PosixWriter(Descriptor file) : file_(std::move(file)) {}
  bool Append(std::string_view content) override { return WriteAll(file_.Get(), content); }
  bool Sync() override { return fsync(file_.Get()) == 0; }
  bool Close() override { return file_.Close(); }

 private:
  Descriptor file_;
};

class PosixListing : public FolderListing {
 public:
  // Null when `folder` is not open.
  static std::unique_ptr<FolderListing> From(Descriptor folder) {
    DIR* const stream = folder.IsOpen() ? fdopendir(folder.Get()) : nullptr;
    if (stream == nullptr) return nullptr;
    folder.Release();
    return std::unique_ptr<FolderListing>(new PosixListing(stream));
  }

  bool Next(FoundEntry& entry) override {
    const dirent* const next = readdir(stream_.get());
    if (next == nullptr) return false;
    entry.name = next->d_name;
    entry.isLink = next->d_type == DT_LNK;
    entry.isFolder = next->d_type == DT_DIR;
    if (next->d_type == DT_UNKNOWN) entry.isLink = (Mode(next->d_name, AT_SYMLINK_NOFOLLOW) & S_IFMT) == S_IFLNK;
    if (entry.isLink || next->d_type == DT_UNKNOWN) entry.isFolder = S_ISDIR(Mode(next->d_name, 0));
    return true;
  }

  std::unique_ptr<FolderListing> Descend(const std::string& name) override {
    return From(Descriptor(openat(dirfd(stream_.get()), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
  }

  FileIdentity Identity() override {
    FileStatus status;
    StatusOf(dirfd(stream_.get()), status);
    return status.identity;
  }

 private:
  explicit PosixListing(DIR* stream) : stream_(stream, closedir) {}

  mode_t Mode(const char* name, int flags) const {
    struct stat status;
    return fstatat(dirfd(stream_.get()), name, &status, flags) == 0 ? status.st_mode : 0;
  }

  std::unique_ptr<DIR, int (*)(DIR*)> stream_;
};

struct PosixLock : FileLock {
  explicit PosixLock(Descriptor locked) : file(std::move(locked)) {}
  Descriptor file;
};

// A child process starts afresh: the events that its parent waits for are not its own to take.
FolderIndex& Index() {
  thread_local bool forked = false;
  thread_local std::optional<FolderIndex> index;
  [[maybe_unused]] static const int registered = pthread_atfork(nullptr, nullptr, [] { forked = true; });
  if (!index || std::exchange(forked, false)) index.emplace(FolderIndex::Watching::kYes);
  return *index;
}

class Posix : public FileSystem {
 public:
  std::unique_ptr<ReadableFile> OpenForReading(const std::string& path) override {
    Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file.IsOpen() ? std::make_unique<PosixReader>(std::move(file)) : nullptr;
  }

  std::unique_ptr<WritableFile> OpenForWriting(const std::string& path, OpenMode mode, mode_t permissions) override {
    const int how = mode == OpenMode::kAppend ? O_APPEND : mode == OpenMode::kExclusive ? O_EXCL : O_TRUNC;
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK;
    Descriptor file = mode == OpenMode::kLocked ? OpenLocked(path, flags | O_NOFOLLOW, permissions)
                                                : Descriptor(open(path.c_str(), flags | how, permissions));
    return file.IsOpen() ? std::make_unique<PosixWriter>(std::move(file)) : nullptr;
  }

  std::unique_ptr<FolderListing> OpenFolder(const std::string& path) override {
    return PosixListing::From(Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
  }

  bool Status(const std::string& path, FileStatus& status) override { return StatusAt(path, 0, status); }
  bool LinkStatus(const std::string& path, FileStatus& status) override {
    return StatusAt(path, AT_SYMLINK_NOFOLLOW, status);
  }

  std::string LinkTarget(const std::string& path) override {
    char target[4096];
    const ssize_t length = readlink(path.c_str(), target, sizeof target);
    return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
  }

  bool IsAllowed(const std::string& path, int how) override { return access(path.c_str(), how) == 0; }

  bool Rename(const std::string& from, const std::string& to) override { return rename(from.c_str(), to.c_str()) == 0; }

  bool RenameWithoutReplacing(const std::string& from, const std::string& to) override {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    // A file system that does not know the flag. Linking the new name first would not replace either, but a crash
    // behind it would leave both names.
    if (errno != EINVAL && errno != ENOSYS) return false;
    return HasEntry(to) ? FailWith(EEXIST) : Rename(from, to);
  }

  bool Remove(const std::string& path) override { return unlink(path.c_str()) == 0; }
  bool MakeFolder(const std::string& path, mode_t permissions) override {
    return mkdir(path.c_str(), permissions) == 0;
  }
  bool RemoveFolder(const std::string& path) override { return rmdir(path.c_str()) == 0; }
  bool SetPermissions(const std::string& path, mode_t permissions) override {
    return chmod(path.c_str(), permissions) == 0;
  }
  bool SetModified(const std::string& path, const timespec& time) override {
    const timespec times[] = {{0, UTIME_OMIT}, time};
    return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
  }

  bool Sync(const std::string& path) override {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    // EINVAL: some file systems cannot sync a folder, and have nothing to sync.
    return file.IsOpen() && (fsync(file.Get()) == 0 || errno == EINVAL);
  }

  bool SyncAll(const std::string& path) override {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file.IsOpen() && syncfs(file.Get()) == 0;
  }

  std::unique_ptr<FileLock> TryLock(const std::string& path) override {
    return Locked(Descriptor(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)));
  }

  std::unique_ptr<FileLock> TryLockFolder(const std::string& path) override {
    return Locked(Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
  }

  const FolderNames* NamesIn(const std::string& folder) override { return Index().NamesIn(folder); }
  std::uint64_t NameChanges() override { return Index().Changes(); }
  bool IsSeenByPrograms() const override { return true; }

 private:
  static bool StatusAt(const std::string& path, int flags, FileStatus& status) {
    struct stat found;
    if (fstatat(AT_FDCWD, path.c_str(), &found, flags) != 0) return false;
    status = StatusFrom(found);
    return true;
  }

  static std::unique_ptr<FileLock> Locked(Descriptor file) {
    if (!file.IsOpen() || !LockUnlessHeld(file.Get())) return nullptr;
    return std::make_unique<PosixLock>(std::move(file));
  }

  // Another writer that waited for the lock may find that the name has moved on with the content of the first.
  static Descriptor OpenLocked(const std::string& path, int flags, mode_t permissions) {
    while (true) {
      Descriptor file(open(path.c_str(), flags, permissions));
      if (!file.IsOpen()) return file;
      flock(file.Get(), LOCK_EX);
      FileStatus opened;
      FileStatus named;
      if (!StatusOf(file.Get(), opened) || !StatusAt(path, AT_SYMLINK_NOFOLLOW, named)) continue;
      if (opened.identity == named.identity) return ftruncate(file.Get(), 0) == 0 ? std::move(file) : Descriptor();
    }
  }
};

}  // namespace

FileSystem& PosixFileSystem() {
  static Posix posix;
  return posix;
}

}  // namespace win
