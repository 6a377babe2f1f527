#pragma once

#include "platform/system/filesystem/filesystem.h"

#include <cstddef>
#include <memory>
#include <string>

// Enumeration of folders.
namespace win {

// Enumerates one folder: every entry, `.` and `..` included, hidden ones too, in the order of the file system. Memory
// does not grow with the number of entries.
class FolderReader {
 public:
  // `folder` is a Windows path; a trailing separator is allowed.
  explicit FolderReader(const std::string& folder);

  // A reader of one of its sub-folders, opened relative to this one: no path is looked up again. A walk from one reader
  // down enters each folder once, however often links lead to it, and under its own name where it lies below the first
  // reader's folder. So links to folders elsewhere are followed, but none to the first folder or to one above it: what
  // a player links in is a folder of files, never what the walk itself is in. The reader is not open for any of these.
  FolderReader Descend(const FoundEntry& entry);

  bool IsOpen() const;

  // Of its folder, native.
  const std::string& Path() const { return path_; }

  // False at the end, and at once when the folder could not be opened. `entry` is filled in place.
  bool Next(FoundEntry& entry);

 private:
  struct Walk;
  FolderReader() = default;

  std::unique_ptr<FolderListing> listing_;
  std::string path_;  // native; links on the way are resolved once there is a walk
  std::size_t depth_ = 0;
  std::shared_ptr<Walk> walk_;  // of all readers of one walk, made by the first descent
};

// The bare test for one path: a file or folder of this name, or, with wildcards in the last name, any entry that
// matches. An empty text, a single separator and a name with a trailing separator are not found; trailing blanks and
// dots are ignored.
bool FindFirstFileSucceeds(const std::string& path);

}  // namespace win
