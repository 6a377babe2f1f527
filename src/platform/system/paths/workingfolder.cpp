#include "platform/system/paths/workingfolder.h"

#include "platform/system/paths/paths.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace win {

std::string WorkingFolder() {
  std::error_code error;
  const std::string native = std::filesystem::current_path(error).string();
  return error ? "" : WithSeparator(WindowsPathFromNative(native));
}

ScopedWorkingFolder::ScopedWorkingFolder(const std::string& folder)
    : before_(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {
  if (before_.IsOpen() && chdir(NativePath(folder).c_str()) != 0) before_.Close();
}

ScopedWorkingFolder::~ScopedWorkingFolder() {
  // Where the folder before cannot be entered any more, there is none to return to.
  if (IsEntered() && fchdir(before_.Get()) != 0) return;
}

}  // namespace win
