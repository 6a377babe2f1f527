#include "maps/mapfiles.h"

#include <algorithm>
#include <string_view>

#include "platform/system/findfile.h"
#include "platform/system/text.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"

namespace varnik {
namespace {

// Names that stand for no other than themselves, whatever the case of their letters. A search takes a name for a
// pattern and folds letters beyond ASCII by rules of its own.
bool IsPlain(std::string_view name) {
  return !name.empty() && name.front() != ' ' && std::none_of(name.begin(), name.end(), [](char c) {
    return c == '*' || c == '?' || c == ';' || static_cast<unsigned char>(c) >= 0x80;
  });
}

std::string SearchInstall(const std::string& root, const std::string& pattern) {
  FileSearchParams params;
  params.Recurse = true;
  params.Pattern = pattern;
  FileSearchResults found(1);
  FindFiles(root, params, found, true);
  return params.FoundCount > 0 ? found[1] : "";
}

}  // namespace

void MapFiles::Walk() {
  if (walked_) return;
  walked_ = true;
  const FileSearchParams params;
  VisitEntries(root_, true, [&](const std::string& folder, const win::FoundEntry& entry) {
    const std::string relative = folder.substr(root_.size());
    if (entry.name == ".")
      folders_.insert(relative);
    else if (!entry.isFolder && MatchesPattern(entry.name, "*.bzn", params))
      maps_.push_back(relative + entry.name);
    else if (const std::string lower = win::LowerCase(entry.name); lower.ends_with("inf"))
      NoteInf(folder + entry.name, relative, lower, entry.isFolder);
    return true;
  });
}

void MapFiles::NoteInf(const std::string& path, const std::string& folder, const std::string& lower, bool isFolder) {
  besides_.insert(folder + lower);
  if (!isFolder) firstInf_.try_emplace(lower, path);
}

std::vector<std::string> MapFiles::FindMaps() {
  Walk();
  return std::move(maps_);
}

bool MapFiles::HasInf(const std::string& path) {
  const std::size_t nameAt = path.rfind('\\') + 1;
  const std::string folder = path.substr(0, nameAt);
  const std::string name = path.substr(nameAt);
  Walk();
  if (!IsPlain(name) || !folders_.contains(folder)) return FileExists(root_ + path);
  return besides_.contains(folder + win::LowerCase(name));
}

std::string MapFiles::FindFirstInf(const std::string& name) {
  if (!IsPlain(name)) return SearchInstall(root_, name);
  Walk();
  const auto first = firstInf_.find(win::LowerCase(name));
  return first == firstInf_.end() ? "" : first->second;
}

}  // namespace varnik
