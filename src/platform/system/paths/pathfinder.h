#pragma once

#include "platform/system/filesystem/foldernames.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace win {

// The name that a new file or folder gets on disk: in UTF-8, and as on Windows without blanks and dots at its end.
std::string NewName(std::string_view name);

struct FoundPath {
  std::string native;
  bool exists = false;
};

// Finds native paths whose names may be spelled in another case than on disk, in the current file system. What it
// remembers only saves questions: every answer rests on the folders as they are now. For one thread.
class PathFinder {
 public:
  // `spelled` is a native path without `.`, repeated or trailing separators; only `.` and `/` themselves may be given.
  FoundPath Find(const std::string& spelled);

 private:
  // A folder that stood on disk under another spelling when it was last asked for.
  struct Misspelt {
    std::string native;
    const FolderNames* names = nullptr;
    std::uint64_t changes = 0;  // of all names, before the folder was searched
  };

  FoundPath FindInMisspelt(const std::string& folder, std::string_view name);

  std::unordered_map<std::string, Misspelt> misspelt_;
};

}  // namespace win
