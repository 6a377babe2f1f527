#include "platform/system/filesystem/overlayfilesystem.h"

#include "platform/system/filesystem/nativepath.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <set>
#include <utility>

namespace win {

namespace {

// What lies below a folder has names in one stretch of an ordered map.
std::string FirstBelow(const std::string& folder) { return JoinPath(folder, ""); }
std::string EndBelow(const std::string& folder) {
  std::string end = FirstBelow(folder);
  ++end.back();
  return end;
}

std::optional<std::string> ContentOf(FileSystem& files, const std::string& path) {
  FileStatus status;
  const auto file = OpenFile(files, path, status);
  return file ? ReadUpTo(*file, status.size, std::numeric_limits<std::uint64_t>::max()) : std::nullopt;
}

}  // namespace

struct OverlayFileSystem::MemoryFile {
  std::string content;
  mode_t permissions = 0;
  timespec modified = {};
  FileIdentity identity;

  FileStatus Status() const {
    return {FileStatus::Kind::kFile, permissions, content.size(), geteuid(), modified, identity};
  }
};

class OverlayFileSystem::MemoryReader : public ReadableFile {
 public:
  explicit MemoryReader(std::shared_ptr<const MemoryFile> file) : file_(std::move(file)) {}

  ssize_t Read(char* buffer, std::size_t size) override {
    const std::size_t next = std::min(next_, file_->content.size());
    const std::size_t count = file_->content.copy(buffer, size, next);
    next_ = next + count;
    return static_cast<ssize_t>(count);
  }
  bool Status(FileStatus& status) override {
    status = file_->Status();
    return true;
  }

 private:
  std::shared_ptr<const MemoryFile> file_;
  std::size_t next_ = 0;
};

class OverlayFileSystem::MemoryWriter : public WritableFile {
 public:
  explicit MemoryWriter(std::shared_ptr<MemoryFile> file) : file_(std::move(file)) {}

  bool Append(std::string_view content) override {
    file_->content += content;
    return true;
  }
  bool Sync() override { return true; }
  bool Close() override { return true; }

 private:
  std::shared_ptr<MemoryFile> file_;
};

class OverlayFileSystem::Listing : public FolderListing {
 public:
  Listing(OverlayFileSystem& files, std::string folder, std::vector<FoundEntry> entries)
      : files_(files), folder_(std::move(folder)), entries_(std::move(entries)) {}

  bool Next(FoundEntry& entry) override {
    if (next_ == entries_.size()) return false;
    entry = entries_[next_++];
    return true;
  }
  std::unique_ptr<FolderListing> Descend(const std::string& name) override {
    return files_.OpenFolder(JoinPath(folder_, name));
  }
  FileIdentity Identity() override {
    FileStatus status;
    files_.StatusOf(folder_, true, status);
    return status.identity;
  }

