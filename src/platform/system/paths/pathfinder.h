#pragma once

#include "platform/system/filesystem/folderindex.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace win {

// The name that a new file or folder gets on disk: in UTF-8, and as on Windows without blanks and dots at its end.
std::string NewName(std::string_view name);

// A Windows path in this system's form with the spelling kept: drive, separators, `.` and `..` resolved in the text, as
// Windows does. What exists under this name is what the path names.
std::string Respelled(std::string_view path);

struct FoundPath {
  std::string native;
  bool exists = false;
};

// Finds native paths whose names may be spelled in another case than on disk. What it remembers only saves questions:
// every answer rests on the folders as they are now. For one thread.
class PathFinder {
 public:
  // The names in a folder, good until the next question; nothing for what is no folder.
  using Names = std::function<const FolderNames*(const std::string& folder)>;

  PathFinder() = default;

  // Asks `names` instead of the disk.
  explicit PathFinder(Names names) : names_(std::move(names)) {}

  // `spelled` is a native path without `.`, repeated or trailing separators; only `.` and `/` themselves may be given.
  FoundPath Find(const std::string& spelled);

 private:
  // A folder that stood on disk under another spelling when it was last asked for.
  struct Misspelt {
    std::string native;
    const FolderNames* names = nullptr;
    std::uint64_t changes = 0;  // of the index, before the folder was searched
  };

  const FolderNames* NamesIn(const std::string& folder) { return names_ ? names_(folder) : index_.NamesIn(folder); }
  FoundPath FindInMisspelt(const std::string& folder, std::string_view name);
  const FolderNames* NamesIfUnchanged(const Misspelt& folder);
  void Remember(const std::string& folder, Misspelt misspelt);

  Names names_;
  FolderIndex index_{FolderIndex::Watching::kYes};
  std::unordered_map<std::string, Misspelt> misspelt_;
};

}  // namespace win
