#pragma once

#include "platform/system/filesystem/descriptor.h"
#include "platform/system/filesystem/foldernames.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace win {

// The names in the folders looked at lately, so that a look-up needs no directory read, and never older than the
// folders themselves. A folder on a local file system is watched: a change by any process is taken over without a new
// read. Any other is read again when its change time differs, and while that time is so young that the next change
// might leave it the same. Memory is bounded: the folder that was used longest ago goes first. Paths are native ones.
// For one thread.
class FolderIndex {
 public:
  enum class Watching { kYes, kNo };

  explicit FolderIndex(Watching watching, std::size_t maxFolders = 1'000);

  // The names in the folder as it is now; nothing when it is no folder or cannot be read. Good until the next call.
  const FolderNames* NamesIn(const std::string& folder);

  // Stays the same as long as the names given out so far are sure to be the folders' own: it counts events, names
  // forgotten, and every question about a folder that is not watched. No two indexes of a thread share a value.
  std::uint64_t Changes() const { return changes_; }

 private:
  using Identity = std::pair<dev_t, ino_t>;
  struct Folder {
    FolderNames names;
    struct stat status = {};
    bool settled = false;  // the next change is sure to show in the change time
    int watch = -1;
    std::uint64_t lastUse = 0;
  };

  const FolderNames* ReadAgain(const std::string& path);
  int Watch(int folder) const;
  void TakeEvents();
  void TakeEvent(int watch, std::uint32_t change, std::string_view name);
  void Forget(Identity identity);
  void MakeRoom();

  Descriptor events_;
  std::size_t maxFolders_;
  std::map<Identity, Folder> folders_;
  std::unordered_map<int, Identity> watched_;
  std::uint64_t uses_ = 0;
  static thread_local std::uint64_t changes_;
};

}  // namespace win
