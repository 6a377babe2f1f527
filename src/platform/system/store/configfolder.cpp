#include "platform/system/store/configfolder.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/paths/program.h"

#include <string>
#include <vector>

namespace win {

namespace {

constexpr mode_t kOthers = 077;

void RemoveUnlessWritten(const std::string& temporary) {
  const auto lock = CurrentFileSystem().TryLock(temporary);
  if (lock) CurrentFileSystem().Remove(temporary);
}

void TakeFromOthers(const std::string& path) {
  FileStatus status;
  if (CurrentFileSystem().Status(path, status) && status.IsFile() && (status.permissions & kOthers) != 0)
    CurrentFileSystem().SetPermissions(path, status.permissions & ~kOthers);
}

}  // namespace

void TidyConfigFolder() {
  const std::string folder = ConfigFolder();
  const auto listing = CurrentFileSystem().OpenFolder(folder);
  std::vector<std::string> names;  // first, since a folder that is changed while it is read may leave some out
  for (FoundEntry entry; listing && listing->Next(entry);)
    names.push_back(entry.name);
  for (const std::string& name : names) {
    if (IsTemporaryName(name))
      RemoveUnlessWritten(JoinPath(folder, name));
    else if (name.find(".json") != std::string::npos)
      TakeFromOthers(JoinPath(folder, name));
  }
}

}  // namespace win
