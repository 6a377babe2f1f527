#include "platform/system/files/rehearsal.h"

#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"

#include <algorithm>

namespace win {

namespace {

// Below one of the program's folders, or on the way to it.
bool IsOwn(const std::string& native) {
  const std::string path = native + "/";
  const std::string folders[] = {ConfigFolder() + "/", AutostartFolder() + "/"};
  return std::any_of(std::begin(folders), std::end(folders), [&path](const std::string& folder) {
    return path.starts_with(folder) || folder.starts_with(path);
  });
}

}  // namespace

std::vector<PathDifference> Rehearsal::Differences(const std::string& folder) {
  const std::string base = WithSeparator(folder);
  const std::string native = files_.Resolved(NativePath(folder), true) + "/";
  std::vector<PathDifference> differences;
  for (const PathDifference& found : files_.Differences()) {
    std::string path = found.path;
    if (path.starts_with(native)) {
      path = path.substr(native.size());
      std::replace(path.begin(), path.end(), '/', '\\');
      path.insert(0, base);
    } else if (IsOwn(path)) {
      continue;
    }
    differences.push_back({std::move(path), found.kind});
  }
  return differences;
}

}  // namespace win
