#include "platform/system/filesystem/folderindex.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <memory>

namespace win {

namespace {

constexpr std::size_t kMaxNames = 300'000;  // about 30 MB

// File systems that change through this kernel only, which then reports every change.
bool IsLocal(int folder) {
  constexpr decltype(statfs::f_type) kLocal[] = {EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC,       BTRFS_SUPER_MAGIC,
                                                 F2FS_SUPER_MAGIC, OVERLAYFS_SUPER_MAGIC, TMPFS_MAGIC};
  struct statfs system;
  return fstatfs(folder, &system) == 0 &&
         std::find(std::begin(kLocal), std::end(kLocal), system.f_type) != std::end(kLocal);
}

bool SameTime(const timespec& a, const timespec& b) { return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec; }

double Seconds(const timespec& time) {
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// Change times advance by the tick of the clock, and on some file systems by two whole seconds.
bool IsSettled(const struct stat& status) {
  const double granularity = status.st_ctim.tv_nsec == 0 ? 2.1 : 0.03;
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return Seconds(now) - Seconds(status.st_ctim) > granularity;
}

}  // namespace

thread_local std::uint64_t FolderIndex::changes_ = 1;

FolderIndex::FolderIndex(Watching watching, std::size_t maxFolders)
    : events_(watching == Watching::kYes ? inotify_init1(IN_NONBLOCK | IN_CLOEXEC) : -1), maxFolders_(maxFolders) {
  ++changes_;
}

const FolderNames* FolderIndex::NamesIn(const std::string& folder) {
  struct stat status;
  if (stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return nullptr;
  TakeEvents();
  const auto found = folders_.find(Identity(status.st_dev, status.st_ino));
  if (found == folders_.end()) return ReadAgain(folder);
  Folder& known = found->second;
  const bool unchanged =
      known.settled && SameTime(known.status.st_ctim, status.st_ctim) && SameTime(known.status.st_mtim, status.st_mtim);
  if (known.watch < 0 && !unchanged) return ReadAgain(folder);
  known.lastUse = ++uses_;
  if (known.watch < 0) ++changes_;
  return &known.names;
}

const FolderNames* FolderIndex::ReadAgain(const std::string& path) {
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(path.c_str()), closedir);
  struct stat status;
  if (stream == nullptr || fstat(dirfd(stream.get()), &status) != 0) return nullptr;
  const Identity identity(status.st_dev, status.st_ino);
  Forget(identity);
  MakeRoom();
  Folder& folder = folders_[identity];
  folder.lastUse = ++uses_;
  folder.status = status;
  folder.settled = IsSettled(status);
  // Watched before it is read: what changes in between is reported, and taken over twice it does no harm.
  folder.watch = Watch(dirfd(stream.get()));
  if (folder.watch >= 0)
    watched_[folder.watch] = identity;
  else
    ++changes_;
  while (const dirent* const entry = readdir(stream.get()))
    folder.names.Add(entry->d_name);
  return &folder.names;
}

int FolderIndex::Watch(int folder) const {
  if (!events_.IsOpen() || !IsLocal(folder)) return -1;
  const std::string path = "/proc/self/fd/" + std::to_string(folder);
  return inotify_add_watch(events_.Get(), path.c_str(), IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO);
}

void FolderIndex::TakeEvents() {
  alignas(inotify_event) char buffer[16 * 1024];
  while (events_.IsOpen()) {
    const ssize_t size = ReadSome(events_.Get(), buffer, sizeof buffer);
    if (size <= 0) return;
    for (const char* next = buffer; next < buffer + size;) {
      const auto* const event = reinterpret_cast<const inotify_event*>(next);
      next += sizeof(inotify_event) + event->len;
      TakeEvent(event->wd, event->mask, event->len > 0 ? std::string_view(event->name) : std::string_view());
    }
  }
}

void FolderIndex::TakeEvent(int watch, std::uint32_t change, std::string_view name) {
  ++changes_;
  while ((change & IN_Q_OVERFLOW) != 0 && !folders_.empty())
    Forget(folders_.begin()->first);
  const auto known = watched_.find(watch);
  if (known == watched_.end()) return;
  FolderNames& names = folders_.at(known->second).names;
  if ((change & (IN_CREATE | IN_MOVED_TO)) != 0) names.Add(name);
  if ((change & (IN_DELETE | IN_MOVED_FROM)) != 0) names.Remove(name);
  if ((change & IN_IGNORED) != 0) Forget(known->second);
}

void FolderIndex::Forget(Identity identity) {
  const auto known = folders_.find(identity);
  if (known == folders_.end()) return;
  if (known->second.watch >= 0) {
    inotify_rm_watch(events_.Get(), known->second.watch);
    watched_.erase(known->second.watch);
  }
  folders_.erase(known);
  ++changes_;
}

void FolderIndex::MakeRoom() {
  std::size_t names = 0;
  for (const auto& [identity, folder] : folders_)
    names += folder.names.Count();
  while (names > kMaxNames || folders_.size() >= maxFolders_) {
    const auto oldest = std::min_element(folders_.begin(), folders_.end(), [](const auto& a, const auto& b) {
      return a.second.lastUse < b.second.lastUse;
    });
    names -= oldest->second.names.Count();
    Forget(oldest->first);
  }
}

}  // namespace win
