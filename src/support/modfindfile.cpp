#include "support/modfindfile.h"

#include "platform/system/files/findfile.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/process/services.h"
#include "platform/system/text/wildcards.h"
#include "support/install.h"
#include "support/rememberedsearches.h"
#include "support/runstate.h"

namespace varnik {

namespace {

bool VisitFolder(win::FolderReader folder, const std::string& path, bool recurse, const EntryVisitor& visit) {
  win::DoEvents();
  for (win::FoundEntry entry; folder.Next(entry);) {
    if (entry.isFolder && recurse && !entry.name.starts_with('.') &&
        !VisitFolder(folder.Descend(entry), path + entry.name + "\\", recurse, visit))
      return false;
    if (!visit(path, entry)) return false;
  }
  return true;
}

}  // namespace

void VisitEntries(const std::string& folder, bool recurse, const EntryVisitor& visit) {
  VisitFolder(win::FolderReader(folder), folder, recurse, visit);
}

void FindFiles(const std::string& folder, FileSearchParams& params, FileSearchResults& results, bool stopAtFirst) {
  if (stopAtFirst && params.FoundCount > 0) return;
  VisitEntries(folder, params.Recurse, [&](const std::string& where, const win::FoundEntry& entry) {
    if (!entry.isFolder && MatchesPattern(entry.name, params.Pattern, params)) {
      results.resize(static_cast<std::size_t>(++params.FoundCount));
      results.push_back(where + entry.name);
    }
    ++params.SearchedCount;
    return !(stopAtFirst && params.FoundCount > 0 && where.size() == folder.size());
  });
}

std::string FindFirstFile(const std::string& folder, const std::string& pattern) {
  FileSearchParams params{.Recurse = true, .Pattern = pattern};
  FileSearchResults found(1);
  FindFiles(folder, params, found, true);
  return params.FoundCount > 0 ? found[1] : "";
}

std::string TrimAtNul(const std::string& text) { return text.substr(0, text.find('\0')); }

bool MatchesPattern(const std::string& name, const std::string& pattern, const FileSearchParams& params) {
  return static_cast<std::int32_t>(win::PathMatchSpec(name, pattern)) == params.MatchSense;
}

std::string FindInSearchDirs(const std::string& fileName, std::size_t firstDir) {
  std::string found;
  const auto find = RememberedSearches::AreAlive() ? RememberedSearches::FindFirstFile : FindFirstFile;
  win::ReportOperation(win::Operation::kSearch, fileName, "", [&] {
    for (std::size_t row = firstDir; !InstallRoot().empty() && found.empty() && row < SearchDirs.size(); ++row)
      found = find(InstallRoot() + SearchDirs[row] + "\\", fileName);
    return !found.empty();
  });
  return found;
}

}  // namespace varnik
