#include "platform/system/files/findfile.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/wildcards.h"

#include <algorithm>

namespace win {

FolderReader::FolderReader(const std::string& folder)
    : FolderReader(CurrentFileSystem().OpenFolder(NativePath(folder)), {}) {}

FolderReader::FolderReader(std::unique_ptr<FolderListing> listing, const std::vector<FileIdentity>& above)
    : way_(above) {
  // Windows' own paths end at 260 characters; below this depth there is nothing that it could have found.
  constexpr std::size_t kMaxDepth = 256;
  if (listing == nullptr || above.size() >= kMaxDepth) return;
  const FileIdentity identity = listing->Identity();
  if (std::find(above.begin(), above.end(), identity) != above.end()) return;
  way_.push_back(identity);
  listing_ = std::move(listing);
}

FolderReader FolderReader::Descend(const std::string& name) const {
  return FolderReader(IsOpen() ? listing_->Descend(name) : nullptr, way_);
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
