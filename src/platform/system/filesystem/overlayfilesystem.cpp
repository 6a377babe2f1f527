#include "platform/system/filesystem/overlayfilesystem.h"

#include "platform/system/filesystem/memoryfile.h"
#include "platform/system/filesystem/nativepath.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <limits>
#include <set>
#include <utility>

namespace win {

namespace {

constexpr std::size_t kMaxLookedAt = 100'000;
constexpr std::size_t kMaxFollowed = 1'000;

bool IsBelow(const std::string& path, const std::string& folder) { return path.starts_with(JoinPath(folder, "")); }

// Takes the first name off a path; empty at its end.
std::string_view TakeName(std::string_view& path) {
  path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
  const std::string_view name = path.substr(0, path.find('/'));
  path.remove_prefix(name.size());
  return name;
}

struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
};

std::optional<std::string> ContentOf(FileSystem& files, const std::string& path) {
  FileStatus status;
  const auto file = OpenFile(files, path, status);
  return file ? ReadUpTo(*file, status.size, std::numeric_limits<std::uint64_t>::max()) : std::nullopt;
}

}  // namespace

struct OverlayFileSystem::Node {
  std::optional<Entry> change;  // nothing: what the folder above leads to
  std::unordered_map<std::string, std::shared_ptr<Node>, NameHash, std::equal_to<>> children;
  FolderNames names;                 // those of the children over those below
  std::optional<timespec> modified;  // when a child changed last

  const Node* Child(std::string_view name) const {
    const auto found = children.find(name);
    return found == children.end() ? nullptr : found->second.get();
  }
};

// What the file system below says of a path. It does not change.
struct OverlayFileSystem::Below {
  int error = 0;      // of the status
  FileStatus status;  // of a link itself
  std::optional<bool> mayChange;

  bool IsThere() const { return error == 0; }
  bool IsLink() const { return IsThere() && status.kind == FileStatus::Kind::kLink; }
};

// The entries of the folder below in its order, then new ones by name. A sub-folder without changes is listed by the
// file system below.
class OverlayFileSystem::Listing : public FolderListing {
 public:
  Listing(OverlayFileSystem& files, std::string folder, std::unique_ptr<FolderListing> below)
      : files_(files), folder_(std::move(folder)), node_(files.NodeAt(folder_)), below_(std::move(below)) {
    if (below_ == nullptr) new_ = {{".", true}, {"..", true}};
  }

  bool Next(FoundEntry& entry) override {
    while (below_ && !atEndBelow_ && below_->Next(entry)) {
      const Node* const child = node_ ? node_->Child(entry.name) : nullptr;
      const bool isChanged = child != nullptr && child->change;
      if (isChanged && child->change->gone) continue;
      if (isChanged || entry.isLink) entry = files_.EntryNamed(folder_, entry.name);
      return true;
    }
    if (!std::exchange(atEndBelow_, true)) FindNew();
    if (next_ == new_.size()) return false;
    entry = new_[next_++];
    return true;
  }

  std::unique_ptr<FolderListing> Descend(const std::string& name) override {
    const std::string path = JoinPath(folder_, name);
    const std::optional<Entry> entry = files_.Find(path);
    const bool isSame = below_ && entry && !files_.NodeAt(path) && !files_.LookBelow(entry->backing).IsLink();
    if (!isSame) return files_.OpenFolder(path);
    auto below = below_->Descend(name);
    return below ? std::make_unique<Listing>(files_, path, std::move(below)) : nullptr;
  }

  FileIdentity Identity() override {
    if (below_) return below_->Identity();
    FileStatus status;
    files_.StatusOf(folder_, true, status);
    return status.identity;
  }

