#pragma once

#include "platform/system/files/findfile.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace varnik {

// Sets up a search and reads it back. One record and one result list may serve several searches, whose results add up.
struct FileSearchParams {
  bool Recurse = false;            // descend into sub-folders
  std::int32_t MatchSense = 1;     // 1 keeps the files that match, 0 those that do not
  std::int32_t FoundCount = 0;     // results so far
  std::int32_t SearchedCount = 0;  // directory entries looked at, sub-folders, `.` and `..` included
  std::string Pattern;
};

// Index 0 is unused; valid entries run from 1 to FoundCount, each the folder followed by the file name.
using FileSearchResults = std::vector<std::string>;

// Adds the files of `folder` (which ends in a separator) whose names match, in the order of the file system. Folders
// are never listed, and those whose names begin with a dot are never entered. Events are pumped once for each folder.
// With `stopAtFirst` nothing is done when FoundCount is above 0 already, and the search ends after the entry that gave
// the first result: when that entry is a folder, all matches below it are added, and the caller uses entry 1.
void FindFiles(const std::string& folder, FileSearchParams& params, FileSearchResults& results, bool stopAtFirst);

// `folder` is that of the entry and ends in a separator. False ends the visit.
using EntryVisitor = std::function<bool(const std::string& folder, const win::FoundEntry& entry)>;

// Shows every entry of `folder` in the order of FindFiles, a sub-folder after what it holds; for callers who look for
// many names at once. With `recurse` it enters the folders that FindFiles enters, each once whatever links there are
// (win::FolderReader), and pumps events as it does.
void VisitEntries(const std::string& folder, bool recurse, const EntryVisitor& visit);

// Full path of the first file below `folder`, sub-folders included, whose name matches; empty when there is none.
std::string FindFirstFile(const std::string& folder, const std::string& pattern);

// `text` up to its first NUL.
std::string TrimAtNul(const std::string& text);

bool MatchesPattern(const std::string& name, const std::string& pattern, const FileSearchParams& params);

// Full path of the first file of this name below the install root followed by each entry of SearchDirs from `firstDir`
// on and a backslash; the first folder with a hit ends the search. Empty when there is none.
std::string FindInSearchDirs(const std::string& fileName, std::size_t firstDir);

}  // namespace varnik