 private:
  OverlayFileSystem& files_;
  std::string folder_;
  std::vector<FoundEntry> entries_;
  std::size_t next_ = 0;
};

OverlayFileSystem::OverlayFileSystem(FileSystem& base) : base_(base), lastInode_(std::numeric_limits<ino_t>::max()) {}

// Links are followed here, so that what is reached by two ways has one path.
std::string OverlayFileSystem::Resolved(const std::string& path, bool followLast) {
  constexpr char kNowhere[] = "/dev/null/none";
  const std::string name = path.substr(0, path.find('\0'));  // as the calls of the system end a name
  if (name.empty()) return kNowhere;
  return ResolveLinks(name, followLast, [this](const std::string& resolved) {
    const std::optional<Entry> entry = Find(resolved);
    return entry && !entry->backing.empty() ? base_.LinkTarget(entry->backing) : std::string();
  });
}

// Nothing for what is gone. What was never there leads to a path below at which there is nothing.
std::optional<OverlayFileSystem::Entry> OverlayFileSystem::Find(const std::string& resolved) const {
  for (std::string above = resolved; above.size() > 1; above = FolderAbove(above)) {
    const auto found = entries_.find(above);
    if (found == entries_.end()) continue;
    const Entry& entry = found->second;
    if (entry.gone) return std::nullopt;
    if (above.size() == resolved.size()) return entry;
    if (entry.backing.empty()) return std::nullopt;
    return Entry{.backing = entry.backing + resolved.substr(above.size())};
  }
  return Entry{.backing = resolved};
}

bool OverlayFileSystem::StatusOf(const std::string& resolved, bool followLink, FileStatus& status) {
  const std::optional<Entry> entry = Find(resolved);
  if (!entry) return FailWith(ENOENT);
  if (!entry->backing.empty())
    return followLink ? base_.Status(entry->backing, status) : base_.LinkStatus(entry->backing, status);
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

std::string OverlayFileSystem::LinkTarget(const std::string& path) {
  const std::optional<Entry> entry = Find(Resolved(path, false));
  return entry && !entry->backing.empty() ? base_.LinkTarget(entry->backing) : std::string();
}

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
  return entry->backing.empty() || base_.IsAllowed(entry->backing, W_OK | X_OK);
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

// A change back to what is below is none.
void OverlayFileSystem::Set(const std::string& resolved, Entry entry) {
  entries_.erase(resolved);
  const std::optional<Entry> without = Find(resolved);
  const bool isThere = without && !without->backing.empty() && base_.HasEntry(without->backing);
  const bool isSame = entry.gone ? !isThere : isThere && without->backing == entry.backing;
  if (!isSame) entries_[resolved] = std::move(entry);
  const auto around = names_.find(FolderAbove(resolved));
  if (around != names_.end() && ExistsAt(resolved))
    around->second.Add(LastName(resolved));
  else if (around != names_.end())
    around->second.Remove(LastName(resolved));
  names_.erase(resolved);
  names_.erase(names_.lower_bound(FirstBelow(resolved)), names_.lower_bound(EndBelow(resolved)));
}

std::unique_ptr<ReadableFile> OverlayFileSystem::OpenForReading(const std::string& path) {
  const std::string resolved = Resolved(path, true);
  const std::optional<Entry> entry = Find(resolved);
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
    Set(resolved, InMemory(resolved, mode == OpenMode::kAppend, permissions));
    memory = entries_.at(resolved).memory;
  }
  if (mode != OpenMode::kAppend) memory->content.clear();
  return std::make_unique<MemoryWriter>(std::move(memory));
}

bool OverlayFileSystem::MayMove(const std::string& from, const std::string& to) {
  FileStatus source;
  FileStatus folder;
  if (!StatusOf(from, false, source)) return false;
  if (!MayChange(FolderAbove(from)) || !MayChange(FolderAbove(to))) return false;
  if (to.starts_with(FirstBelow(from))) return FailWith(EINVAL);
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
  const Entry moved = *Find(source);
  // What had changed below a folder goes with it.
  std::map<std::string, Entry> inside;
  const auto first = entries_.lower_bound(FirstBelow(source));
  const auto last = entries_.lower_bound(EndBelow(source));
  for (auto it = first; it != last; ++it)
    inside.emplace(target + it->first.substr(source.size()), it->second);
  entries_.erase(first, last);
  Set(source, {.gone = true});
  Set(target, moved);
  for (auto& [path, entry] : inside)
    Set(path, std::move(entry));
  return true;
}

bool OverlayFileSystem::RemoveEntry(const std::string& resolved) {
  if (!MayChange(FolderAbove(resolved))) return false;
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
  if (EntriesIn(resolved).size() > 2) return FailWith(ENOTEMPTY);  // `.` and `..`
  return RemoveEntry(resolved);
}

bool OverlayFileSystem::SetPermissions(const std::string& path, mode_t permissions) {
  const std::string resolved = Resolved(path, true);
  if (!ExistsAt(resolved)) return FailWith(ENOENT);
  if (IsFolderAt(resolved)) return FailWith(EPERM);
  if (!Find(resolved)->memory) Set(resolved, InMemory(resolved, true, 0));
  entries_.at(resolved).memory->permissions = permissions;
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

// Those of the folder below in its order, then new ones.
std::vector<FoundEntry> OverlayFileSystem::EntriesIn(const std::string& resolved) {
  std::vector<FoundEntry> entries;
  std::set<std::string> seen;
  const std::string backing = Find(resolved)->backing;
  const auto listing = backing.empty() ? nullptr : base_.OpenFolder(backing);
  if (backing.empty()) entries = {{".", true}, {"..", true}};
  for (FoundEntry entry; listing && listing->Next(entry);) {
    const std::string path = JoinPath(resolved, entry.name);
    const auto changed = entries_.find(path);
    seen.insert(path);
    if (changed != entries_.end() && changed->second.gone) continue;
    if (changed != entries_.end() || entry.isLink) entry.isFolder = IsFolderAt(Resolved(path, true));
    entries.push_back(entry);
  }
  const std::string first = FirstBelow(resolved);
  const auto end = entries_.lower_bound(EndBelow(resolved));
  for (auto it = entries_.lower_bound(first); it != end; ++it) {
    const std::string name = it->first.substr(first.size());
    if (!it->second.gone && name.find('/') == std::string::npos && !seen.contains(it->first))
      entries.push_back({name, IsFolderAt(Resolved(it->first, true)), !LinkTarget(it->first).empty()});
  }
  return entries;
}

std::unique_ptr<FolderListing> OverlayFileSystem::OpenFolder(const std::string& path) {
  const std::string resolved = Resolved(path, true);
  if (IsFolderAt(resolved)) return std::make_unique<Listing>(*this, resolved, EntriesIn(resolved));
  FailWith(ENOTDIR);
  return nullptr;
}

const FolderNames* OverlayFileSystem::NamesIn(const std::string& folder) {
  const std::string resolved = Resolved(folder, true);
  if (const auto known = names_.find(resolved); known != names_.end()) return &known->second;
  if (!IsFolderAt(resolved)) return nullptr;
  FolderNames& names = names_[resolved];
  for (const FoundEntry& entry : EntriesIn(resolved))
    if (entry.name != "." && entry.name != "..") names.Add(entry.name);
  return &names;
}

// True unless both are regular files of the same content.
bool OverlayFileSystem::IsChanged(const std::string& resolved) {
  FileStatus here;
  FileStatus below;
  if (!StatusOf(resolved, true, here) || !base_.Status(resolved, below)) return true;
  if (!here.IsFile() || !below.IsFile() || here.size != below.size) return true;
  const std::optional<std::string> content = ContentOf(*this, resolved);
  return !content || content != ContentOf(base_, resolved);
}

std::vector<PathDifference> OverlayFileSystem::Differences() {
  using Kind = PathDifference::Kind;
  std::vector<PathDifference> differences;
  for (const auto& [path, entry] : entries_) {
    const bool isBelow = base_.HasEntry(path);
    if (entry.gone && isBelow) differences.push_back({path, Kind::kGone});
    if (!entry.gone && !isBelow) differences.push_back({path, Kind::kNew});
    if (!entry.gone && isBelow && IsChanged(path)) differences.push_back({path, Kind::kChanged});
  }
  return differences;
}

}  // namespace win
