#include "maps/mapfiles.h"

#include "platform/system/files/findfile.h"
#include "platform/system/text/text.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"

#include <algorithm>
#include <string_view>

namespace varnik {
namespace {

// Names that match only themselves, in any case. A search reads a name as a pattern, and folds letters beyond ASCII by
// its own rules.
bool IsPlain(std::string_view name) {
  return !name.empty() && name.front() != ' ' && std::none_of(name.begin(), name.end(), [](char c) {
    return c == '*' || c == '?' || c == ';' || static_cast<unsigned char>(c) >= 0x80;
  });
}

bool EndsInInf(std::string_view name) {
  return name.size() >= 3 && win::EqualNoCase(name.substr(name.size() - 3), "inf");
}

// Of a name within one folder.
std::string KeyOf(std::size_t folder, const std::string& lowerName) {
  return lowerName + '\\' + std::to_string(folder);
}

}  // namespace

void MapFiles::ReadFolders() {
  if (isRead_) return;
  isRead_ = true;
  const FileSearchParams params;
  std::string here, relative;
  std::size_t number = 0;
  VisitEntries(root_, true, [&](const std::string& folder, const win::FoundEntry& entry) {
    if (folder != here) {
      here = folder;
      relative = folder.substr(root_.size());
      number = folders_.try_emplace(relative, folders_.size()).first->second;
    }
    if (isStopped_ && isStopped_()) return false;
    if (EndsInInf(entry.name)) {
      std::string name = win::LowerCase(entry.name);
      besides_.insert(KeyOf(number, name));
      if (!entry.isFolder) firstInf_.try_emplace(std::move(name), folder + entry.name);
    } else if (!entry.isFolder && MatchesPattern(entry.name, "*.bzn", params)) {
      maps_.push_back(relative + entry.name);
    }
    return true;
  });
}

std::vector<std::string> MapFiles::FindMaps() {
  ReadFolders();
  return std::move(maps_);
}

bool MapFiles::HasInf(const std::string& path) {
  ReadFolders();
  const std::size_t nameAt = path.rfind('\\') + 1;
  const std::string name = win::LowerCase(std::string_view(path).substr(nameAt));
  const auto folder = folders_.find(path.substr(0, nameAt));
  if (folder == folders_.end() || !IsPlain(name)) return FileExists(root_ + path);
  return besides_.contains(KeyOf(folder->second, name));
}

std::string MapFiles::FindFirstInf(const std::string& name) {
  if (!IsPlain(name)) return FindFirstFile(root_, name);
  ReadFolders();
  const auto first = firstInf_.find(win::LowerCase(name));
  return first == firstInf_.end() ? "" : first->second;
}

}  // namespace varnik
