#include "gameconfig/screenshots.h"

#include "platform/system/files/files.h"
#include "support/install.h"
#include "support/modfindfile.h"

namespace varnik {

std::vector<std::string> ListScreenshots() {
  if (InstallRoot().empty()) return {};
  FileSearchParams search{.Recurse = true, .Pattern = "*.bmp"};
  FileSearchResults found(1);
  const std::string folder = ScreenshotFile("");
  FindFiles(folder, search, found, false);
  std::vector<std::string> names;
  for (std::int32_t i = 1; i <= search.FoundCount; ++i)
    names.push_back(found[i].substr(folder.size()));
  return names;
}

std::string ScreenshotFile(const std::string& name) { return InstallRoot() + "screenshots\\" + name; }

void ClearBindata() {
  if (!InstallRoot().empty()) win::DeleteFiles(InstallRoot() + "data\\bindata\\*");
}

}  // namespace varnik
