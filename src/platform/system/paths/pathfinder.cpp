#include "platform/system/paths/pathfinder.h"

#include "platform/system/filesystem/disk.h"
#include "platform/system/text/text.h"

#include <limits.h>

namespace win {

namespace {

bool Exists(const std::string& native) {
  struct stat status;
  return TheDisk().LinkStat(native, status) == 0;
}

std::string FolderAbove(const std::string& native) {
  const std::size_t separator = native.rfind('/');
  if (separator == std::string::npos) return ".";
  return native.substr(0, separator == 0 ? 1 : separator);
}

std::string_view LastName(std::string_view native) { return native.substr(native.rfind('/') + 1); }

std::string Join(const std::string& folder, std::string_view name) {
  if (folder == ".") return std::string(name);
  std::string native;
  native.reserve(folder.size() + 1 + name.size());
  native.append(folder);
  if (native.back() != '/') native += '/';
  return native.append(name);
}

std::string_view WithoutTrailingBlanksAndDots(std::string_view name) {
  const std::size_t last = name.find_last_not_of(" .");
  return last == std::string_view::npos ? name : name.substr(0, last + 1);
}

FoundPath FindAmong(const FolderNames& names, const std::string& folder, std::string_view name) {
  const std::string_view bare = WithoutTrailingBlanksAndDots(name);
  const std::string* found = names.Find(name);
  if (found == nullptr && bare.size() < name.size()) found = names.Find(bare);
  if (found == nullptr) return {Join(folder, NewName(name)), false};
  return {Join(folder, *found), true};
}

}  // namespace

std::string NewName(std::string_view name) { return Utf8FromBytes(WithoutTrailingBlanksAndDots(name)); }

FoundPath PathFinder::Find(const std::string& spelled) {
  if (spelled.size() >= PATH_MAX) return {spelled, false};
  const std::string folder = FolderAbove(spelled);
  const std::string_view name = LastName(spelled);
  if (const auto known = misspelt_.find(folder); known != misspelt_.end()) {
    const FolderNames* const names = NamesIfUnchanged(known->second);
    return names != nullptr ? FindAmong(*names, known->second.native, name) : FindInMisspelt(folder, name);
  }
  if (!misspelt_.contains(spelled) && Exists(spelled)) return {spelled, true};
  if (name.empty() || name == "." || name == "..") return {spelled, false};
  if (const FolderNames* const names = NamesIn(folder)) return FindAmong(*names, folder, name);
  return FindInMisspelt(folder, name);
}

FoundPath PathFinder::FindInMisspelt(const std::string& folder, std::string_view name) {
  const std::uint64_t changes = index_.Changes();
  const FoundPath found = Find(folder);
  const FolderNames* const names = found.exists ? NamesIn(found.native) : nullptr;
  misspelt_.erase(folder);
  if (!names_ && names != nullptr && found.native != folder) Remember(folder, {found.native, names, changes});
  if (names != nullptr) return FindAmong(*names, found.native, name);
  if (!found.exists) return {Join(found.native, NewName(name)), false};
  // A folder that may be entered but not read.
  std::string native = Join(found.native, name);
  const bool exists = Exists(native);
  return {std::move(native), exists};
}

// One question to the system stands for one to every folder on the way: the folder is still there, and none has
// changed.
const FolderNames* PathFinder::NamesIfUnchanged(const Misspelt& folder) {
  const FolderNames* const names = index_.NamesIn(folder.native);
  return names == folder.names && index_.Changes() == folder.changes ? names : nullptr;
}

void PathFinder::Remember(const std::string& folder, Misspelt misspelt) {
  constexpr std::size_t kMost = 1'000;
  if (misspelt_.size() >= kMost) misspelt_.clear();
  misspelt_.emplace(folder, std::move(misspelt));
}

}  // namespace win
