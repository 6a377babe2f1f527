#include "diagnosis/pathcheck.h"

#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "platform/system/text/wildcards.h"

namespace varnik {

namespace {

using enum Problem;

constexpr std::size_t kMaxPathLength = 259;  // of Windows, the install's own folder included

bool LeadsUp(const std::string& name) {
  for (std::size_t at = name.find(".."); at != std::string::npos; at = name.find("..", at + 2)) {
    const bool begins = at == 0 || win::IsSeparator(name[at - 1]);
    const bool ends = at + 2 == name.size() || win::IsSeparator(name[at + 2]);
    if (begins && ends) return true;
  }
  return false;
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
  if (LeadsUp(name)) place.Report(kOutsideInstall, Quoted(name) + " leads up by `..`");
  return !name.empty();
}

bool CheckSingleName(const Place& place, const std::string& name) {
  if (!win::HasWildcards(name)) return true;
  place.Report(kWildcard, Quoted(name) + " has wildcards, and one file is meant: nothing is done");
  return false;
}

}  // namespace varnik
