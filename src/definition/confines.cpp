#include "definition/confines.h"

#include "platform/system/files/platformini.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"
#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "support/install.h"
#include "support/runstate.h"

#include <vector>

namespace varnik {

namespace {

std::vector<std::string> FoldersOf(const std::string& root) {
  std::vector<std::string> paths = win::PlatformValues("Allow");
  std::erase_if(paths, [](const std::string& path) { return !win::IsAbsolutePath(path); });
  for (const std::string& path : {root, InstallRoot()})
    if (!path.empty()) paths.push_back(path);
  if (!AppPath.empty()) paths.push_back(AppPath + "mods");
  std::vector<std::string> folders;
  for (const std::string& path : paths)
    folders.push_back(win::AbsoluteNativePath(path));
  return folders;
}

}  // namespace

Confines::Confines(const std::string& root) : files_(win::CurrentFileSystem(), FoldersOf(root)) {}

void Confines::DoEvents() {
  const win::ScopedFileSystem unconfined(files_.Base());
  win::DoEvents();
}

bool Confines::MayStart(const std::string& commandLine) {
  if (files_.Contains(win::ProgramOf(commandLine), true)) return true;
  return win::ReportOperation(win::Operation::kStart, commandLine, "",
                              [] { return win::FailWith(win::kErrorOutside); });
}

bool Confines::Contains(const std::string& path, bool followLink) {
  return files_.Contains(win::AbsoluteNativePath(path), followLink);
}

}  // namespace varnik
