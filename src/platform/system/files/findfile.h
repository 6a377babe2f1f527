#pragma once

#include <memory>
#include <string>

// Enumeration of folders.
namespace win {

struct FoundEntry {
  std::string name;       // as it stands on disk
  bool isFolder = false;  // a link to a folder counts as a folder
};

// Enumerates one folder: every entry, `.` and `..` included, hidden ones too, in the order of the file system. Memory
// does not grow with the number of entries.
class FolderReader {
 public:
  // `folder` is a Windows path; a trailing separator is allowed.
  explicit FolderReader(const std::string& folder);
  ~FolderReader();
  FolderReader(FolderReader&&) noexcept;
  FolderReader& operator=(FolderReader&&) noexcept;

  // A reader of one of its sub-folders, opened relative to this one: no path is looked up again.
  FolderReader Descend(const std::string& name) const;

  bool IsOpen() const;

  // False at the end, and at once when the folder could not be opened. `entry` is filled in place.
  bool Next(FoundEntry& entry);

 private:
  struct State;
  explicit FolderReader(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

// The bare test for one path: a file or folder of this name, or, with wildcards in the last name, any entry that
// matches. An empty text, a single separator and a name with a trailing separator are not found; trailing blanks and
// dots are ignored.
bool FindFirstFileSucceeds(const std::string& path);

}  // namespace win
