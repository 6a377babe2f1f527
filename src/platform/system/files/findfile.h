#pragma once

#include "platform/system/filesystem/filesystem.h"

#include <memory>
#include <string>
#include <vector>

// Enumeration of folders.
namespace win {

// Enumerates one folder: every entry, `.` and `..` included, hidden ones too, in the order of the file system. Memory
// does not grow with the number of entries.
class FolderReader {
 public:
  // `folder` is a Windows path; a trailing separator is allowed.
  explicit FolderReader(const std::string& folder);

  // A reader of one of its sub-folders, opened relative to this one: no path is looked up again. It is not open for a
  // folder that it is itself in, as a link may have it: that would be entered without end.
  FolderReader Descend(const std::string& name) const;

  bool IsOpen() const;

  // False at the end, and at once when the folder could not be opened. `entry` is filled in place.
  bool Next(FoundEntry& entry);

 private:
  FolderReader(std::unique_ptr<FolderListing> listing, const std::vector<FileIdentity>& above);

  std::unique_ptr<FolderListing> listing_;
  std::vector<FileIdentity> way_;  // the folders from the first reader down to this one
};

// The bare test for one path: a file or folder of this name, or, with wildcards in the last name, any entry that
// matches. An empty text, a single separator and a name with a trailing separator are not found; trailing blanks and
// dots are ignored.
bool FindFirstFileSucceeds(const std::string& path);

}  // namespace win
