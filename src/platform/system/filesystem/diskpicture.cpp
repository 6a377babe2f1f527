#include "platform/system/filesystem/diskpicture.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <set>
#include <utility>

namespace win {

namespace {

DiskPicture* inUse = nullptr;

int Refused(int error) {
  errno = error;
  return -1;
}

std::string FolderAbove(const std::string& resolved) {
  const std::size_t separator = resolved.rfind('/');
  return separator == 0 ? "/" : resolved.substr(0, separator);
}

std::string InFolder(const std::string& folder, const std::string& name) {
  return folder == "/" ? "/" + name : folder + "/" + name;
}

// What lies below a folder has names in one stretch of an ordered map.
std::string Below(const std::string& folder) { return InFolder(folder, ""); }
std::string BehindAllBelow(const std::string& folder) {
  std::string behind = Below(folder);
  ++behind.back();
  return behind;
}

bool ExistsOnDisk(const std::string& resolved) {
  struct stat status;
  return lstat(resolved.c_str(), &status) == 0;
}

std::string ContentOf(const std::string& native) {
  const Descriptor file(open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  std::string content;
  char piece[64 * 1024];
  while (file.IsOpen()) {
    const ssize_t count = ReadSome(file.Get(), piece, sizeof piece);
    if (count <= 0) break;
    content.append(piece, static_cast<std::size_t>(count));
  }
  return content;
}

}  // namespace

DiskPicture::DiskPicture()
    : finder_([this](const std::string& folder) { return NamesIn(folder); }), outer_(std::exchange(inUse, this)) {}

DiskPicture::~DiskPicture() { inUse = outer_; }

DiskPicture* DiskPicture::InUse() { return inUse; }

// Links are followed here, so that what is reached by two ways has one path.
std::string DiskPicture::Resolved(const std::string& native, bool followLast) {
  constexpr int kMostLinks = 40;
  constexpr char kNowhere[] = "/dev/null/none";
  std::error_code ignored;
  std::string rest = native.substr(0, native.find('\0'));  // as the system's calls end a name
  if (rest.empty()) return kNowhere;
  if (!rest.starts_with('/')) rest.insert(0, std::filesystem::current_path(ignored).string() + "/");
  std::string done;
  for (int links = 0; !rest.empty();) {
    const std::size_t end = std::min(rest.find('/'), rest.size());
    const std::string name = rest.substr(0, end);
    rest.erase(0, std::min(rest.find_first_not_of('/', end), rest.size()));
    if (name.empty() || name == ".") continue;
    if (name == "..") {
      done.resize(std::min(done.rfind('/'), done.size()));
      continue;
    }
    const std::string next = done + "/" + name;
    const std::optional<Entry> entry = rest.empty() && !followLast ? std::nullopt : Find(next);
    const std::string target = entry && !entry->memory ? LinkTarget(entry->lies) : "";
    if (target.empty() || ++links > kMostLinks) {
      done = next;
    } else {
      if (target.starts_with('/')) done.clear();
      rest = target + "/" + rest;
    }
  }
  return done.empty() ? "/" : done;
}

// Nothing for what is gone; what there never was leads to a place on the disk where nothing lies.
std::optional<DiskPicture::Entry> DiskPicture::Find(const std::string& resolved) const {
  for (std::string above = resolved; above.size() > 1; above = FolderAbove(above)) {
    const auto found = entries_.find(above);
    if (found == entries_.end()) continue;
    const Entry& entry = found->second;
    if (entry.gone) return std::nullopt;
    if (above.size() == resolved.size()) return entry;
    if (entry.memory || entry.lies.empty()) return std::nullopt;
    return Entry{false, entry.lies + resolved.substr(above.size())};
  }
  return Entry{false, resolved};
}

int DiskPicture::StatusOf(const std::string& resolved, bool followLink, struct stat& status) {
  const std::optional<Entry> entry = Find(resolved);
  if (!entry) return Refused(ENOENT);
  if (!entry->lies.empty())
    return followLink || entry->memory ? stat(entry->lies.c_str(), &status) : lstat(entry->lies.c_str(), &status);
  // A folder made here is like the one around it, and a file of its own.
  const int result = StatusOf(FolderAbove(resolved), true, status);
  status.st_ino = std::numeric_limits<ino_t>::max() - static_cast<ino_t>(resolved.size());
  return result;
}

bool DiskPicture::IsNoFolderNamedAsOne(const std::string& native) {
  return native.ends_with('/') && !IsFolder(Resolved(native, true));
}

int DiskPicture::Stat(const std::string& native, struct stat& status) {
  if (IsNoFolderNamedAsOne(native)) return Refused(ENOTDIR);
  return StatusOf(Resolved(native, true), true, status);
}

int DiskPicture::LinkStat(const std::string& native, struct stat& status) {
  if (IsNoFolderNamedAsOne(native)) return Refused(ENOTDIR);
  return StatusOf(Resolved(native, native.ends_with('/')), false, status);
}

std::string DiskPicture::ReadLink(const std::string& native) {
  const std::optional<Entry> entry = Find(Resolved(native, false));
  return entry && !entry->memory && !entry->lies.empty() ? LinkTarget(entry->lies) : std::string();
}

bool DiskPicture::Exists(const std::string& resolved) {
  struct stat status;
  return StatusOf(resolved, false, status) == 0;
}

bool DiskPicture::IsFolder(const std::string& resolved) {
  struct stat status;
  return StatusOf(resolved, true, status) == 0 && S_ISDIR(status.st_mode);
}

// With errno set when names may not come and go in the folder.
bool DiskPicture::MayChange(const std::string& folder) {
  const std::optional<Entry> entry = Find(folder);
  if (!entry || !IsFolder(folder)) return FailWith(ENOTDIR);
  return entry->lies.empty() || access(entry->lies.c_str(), W_OK | X_OK) == 0;
}

DiskPicture::Entry DiskPicture::InMemory(const std::string& resolved, bool withContent) {
  auto memory = std::make_shared<Descriptor>(memfd_create("picture", MFD_CLOEXEC));
  struct stat status;
  const bool exists = StatusOf(resolved, true, status) == 0;
  if (exists && withContent) WriteAll(memory->Get(), ContentOf(Find(resolved)->lies));
  fchmod(memory->Get(), exists ? status.st_mode & 07777 : 0644);
  return {false, "/proc/self/fd/" + std::to_string(memory->Get()), std::move(memory)};
}

// A change that leads back to what the disk holds is none.
void DiskPicture::Set(const std::string& resolved, Entry entry) {
  entries_.erase(resolved);
  const std::optional<Entry> without = Find(resolved);
  const bool isThere = without && !without->memory && !without->lies.empty() && ExistsOnDisk(without->lies);
  const bool isSame = entry.gone ? !isThere : isThere && without->lies == entry.lies;
  if (!isSame) entries_[resolved] = std::move(entry);
  UpdateNames(resolved);
}

void DiskPicture::UpdateNames(const std::string& resolved) {
  const auto around = names_.find(FolderAbove(resolved));
  const std::string name = resolved.substr(resolved.rfind('/') + 1);
  if (around != names_.end() && Exists(resolved))
    around->second.Add(name);
  else if (around != names_.end())
    around->second.Remove(name);
  names_.erase(resolved);
  names_.erase(names_.lower_bound(Below(resolved)), names_.lower_bound(BehindAllBelow(resolved)));
}

int DiskPicture::Open(const std::string& native, int flags, mode_t) {
  if (IsNoFolderNamedAsOne(native)) return Refused(EISDIR);
  const std::string resolved = Resolved(native, (flags & O_NOFOLLOW) == 0);
  std::optional<Entry> entry = Find(resolved);
  const bool isReading = (flags & O_ACCMODE) == O_RDONLY;
  // Something that can be flushed like a folder, and is no file.
  if (isReading && entry && entry->lies.empty()) return eventfd(0, EFD_CLOEXEC);
  if (isReading) return entry ? open(entry->lies.c_str(), flags) : Refused(ENOENT);
  if (IsFolder(resolved)) return Refused(EISDIR);
  const bool exists = Exists(resolved);
  if (!exists && (flags & O_CREAT) == 0) return Refused(ENOENT);
  if (!exists && !MayChange(FolderAbove(resolved))) return -1;
  if (exists && access(entry->lies.c_str(), W_OK) != 0) return -1;
  if (!exists || !entry->memory) Set(resolved, InMemory(resolved, (flags & O_TRUNC) == 0));
  return open(Find(resolved)->lies.c_str(), flags & ~(O_CREAT | O_EXCL | O_NOFOLLOW));
}

bool DiskPicture::MayMove(const std::string& from, const std::string& to) {
  struct stat source;
  struct stat folder;
  if (StatusOf(from, false, source) != 0) return false;
  if (!MayChange(FolderAbove(from)) || !MayChange(FolderAbove(to))) return false;
  if (to.starts_with(Below(from))) return FailWith(EINVAL);
  if (!S_ISDIR(source.st_mode)) return true;
  if (FolderAbove(from) != FolderAbove(to) && !MayChange(from)) return false;  // its `..` changes
  StatusOf(FolderAbove(to), true, folder);
  return source.st_dev == folder.st_dev || FailWith(EXDEV);
}

int DiskPicture::Rename(const std::string& from, const std::string& to, unsigned flags) {
  const std::string source = Resolved(from, false);
  const std::string target = Resolved(to, false);
  if (!MayMove(source, target)) return -1;
  if (Exists(target) && (flags & RENAME_NOREPLACE)) return Refused(EEXIST);
  Move(source, target);
  return 0;
}

// What had changed below a folder goes with it.
void DiskPicture::Move(const std::string& from, const std::string& to) {
  const Entry moved = *Find(from);
  std::map<std::string, Entry> inside;
  const auto first = entries_.lower_bound(Below(from));
  const auto last = entries_.lower_bound(BehindAllBelow(from));
  for (auto it = first; it != last; ++it)
    inside.emplace(to + it->first.substr(from.size()), it->second);
  entries_.erase(first, last);
  Set(from, {true, ""});
  Set(to, moved);
  for (auto& [path, entry] : inside)
    Set(path, std::move(entry));
}

int DiskPicture::Unlink(const std::string& native) {
  if (IsNoFolderNamedAsOne(native)) return Refused(ENOTDIR);
  const std::string resolved = Resolved(native, false);
  if (!Exists(resolved)) return Refused(ENOENT);
  struct stat status;
  if (StatusOf(resolved, false, status) == 0 && S_ISDIR(status.st_mode)) return Refused(EISDIR);
  if (!MayChange(FolderAbove(resolved))) return -1;
  Set(resolved, {true, ""});
  return 0;
}

int DiskPicture::MakeFolder(const std::string& native, mode_t) {
  const std::string resolved = Resolved(native, false);
  if (Exists(resolved)) return Refused(EEXIST);
  if (!MayChange(FolderAbove(resolved))) return -1;
  Set(resolved, {false, ""});
  return 0;
}

int DiskPicture::RemoveFolder(const std::string& native) {
  const std::string resolved = Resolved(native, false);
  struct stat status;
  if (StatusOf(resolved, false, status) != 0) return -1;
  if (!S_ISDIR(status.st_mode)) return Refused(ENOTDIR);
  if (EntriesIn(resolved)->size() > 2) return Refused(ENOTEMPTY);  // `.` and `..`
  if (!MayChange(FolderAbove(resolved))) return -1;
  Set(resolved, {true, ""});
  return 0;
}

int DiskPicture::ChangeMode(const std::string& native, mode_t mode) {
  const std::string resolved = Resolved(native, true);
  if (!Exists(resolved)) return Refused(ENOENT);
  if (IsFolder(resolved)) return Refused(EPERM);
  if (!Find(resolved)->memory) Set(resolved, InMemory(resolved, true));
  return fchmod(Find(resolved)->memory->Get(), mode);
}

std::optional<std::vector<FoundEntry>> DiskPicture::EntriesIn(const std::string& folder) {
  const std::string resolved = Resolved(folder, true);
  if (!IsFolder(resolved)) return std::nullopt;
  std::vector<FoundEntry> found;
  std::set<std::string> seen;
  const std::string lies = Find(resolved)->lies;
  DIR* const stream = lies.empty() ? nullptr : opendir(lies.c_str());
  for (const dirent* next = nullptr; stream != nullptr && (next = readdir(stream)) != nullptr;) {
    const std::string path = InFolder(resolved, next->d_name);
    const auto changed = entries_.find(path);
    const bool isKnown = changed == entries_.end() && next->d_type != DT_LNK && next->d_type != DT_UNKNOWN;
    if (isKnown)
      found.push_back({next->d_name, next->d_type == DT_DIR});
    else if (changed == entries_.end() || !changed->second.gone)
      found.push_back({next->d_name, IsFolder(Resolved(path, true))});
    seen.insert(path);
  }
  if (stream != nullptr) closedir(stream);
  if (lies.empty()) found = {{".", true}, {"..", true}};
  const auto behind = entries_.lower_bound(BehindAllBelow(resolved));
  for (auto it = entries_.lower_bound(Below(resolved)); it != behind; ++it) {
    const std::string name = it->first.substr(Below(resolved).size());
    if (!it->second.gone && name.find('/') == std::string::npos && !seen.contains(it->first))
      found.push_back({name, IsFolder(Resolved(it->first, true))});
  }
  return found;
}

const FolderNames* DiskPicture::NamesIn(const std::string& folder) {
  const std::string resolved = Resolved(folder, true);
  if (const auto known = names_.find(resolved); known != names_.end()) return &known->second;
  const auto entries = EntriesIn(resolved);
  if (!entries) return nullptr;
  FolderNames& names = names_[resolved];
  for (const FoundEntry& entry : *entries)
    if (entry.name != "." && entry.name != "..") names.Add(entry.name);
  return &names;
}

bool DiskPicture::IsSame(const std::string& resolved, const Entry& entry) {
  struct stat here;
  struct stat there;
  if (StatusOf(resolved, true, here) != 0 || stat(resolved.c_str(), &there) != 0) return false;
  if (!S_ISREG(here.st_mode) || !S_ISREG(there.st_mode)) return false;
  return here.st_size == there.st_size && ContentOf(entry.lies) == ContentOf(resolved);
}

std::vector<PathDifference> DiskPicture::Differences() {
  using Kind = PathDifference::Kind;
  std::vector<PathDifference> differences;
  for (const auto& [path, entry] : entries_) {
    const bool isOnDisk = ExistsOnDisk(path);
    if (entry.gone && isOnDisk) differences.push_back({path, Kind::kGone});
    if (!entry.gone && !isOnDisk) differences.push_back({path, Kind::kNew});
    if (!entry.gone && isOnDisk && !IsSame(path, entry)) differences.push_back({path, Kind::kChanged});
  }
  return differences;
}

}  // namespace win
