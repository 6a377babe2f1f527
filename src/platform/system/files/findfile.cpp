#include "platform/system/files/findfile.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/wildcards.h"

#include <set>
#include <utility>

namespace win {

namespace {

// Windows' own paths end at 260 characters; below this depth there is nothing that it could have found.
constexpr std::size_t kMaxDepth = 256;

// Folders whose names begin with a dot are not walked, so what lies in one is reached by a link only.
bool IsWalkedBelow(const std::string& root, const std::string& path) {
  const std::string start = root.ends_with('/') ? root : root + "/";
  return path == root || (path.starts_with(start) && path.find("/.", root.size()) == std::string::npos);
}

}  // namespace

struct FolderReader::Walk {
  explicit Walk(const std::string& folder) : root(FollowLinks(folder)) {
    FileStatus status;
    for (std::string above = root;; above = FolderAbove(above)) {
      if (CurrentFileSystem().Status(above, status)) Enter(status.identity);
      if (above == "/") break;
    }
  }

  // False for a folder that was entered before, or that the walk is in.
  bool Enter(const FileIdentity& folder) { return entered.emplace(folder.device, folder.inode).second; }

  std::string root;
  std::set<std::pair<dev_t, ino_t>> entered;
};

FolderReader::FolderReader(const std::string& folder)
    : listing_(CurrentFileSystem().OpenFolder(NativePath(folder))), path_(NativePath(folder)) {}

FolderReader FolderReader::Descend(const FoundEntry& entry) {
  FolderReader below;
  if (!IsOpen() || depth_ >= kMaxDepth) return below;
  if (walk_ == nullptr) {
    walk_ = std::make_shared<Walk>(path_);
    path_ = walk_->root;
  }
  below.path_ = JoinPath(path_, entry.name);
  below.depth_ = depth_ + 1;
  below.walk_ = walk_;
  if (entry.isLink) {
    below.path_ = FollowLinks(below.path_);
    if (IsWalkedBelow(walk_->root, below.path_)) return below;
  }
  auto listing = listing_->Descend(entry.name);
  if (listing != nullptr && walk_->Enter(listing->Identity())) below.listing_ = std::move(listing);
  return below;
}

bool FolderReader::IsOpen() const { return listing_ != nullptr; }

bool FolderReader::Next(FoundEntry& entry) { return IsOpen() && listing_->Next(entry); }

namespace {

bool IsThere(const std::string& path) {
  if (path.empty() || EndsInSeparator(path)) return false;
  const std::string name = FileNameOf(path);
  if (!HasWildcards(name)) return FindNativePath(path).has_value();
  const std::string folder = path.substr(0, path.size() - name.size());
  FolderReader reader(folder.empty() ? "." : folder);
  for (FoundEntry entry; reader.Next(entry);)
    if (MatchesWildcards(entry.name, name)) return true;
  return false;
}

}  // namespace

bool FindFirstFileSucceeds(const std::string& path) {
  if (!OperationsAreObserved()) return IsThere(path);
  return ReportOperation(Operation::kLookFor, path, "", [&] { return IsThere(path); });
}

}  // namespace win
