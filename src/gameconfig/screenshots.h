#pragma once

#include <string>
#include <vector>

// The small services for the selected install: the game's screenshots and its cache folder.
namespace varnik {

// Names below `screenshots\`, a sub-folder in front where there is one, in the order of the file system. Empty with no
// install.
std::vector<std::string> ListScreenshots();

// Full path of one of them.
std::string ScreenshotFile(const std::string& name);

// Deletes the files of `data\bindata\`, never its sub-folders, and skips a file that cannot be deleted.
void ClearBindata();

}  // namespace varnik
