#pragma once

#include "platform/system/filesystem/filesystem.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace win {

struct MemoryFile;

struct PathDifference {
  enum class Kind { kNew, kGone, kChanged };

  std::string path;
  Kind kind = Kind::kNew;
};

// Another file system as it would be after changes that are not made to it. A changed file lives in memory, a renamed
// one is read where it still is in the file system below, which must not change while this object is alive.
class OverlayFileSystem : public FileSystem {
 public:
  // `base` must outlive this object.
  explicit OverlayFileSystem(FileSystem& base);
  ~OverlayFileSystem() override;

  std::unique_ptr<ReadableFile> OpenForReading(const std::string& path) override;
  std::unique_ptr<WritableFile> OpenForWriting(const std::string& path, OpenMode mode, mode_t permissions) override;
  std::unique_ptr<FolderListing> OpenFolder(const std::string& path) override;
  bool Status(const std::string& path, FileStatus& status) override;
  bool LinkStatus(const std::string& path, FileStatus& status) override;
  std::string LinkTarget(const std::string& path) override;
  bool IsAllowed(const std::string& path, int how) override;
  bool Rename(const std::string& from, const std::string& to) override { return RenameTo(from, to, true); }
  bool RenameWithoutReplacing(const std::string& from, const std::string& to) override {
    return RenameTo(from, to, false);
  }
  bool Remove(const std::string& path) override;
  bool MakeFolder(const std::string& path, mode_t permissions) override;
  bool RemoveFolder(const std::string& path) override;
  bool SetPermissions(const std::string& path, mode_t permissions) override;
  bool SetModified(const std::string& path, const timespec& time) override;
  bool Sync(const std::string& path) override { return Exists(path) || FailWith(ENOENT); }
  bool SyncAll(const std::string& path) override { return Sync(path); }
  std::unique_ptr<FileLock> TryLock(const std::string& path) override;
  std::unique_ptr<FileLock> TryLockFolder(const std::string& path) override;
  const FolderNames* NamesIn(const std::string& folder) override;
  bool IsSeenByPrograms() const override { return false; }

  // Where this file system differs from the one below, in name order. Of a renamed or made folder only the folder
  // itself.
  std::vector<PathDifference> Differences();

  // The absolute path without links on the way, its last name included or not.
  std::string Resolved(const std::string& path, bool followLast);

 protected:
  // Where the file system below has what stands at a resolved path; empty for what does not come from there.
  std::string PathBelow(const std::string& resolved) const;

  // The content of a file in memory; nothing for anything else.
  std::optional<std::string_view> ContentInMemory(const std::string& resolved) const;

  // Calls `take` with each resolved path that has changed and the path below of what it leads to now: empty for what
  // does not come from there, and for what has gone.
  void ForEachChange(const std::function<void(const std::string& path, const std::string& below)>& take) const;

 private:
  class Listing;

  // What a path that has changed leads to: an unchanged file or folder, known below as `backing`, a file in memory, or
  // with neither a folder that was made here.
  struct Entry {
    bool gone = false;
    std::string backing = {};
    std::shared_ptr<MemoryFile> memory = {};
    ino_t inode = 0;  // of what is not below
  };

  // A name that has changed, or a folder with changes below it.
  struct Node;

  struct Below;

  std::shared_ptr<Node> NodeAt(std::string_view resolved) const;
  Node& MakeNode(std::string_view resolved);
  void Prune(std::string resolved);
  std::optional<Entry> Find(std::string_view resolved) const;
  Below& LookBelow(const std::string& backing);
  const std::string& Followed(const std::string& path);
  std::string TargetAt(const std::string& resolved);
  bool IsLinkAt(const std::string& resolved);
  bool IsFileNamedAsFolder(const std::string& path);
  bool StatusOf(const std::string& resolved, bool followLink, FileStatus& status);
  bool StatusBeforeChanges(const std::string& resolved, bool followLink, FileStatus& status);
  bool IsFolderAt(const std::string& resolved);
  bool ExistsAt(const std::string& resolved);
  bool MayChange(const std::string& folder);
  bool MayMove(const std::string& from, const std::string& to);
  Entry InMemory(const std::string& resolved, bool withContent, mode_t permissions);
  void Set(const std::string& resolved, Entry entry);
  void Put(const std::string& resolved, std::shared_ptr<Node> node);
  bool RenameTo(const std::string& from, const std::string& to, bool replace);
  bool RemoveEntry(const std::string& resolved);
  bool IsMadeAgain(const std::string& resolved);
  void AddChanges(const std::string& folder, const Node& node,
                  const std::function<void(const std::string& path, const std::string& below)>& take) const;
  FoundEntry EntryNamed(const std::string& folder, const std::string& name);
  bool IsChanged(const std::string& resolved);
  void AddDifferences(const std::string& folder, const Node& node, std::vector<PathDifference>& differences);

  FileSystem& base_;
  std::shared_ptr<Node> root_;
  std::unordered_map<std::string, Below> below_;           // by path in `base_`, those looked at lately
  std::unordered_map<std::string, std::string> followed_;  // what absolute paths lead to, as given
  ino_t lastInode_;
};

}  // namespace win
