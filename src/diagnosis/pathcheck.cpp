#include "diagnosis/pathcheck.h"

#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "platform/system/text/wildcards.h"
#include "support/install.h"

#include <algorithm>

namespace varnik {

namespace {

using enum Problem;

constexpr std::size_t kMaxPathLength = 259;  // of Windows, the install's own folder included

// By its text alone.
bool LeadsUp(const std::string& name) {
  int depth = 0;
  for (std::size_t begin = 0; begin <= name.size() && depth >= 0;) {
    const std::size_t end = std::min(name.find_first_of("\\/", begin), name.size());
    const std::string part = name.substr(begin, end - begin);
    depth += part == ".." ? -1 : part.empty() || part == "." ? 0 : 1;
    begin = end + 1;
  }
  return depth < 0;
}

}  // namespace

bool CheckInstallPath(const Place& place, const std::string& name) {
  if (name.size() > kMaxPathLength) {
    place.Report(kLongPath, Quoted(name) + " is longer than " + std::to_string(kMaxPathLength) + " characters");
    return false;
  }
  const bool hasRootDir = win::StartsWithNoCase(name, "@rootdir");
  if (hasRootDir || (name.size() > 1 && name[1] == ':')) {
    place.Report(kBadPath, Quoted(name) + " is taken for a name below the install: paths stand there without " +
                               (hasRootDir ? "`@rootdir`" : "a drive"));
    return false;
  }
  return !name.empty();
}

bool CheckConfined(const Place& place, const std::string& path, PathBase base, PathUse use, InstallCheck* install) {
  const bool isOwn = base == PathBase::kOwn;
  const bool leadsOut = isOwn || LeadsUp(path);
  const bool isDone =
      use == PathUse::kRead ||
      (install ? install->MayChange(isOwn ? path : InstallRoot() + path, use == PathUse::kWrite) : !leadsOut);
  if (!isDone)
    place.Report(kOutsideInstall, Quoted(path) + " leads out of the install: nothing there is changed or started");
  else if (leadsOut)
    place.Report(kLeadsOut, Quoted(path) + " leads out of the install: it fits one machine only");
  return isDone;
}

bool CheckSingleName(const Place& place, const std::string& name) {
  if (!win::HasWildcards(name)) return true;
  place.Report(kWildcard, Quoted(name) + " has wildcards, and one file is meant: nothing is done");
  return false;
}

}  // namespace varnik
