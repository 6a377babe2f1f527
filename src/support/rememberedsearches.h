#pragma once

#include <string>

namespace varnik {

// While one is alive, a search that repeats an earlier one lists only the folders that may have changed since, and
// gives what a new search would give: also when a file has come or gone, and from a rehearsal to what it rehearsed.
// They nest. For one thread.
class RememberedSearches {
 public:
  RememberedSearches();
  ~RememberedSearches();
  RememberedSearches(const RememberedSearches&) = delete;
  RememberedSearches& operator=(const RememberedSearches&) = delete;

  static bool AreAlive();

  // Full path of the first file below `folder` (which ends in a separator), sub-folders included, whose name matches;
  // empty when there is none. Only while one is alive.
  static std::string FindFirstFile(const std::string& folder, const std::string& pattern);
};

}  // namespace varnik
