#include "platform/system/files/rehearsal.h"

#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"

#include <algorithm>

namespace win {

std::vector<PathDifference> Rehearsal::Differences(const std::string& folder) {
  const std::string base = WithSeparator(folder);
  const std::string native = files_.Resolved(NativePath(folder), true) + "/";
  const OwnFolders own;
  std::vector<PathDifference> differences;
  for (const PathDifference& found : files_.Differences()) {
    std::string path = found.path;
    if (path.starts_with(native)) {
      path = path.substr(native.size());
      std::replace(path.begin(), path.end(), '/', '\\');
      path.insert(0, base);
    } else if (own.Hold(path)) {
      continue;
    }
    differences.push_back({std::move(path), found.kind});
  }
  return differences;
}

}  // namespace win