 private:
  void FindNew() {
    const std::optional<Entry> folder = node_ ? files_.Find(folder_) : std::nullopt;
    if (!folder) return;
    const std::size_t old = new_.size();
    for (const auto& [name, child] : node_->children) {
      if (!child->change || child->change->gone) continue;
      if (below_ && files_.LookBelow(JoinPath(folder->backing, name)).IsThere()) continue;
      new_.push_back(files_.EntryNamed(folder_, name));
    }
    std::sort(new_.begin() + static_cast<std::ptrdiff_t>(old), new_.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
  }

  OverlayFileSystem& files_;
  std::string folder_;
  std::shared_ptr<const Node> node_;
  std::unique_ptr<FolderListing> below_;  // null: a folder that was made here
  bool atEndBelow_ = false;
  std::vector<FoundEntry> new_;
  std::size_t next_ = 0;
};

OverlayFileSystem::OverlayFileSystem(FileSystem& base)
    : base_(base), root_(std::make_shared<Node>()), lastInode_(std::numeric_limits<ino_t>::max()) {}

OverlayFileSystem::~OverlayFileSystem() = default;

// Links are followed here, so that what is reached by two ways has one path.
std::string OverlayFileSystem::Resolved(const std::string& path, bool followLast) {
  constexpr char kNowhere[] = "/dev/null/none";
  const std::string given = path.substr(0, path.find('\0'));  // as the calls of the system end a name
  if (given.empty()) return kNowhere;
  const std::string_view name = LastName(given);
  if (!given.starts_with('/') || name.empty() || name == "." || name == "..")
    return ResolveLinks(given, followLast, [this](const auto& resolved) { return TargetAt(resolved); });
  std::string resolved = JoinPath(Followed(FolderAbove(given)), name);
  return followLast && IsLinkAt(resolved) ? Followed(given) : resolved;
}

// As Resolved, for a folder or a link, which are asked for again and again.
const std::string& OverlayFileSystem::Followed(const std::string& path) {
  if (followed_.size() >= kMaxFollowed) followed_.clear();
  const auto [found, isNew] = followed_.try_emplace(path);
  if (isNew) found->second = ResolveLinks(path, true, [this](const auto& resolved) { return TargetAt(resolved); });
  return found->second;
}

std::shared_ptr<OverlayFileSystem::Node> OverlayFileSystem::NodeAt(std::string_view resolved) const {
  std::shared_ptr<Node> node = root_;
  for (auto name = TakeName(resolved); node && !name.empty(); name = TakeName(resolved)) {
    const auto child = node->children.find(name);
    node = child == node->children.end() ? nullptr : child->second;
  }
  return node;
}

OverlayFileSystem::Node& OverlayFileSystem::MakeNode(std::string_view resolved) {
  Node* node = root_.get();
  for (auto name = TakeName(resolved); !name.empty(); name = TakeName(resolved)) {
    std::shared_ptr<Node>& child = node->children[std::string(name)];
    if (child == nullptr) child = std::make_shared<Node>();
    node = child.get();
  }
  return *node;
}

// Removes the nodes on the way to this path that say nothing.
void OverlayFileSystem::Prune(std::string resolved) {
  for (; resolved.size() > 1; resolved = FolderAbove(resolved)) {
    const auto node = NodeAt(resolved);
    if (node && (node->change || !node->children.empty())) return;
    MakeNode(FolderAbove(resolved)).children.erase(std::string(LastName(resolved)));
  }
}

// Nothing for what is gone. What was never there leads to a path below at which there is nothing.
std::optional<OverlayFileSystem::Entry> OverlayFileSystem::Find(std::string_view resolved) const {
  const Node* node = root_.get();
  const Entry* nearest = nullptr;
  std::string_view rest = resolved;
  std::string_view behind = resolved;  // the nearest change
  for (auto name = TakeName(rest); !name.empty() && (node = node->Child(name)) != nullptr; name = TakeName(rest)) {
    if (!node->change) continue;
    nearest = &*node->change;
    behind = rest;
  }
  if (nearest == nullptr) return Entry{.backing = std::string(resolved)};
  if (nearest->gone) return std::nullopt;
  if (behind.empty()) return *nearest;
  if (nearest->backing.empty()) return std::nullopt;
  return Entry{.backing = nearest->backing + std::string(behind)};
}

OverlayFileSystem::Below& OverlayFileSystem::LookBelow(const std::string& backing) {
  if (below_.size() >= kMaxLookedAt) below_.clear();
  const auto [found, isNew] = below_.try_emplace(backing);
  if (isNew && !base_.LinkStatus(backing, found->second.status)) found->second.error = errno;
  return found->second;
}

// What the link at this path leads to, empty for anything else.
std::string OverlayFileSystem::TargetAt(const std::string& resolved) {
  return IsLinkAt(resolved) ? base_.LinkTarget(Find(resolved)->backing) : std::string();
}

bool OverlayFileSystem::IsLinkAt(const std::string& resolved) {
  const std::optional<Entry> entry = Find(resolved);
  return entry && !entry->backing.empty() && LookBelow(entry->backing).IsLink();
}

bool OverlayFileSystem::StatusOf(const std::string& resolved, bool followLink, FileStatus& status) {
  if (!StatusBeforeChanges(resolved, followLink, status)) return false;
  if (!status.IsFolder()) return true;
  const auto node = NodeAt(resolved);
  if (node && node->modified) status.modified = *node->modified;
  return true;
}

// Of a folder: before names in it changed.
bool OverlayFileSystem::StatusBeforeChanges(const std::string& resolved, bool followLink, FileStatus& status) {
  const std::optional<Entry> entry = Find(resolved);
  if (!entry) return FailWith(ENOENT);
  if (!entry->backing.empty()) {
    const Below& below = LookBelow(entry->backing);
    if (followLink && below.IsLink()) return FailWith(ELOOP);  // it has been followed as far as links are
    if (below.IsThere()) status = below.status;
    return below.IsThere() || FailWith(below.error);
  }
  if (entry->memory) {
    status = entry->memory->Status();
    return true;
  }
  // A folder made here is like the one around it.
  if (!StatusOf(FolderAbove(resolved), true, status)) return false;
  status.identity.inode = entry->inode;
  return true;
}

bool OverlayFileSystem::IsFileNamedAsFolder(const std::string& path) {
  return path.ends_with('/') && !IsFolderAt(Resolved(path, true));
}

bool OverlayFileSystem::Status(const std::string& path, FileStatus& status) {
  if (IsFileNamedAsFolder(path)) return FailWith(ENOTDIR);
  return StatusOf(Resolved(path, true), true, status);
}

bool OverlayFileSystem::LinkStatus(const std::string& path, FileStatus& status) {
  if (IsFileNamedAsFolder(path)) return FailWith(ENOTDIR);
  return StatusOf(Resolved(path, path.ends_with('/')), false, status);
}

std::string OverlayFileSystem::LinkTarget(const std::string& path) { return TargetAt(Resolved(path, false)); }

bool OverlayFileSystem::IsAllowed(const std::string& path, int how) {
  const std::optional<Entry> entry = Find(Resolved(path, true));
  if (!entry) return FailWith(ENOENT);
  if (!entry->backing.empty()) return base_.IsAllowed(entry->backing, how);
  const int owner = entry->memory ? static_cast<int>(entry->memory->permissions >> 6 & 7) : 7;
  return (owner & how) == how || FailWith(EACCES);
}

bool OverlayFileSystem::ExistsAt(const std::string& resolved) {
  FileStatus status;
  return StatusOf(resolved, false, status);
}

bool OverlayFileSystem::IsFolderAt(const std::string& resolved) {
  FileStatus status;
  return StatusOf(resolved, true, status) && status.IsFolder();
}

// Whether names may come and go in the folder.
bool OverlayFileSystem::MayChange(const std::string& folder) {
  const std::optional<Entry> entry = Find(folder);
  if (!entry || !IsFolderAt(folder)) return FailWith(ENOTDIR);
  if (entry->backing.empty()) return true;
  std::optional<bool>& mayChange = LookBelow(entry->backing).mayChange;
  if (!mayChange) mayChange = base_.IsAllowed(entry->backing, W_OK | X_OK);
  return *mayChange || FailWith(EACCES);
}

OverlayFileSystem::Entry OverlayFileSystem::InMemory(const std::string& resolved, bool withContent,
                                                     mode_t permissions) {
  auto memory = std::make_shared<MemoryFile>();
  FileStatus status;
  const bool exists = StatusOf(resolved, true, status);
  if (!exists) StatusOf(FolderAbove(resolved), true, status);
  if (exists && withContent) memory->content = ContentOf(*this, resolved).value_or("");
  memory->permissions = exists ? status.permissions : permissions & 0644;
  memory->modified = status.modified;
  memory->identity = {status.identity.device, --lastInode_};
  return {.memory = std::move(memory)};
}

void OverlayFileSystem::Set(const std::string& resolved, Entry entry) {
  auto node = std::make_shared<Node>();
  node->change = std::move(entry);
  Put(resolved, std::move(node));
}

// Takes the place of what had changed there and below. A change back to what is below is none.
void OverlayFileSystem::Put(const std::string& resolved, std::shared_ptr<Node> node) {
  Node& around = MakeNode(FolderAbove(resolved));
  clock_gettime(CLOCK_REALTIME, &around.modified.emplace());
  const std::string name(LastName(resolved));
  around.children.erase(name);
  const std::optional<Entry> without = Find(resolved);
  const bool isThere = without && !without->backing.empty() && LookBelow(without->backing).IsThere();
  const Entry& entry = *node->change;
  const bool isGone = entry.gone;
  const bool isSame = isGone ? !isThere : isThere && without->backing == entry.backing;
  if (isSame) node->change.reset();
  around.children[name] = std::move(node);
  if (isSame)
    around.names.Remove(name);
  else if (isGone)
    around.names.Hide(name);
  else
    around.names.Add(name);
  Prune(resolved);
}

std::unique_ptr<ReadableFile> OverlayFileSystem::OpenForReading(const std::string& path) {
  const std::string resolved = Resolved(path, true);
  const std::optional<Entry> entry = Find(resolved);
  if (IsLinkAt(resolved)) return FailWith(ELOOP), nullptr;
  if (entry && !entry->backing.empty() && !IsFileNamedAsFolder(path)) return base_.OpenForReading(entry->backing);
  if (entry && entry->memory && !path.ends_with('/')) return std::make_unique<MemoryReader>(entry->memory);
  errno = !entry ? ENOENT : entry->memory ? ENOTDIR : EISDIR;
  return nullptr;
}

std::unique_ptr<WritableFile> OverlayFileSystem::OpenForWriting(const std::string& path, OpenMode mode,
                                                                mode_t permissions) {
  const auto refuse = [](int error) { return errno = error, nullptr; };
  const bool isNew = mode == OpenMode::kExclusive || mode == OpenMode::kLocked;
  const std::string resolved = Resolved(path, !isNew);
  if (path.ends_with('/') || IsFolderAt(resolved)) return refuse(EISDIR);
  FileStatus status;
  const bool exists = StatusOf(resolved, false, status);
  if (exists && mode == OpenMode::kExclusive) return refuse(EEXIST);
  if (exists && status.kind == FileStatus::Kind::kLink) return refuse(ELOOP);
  if (exists ? !IsAllowed(resolved, W_OK) : !MayChange(FolderAbove(resolved))) return nullptr;
  std::shared_ptr<MemoryFile> memory = Find(resolved).value_or(Entry()).memory;
  if (!memory) {
    Entry changed = InMemory(resolved, mode == OpenMode::kAppend, permissions);
    memory = changed.memory;
    Set(resolved, std::move(changed));
  }
  if (mode != OpenMode::kAppend) memory->content.clear();
  return std::make_unique<MemoryWriter>(std::move(memory));
}

bool OverlayFileSystem::MayMove(const std::string& from, const std::string& to) {
  FileStatus source;
  FileStatus folder;
  if (!StatusOf(from, false, source)) return false;
  if (!MayChange(FolderAbove(from)) || !MayChange(FolderAbove(to))) return false;
  if (IsBelow(to, from)) return FailWith(EINVAL);
  if (!source.IsFolder()) return true;
  if (FolderAbove(from) != FolderAbove(to) && !MayChange(from)) return false;  // its `..` changes
  StatusOf(FolderAbove(to), true, folder);
  return source.identity.device == folder.identity.device || FailWith(EXDEV);
}

bool OverlayFileSystem::RenameTo(const std::string& from, const std::string& to, bool replace) {
  const std::string source = Resolved(from, false);
  const std::string target = Resolved(to, false);
  if (!MayMove(source, target)) return false;
  if (!replace && ExistsAt(target)) return FailWith(EEXIST);
  if (source == target) return true;
  FileStatus status;
  StatusOf(source, false, status);
  if (!status.IsFile()) followed_.clear();  // it is a link, or there may be one in it
  // What had changed below a folder goes with it.
  std::shared_ptr<Node> moved = NodeAt(source);
  if (moved == nullptr) moved = std::make_shared<Node>();
  moved->change = Find(source);
  Set(source, {.gone = true});
  Put(target, std::move(moved));
  return true;
}

bool OverlayFileSystem::RemoveEntry(const std::string& resolved) {
  if (!MayChange(FolderAbove(resolved))) return false;
  if (IsLinkAt(resolved)) followed_.clear();
  Set(resolved, {.gone = true});
  return true;
}

bool OverlayFileSystem::Remove(const std::string& path) {
  if (IsFileNamedAsFolder(path)) return FailWith(ENOTDIR);
  const std::string resolved = Resolved(path, false);
  FileStatus status;
  if (!StatusOf(resolved, false, status)) return false;
  return status.IsFolder() ? FailWith(EISDIR) : RemoveEntry(resolved);
}

bool OverlayFileSystem::MakeFolder(const std::string& path, mode_t) {
  const std::string resolved = Resolved(path, false);
  if (ExistsAt(resolved)) return FailWith(EEXIST);
  if (!MayChange(FolderAbove(resolved))) return false;
  Set(resolved, {.inode = --lastInode_});
  return true;
}

bool OverlayFileSystem::RemoveFolder(const std::string& path) {
  const std::string resolved = Resolved(path, false);
  FileStatus status;
  if (!StatusOf(resolved, false, status)) return false;
  if (!status.IsFolder()) return FailWith(ENOTDIR);
  FoundEntry entry;
  const auto listing = OpenFolder(resolved);
  for (int i = 0; listing && listing->Next(entry); ++i)
    if (i == 2) return FailWith(ENOTEMPTY);  // behind `.` and `..`
  return RemoveEntry(resolved);
}

bool OverlayFileSystem::SetPermissions(const std::string& path, mode_t permissions) {
  const std::string resolved = Resolved(path, true);
  if (!ExistsAt(resolved)) return FailWith(ENOENT);
  if (IsFolderAt(resolved)) return FailWith(EPERM);
  Entry entry = *Find(resolved);
  if (!entry.memory) entry = InMemory(resolved, true, 0);
  entry.memory->permissions = permissions;
  Set(resolved, std::move(entry));
  return true;
}

bool OverlayFileSystem::SetModified(const std::string& path, const timespec& time) {
  const std::optional<Entry> entry = Find(Resolved(path, true));
  if (entry && entry->memory) entry->memory->modified = time;
  return (entry && entry->memory) || FailWith(EPERM);
}

// No other process sees these files, so every lock is free.
std::unique_ptr<FileLock> OverlayFileSystem::TryLock(const std::string& path) {
  if (!MayChange(FolderAbove(Resolved(path, false)))) return nullptr;
  return std::make_unique<FileLock>();
}

std::unique_ptr<FileLock> OverlayFileSystem::TryLockFolder(const std::string& path) {
  if (IsFolderAt(Resolved(path, true))) return std::make_unique<FileLock>();
  FailWith(ENOTDIR);
  return nullptr;
}

FoundEntry OverlayFileSystem::EntryNamed(const std::string& folder, const std::string& name) {
  const std::string path = JoinPath(folder, name);
  return {name, IsFolderAt(Resolved(path, true)), IsLinkAt(path)};
}

std::unique_ptr<FolderListing> OverlayFileSystem::OpenFolder(const std::string& path) {
  const std::string resolved = Resolved(path, true);
  const std::optional<Entry> entry = Find(resolved);
  if (!IsFolderAt(resolved)) return FailWith(ENOTDIR), nullptr;
  auto below = entry->backing.empty() ? nullptr : base_.OpenFolder(entry->backing);
  if (below == nullptr && !entry->backing.empty()) return nullptr;
  return std::make_unique<Listing>(*this, resolved, std::move(below));
}

const FolderNames* OverlayFileSystem::NamesIn(const std::string& folder) {
  const std::string resolved = Resolved(folder, true);
  const std::optional<Entry> entry = Find(resolved);
  if (!entry || entry->memory) return nullptr;
  const FolderNames* const below = entry->backing.empty() ? nullptr : base_.NamesIn(entry->backing);
  const auto node = NodeAt(resolved);
  if (node == nullptr || (below == nullptr && !entry->backing.empty())) return below;
  node->names.LayOver(below);
  return &node->names;
}

// A folder that was removed and made again, and holds what it held. What changed in there is told by itself.
bool OverlayFileSystem::IsMadeAgain(const std::string& resolved) {
  const std::optional<Entry> entry = Find(resolved);
  const auto before = entry && entry->backing.empty() ? base_.OpenFolder(resolved) : nullptr;
  const auto now = before ? OpenFolder(resolved) : nullptr;
  std::set<std::string> gone, made;
  for (FoundEntry found; before && before->Next(found);)
    gone.insert(found.name);
  for (FoundEntry found; now && now->Next(found);)
    made.insert(found.name);
  return now && gone == made;
}

// True unless both are regular files of the same content, or links of the same target.
bool OverlayFileSystem::IsChanged(const std::string& resolved) {
  FileStatus here;
  FileStatus below;
  if (!StatusOf(resolved, false, here) || !base_.LinkStatus(resolved, below)) return true;
  if (here.kind != below.kind) return true;
  if (here.kind == FileStatus::Kind::kLink) return TargetAt(resolved) != base_.LinkTarget(resolved);
  if (here.IsFolder()) return !IsMadeAgain(resolved);
  if (!here.IsFile() || here.size != below.size) return true;
  const std::optional<std::string> content = ContentOf(*this, resolved);
  return !content || content != ContentOf(base_, resolved);
}

std::string OverlayFileSystem::PathBelow(const std::string& resolved) const {
  const std::optional<Entry> entry = Find(resolved);
  return entry ? entry->backing : "";
}

std::optional<std::string_view> OverlayFileSystem::ContentInMemory(const std::string& resolved) const {
  const auto node = NodeAt(resolved);
  if (!node || !node->change || !node->change->memory) return std::nullopt;
  return node->change->memory->content;
}

void OverlayFileSystem::AddChanges(
    const std::string& folder, const Node& node,
    const std::function<void(const std::string& path, const std::string& below)>& take) const {
  for (const auto& [name, child] : node.children) {
    const std::string path = JoinPath(folder, name);
    if (child->change) take(path, child->change->backing);
    AddChanges(path, *child, take);
  }
}

void OverlayFileSystem::ForEachChange(
    const std::function<void(const std::string& path, const std::string& below)>& take) const {
  AddChanges("/", *root_, take);
}

void OverlayFileSystem::AddDifferences(const std::string& folder, const Node& node,
                                       std::vector<PathDifference>& differences) {
  using Kind = PathDifference::Kind;
  for (const auto& [name, child] : node.children) {
    const std::string path = JoinPath(folder, name);
    if (const std::optional<Entry>& entry = child->change) {
      const bool isBelow = base_.HasEntry(path);
      if (entry->gone && isBelow) differences.push_back({path, Kind::kGone});
      if (!entry->gone && !isBelow) differences.push_back({path, Kind::kNew});
      if (!entry->gone && isBelow && IsChanged(path)) differences.push_back({path, Kind::kChanged});
    }
    AddDifferences(path, *child, differences);
  }
}

std::vector<PathDifference> OverlayFileSystem::Differences() {
  std::vector<PathDifference> differences;
  AddDifferences("/", *root_, differences);
  std::sort(differences.begin(), differences.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
  return differences;
}

}  // namespace win
