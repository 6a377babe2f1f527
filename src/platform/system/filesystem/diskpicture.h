#pragma once

#include "platform/system/files/findfile.h"
#include "platform/system/files/rehearsal.h"
#include "platform/system/filesystem/disk.h"
#include "platform/system/filesystem/foldernames.h"
#include "platform/system/filesystem/nativefile.h"
#include "platform/system/paths/pathfinder.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace win {

// The disk as it would be after changes that are not made. What has not changed shows as it lies on the disk, where
// nothing is written: a changed file lives in memory, a renamed one is read where it still lies. While one lives it
// stands in the place of the disk, and takes for granted that nobody else changes that.
class DiskPicture : public Disk {
 public:
  DiskPicture();
  ~DiskPicture() override;

  // Nothing when this layer works on the disk itself.
  static DiskPicture* InUse();

  int Stat(const std::string& native, struct stat& status) override;
  int LinkStat(const std::string& native, struct stat& status) override;
  std::string ReadLink(const std::string& native) override;
  int Open(const std::string& native, int flags, mode_t mode) override;
  int Rename(const std::string& from, const std::string& to, unsigned flags) override;
  int Unlink(const std::string& native) override;
  int MakeFolder(const std::string& native, mode_t mode) override;
  int RemoveFolder(const std::string& native) override;
  int ChangeMode(const std::string& native, mode_t mode) override;

  // Names and kinds in a folder: those on the disk in its order, then new ones. Nothing for what is no folder.
  std::optional<std::vector<FoundEntry>> EntriesIn(const std::string& folder);

  PathFinder& Finder() { return finder_; }

  // Where the picture differs from the disk, in name order, by native path; of a renamed or made folder only the folder
  // itself.
  std::vector<PathDifference> Differences();

  // The absolute native path without links on the way, its last name included or not.
  std::string Resolved(const std::string& native, bool followLast);

 private:
  // What a path that has changed leads to. `lies` is where the content can be opened: somewhere on the disk, or in
  // memory. Empty for a folder that was made here.
  struct Entry {
    bool gone = false;
    std::string lies;
    std::shared_ptr<Descriptor> memory = {};
  };

  std::optional<Entry> Find(const std::string& resolved) const;
  bool IsNoFolderNamedAsOne(const std::string& native);
  int StatusOf(const std::string& resolved, bool followLink, struct stat& status);
  bool IsFolder(const std::string& resolved);
  bool Exists(const std::string& resolved);
  bool MayChange(const std::string& folder);
  bool MayMove(const std::string& from, const std::string& to);
  Entry InMemory(const std::string& resolved, bool withContent);
  void Set(const std::string& resolved, Entry entry);
  void Move(const std::string& from, const std::string& to);
  void UpdateNames(const std::string& resolved);
  const FolderNames* NamesIn(const std::string& folder);
  bool IsSame(const std::string& resolved, const Entry& entry);

  std::map<std::string, Entry> entries_;  // by resolved path
  std::map<std::string, FolderNames> names_;
  PathFinder finder_;
  DiskPicture* outer_;
};

}  // namespace win
