#include "platform/system/paths/pathfinder.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/text/text.h"

#include <limits.h>

namespace win {

namespace {

constexpr std::size_t kMaxMisspelt = 1'000;

std::string_view WithoutTrailingBlanksAndDots(std::string_view name) {
  const std::size_t last = name.find_last_not_of(" .");
  return last == std::string_view::npos ? name : name.substr(0, last + 1);
}

FoundPath FindAmong(const FolderNames& names, const std::string& folder, std::string_view name) {
  const std::string_view bare = WithoutTrailingBlanksAndDots(name);
  const std::string* found = names.Find(name);
  if (found == nullptr && bare.size() < name.size()) found = names.Find(bare);
  if (found == nullptr) return {JoinPath(folder, NewName(name)), false};
  return {JoinPath(folder, *found), true};
}

}  // namespace

std::string NewName(std::string_view name) { return Utf8FromBytes(WithoutTrailingBlanksAndDots(name)); }

FoundPath PathFinder::Find(const std::string& spelled) {
  if (spelled.size() >= PATH_MAX) return {spelled, false};
  const std::string folder = FolderAbove(spelled);
  const std::string_view name = LastName(spelled);
  if (const auto known = misspelt_.find(folder); known != misspelt_.end()) {
    // One question to the system stands for one to every folder on the way: the folder is still there, and none has
    // changed. The question itself may find a change.
    FileSystem& files = CurrentFileSystem();
    const Misspelt& last = known->second;
    const FolderNames* const names = files.NamesIn(last.native);
    const bool unchanged = names != nullptr && names == last.names && files.NameChanges() == last.changes;
    return unchanged ? FindAmong(*names, last.native, name) : FindInMisspelt(folder, name);
  }
  if (!misspelt_.contains(spelled) && CurrentFileSystem().HasEntry(spelled)) return {spelled, true};
  if (name.empty() || name == "." || name == "..") return {spelled, false};
  if (const FolderNames* const names = CurrentFileSystem().NamesIn(folder)) return FindAmong(*names, folder, name);
  return FindInMisspelt(folder, name);
}

FoundPath PathFinder::FindInMisspelt(const std::string& folder, std::string_view name) {
  FileSystem& files = CurrentFileSystem();
  const std::uint64_t changes = files.NameChanges();
  const FoundPath found = Find(folder);
  const FolderNames* const names = found.exists ? files.NamesIn(found.native) : nullptr;
  misspelt_.erase(folder);
  if (changes != 0 && names != nullptr && found.native != folder) {
    if (misspelt_.size() >= kMaxMisspelt) misspelt_.clear();
    misspelt_.emplace(folder, Misspelt{found.native, names, changes});
  }
  if (names != nullptr) return FindAmong(*names, found.native, name);
  if (!found.exists) return {JoinPath(found.native, NewName(name)), false};
  // A folder that may be entered but not read.
  std::string native = JoinPath(found.native, name);
  const bool exists = files.HasEntry(native);
  return {std::move(native), exists};
}

}  // namespace win
