#pragma once

#include "platform/system/files/findfile.h"

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// The maps of an install and their .inf files, for one load of the catalogue. All that the load would search the whole
// install for is answered from one pass over its folders, made when it is first needed: each name with the file that
// its search would find first. What changes on disk after that pass is not seen, so every load makes its own.
namespace varnik {

class MapFiles {
 public:
  // `isStopped` may be empty. Once it says true the pass ends, and what it would have seen counts as not there.
  explicit MapFiles(std::string root, std::function<bool()> isStopped = {})
      : root_(std::move(root)), isStopped_(std::move(isStopped)) {}

  // Of the install that is loaded. Events run during a load, after which it need not be the selected one.
  const std::string& Root() const { return root_; }

  // Paths of all maps relative to the root, in the order of a search.
  std::vector<std::string> FindMaps();

  // Whether there is a file or folder of this path, relative to the root, whose name ends in inf.
  bool HasInf(const std::string& path);

  // Full path of the .inf that a search of the install for this name finds first; empty when there is none.
  std::string FindFirstInf(const std::string& name);

 private:
  void ReadFolders();

  std::string root_;
  std::function<bool()> isStopped_;
  bool isRead_ = false;
  std::vector<std::string> maps_;
  std::unordered_map<std::string, std::string> firstInf_;  // name in lower case to full path
  std::unordered_map<std::string, std::size_t> folders_;   // relative to the root, as spelled on disk, to its number
  std::unordered_set<std::string> besides_;                // what ends in inf, by name in lower case and folder
};

}  // namespace varnik
