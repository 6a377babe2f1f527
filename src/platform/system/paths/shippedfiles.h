#pragma once

#include <string>

namespace win {

// Keeps the files that are shipped with the program in a folder of the user's. Paths are native.
//
// At first everything is copied, `marker` last: the folder is full once it holds that. When the program has another
// version than the one that was here before, new files are added, those that the user has not touched follow, changed
// ones stay and are named on standard error, and those that the user has deleted stay away, but for `marker`. A file
// that is no longer shipped stays. What was shipped is recorded in `folder`, and with the same version nothing else is
// read.
void FollowShippedFiles(const std::string& folder, const std::string& shipped, const std::string& marker,
                        const std::string& version);

}  // namespace win
