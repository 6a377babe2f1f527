#include "platform/system/filesystem/confinedfilesystem.h"

#include "platform/system/filesystem/nativepath.h"

#include <algorithm>

namespace win {

ConfinedFileSystem::ConfinedFileSystem(FileSystem& base, const std::vector<std::string>& folders) : base_(base) {
  for (const std::string& folder : folders)
    folders_.push_back(JoinPath(Resolved(folder, true), ""));
}

// Lines of a definition name few folders many times.
std::string ConfinedFileSystem::Resolved(const std::string& path, bool followLast) {
  constexpr std::size_t kMaxResolved = 1'000;
  const auto targetOf = [this](const std::string& link) { return base_.LinkTarget(link); };
  const std::string native = AbsolutePath(path);
  const std::string_view name = LastName(native);
  // The system follows a link with a separator behind it.
  if (name.empty() || name == "." || name == "..") return ResolveLinks(native, true, targetOf);
  const std::string folder = FolderAbove(native);
  auto known = resolved_.find(folder);
  if (known == resolved_.end()) {
    if (resolved_.size() >= kMaxResolved) resolved_.clear();
    known = resolved_.emplace(folder, ResolveLinks(folder, true, targetOf)).first;
  }
  const std::string resolved = JoinPath(known->second, name);
  return followLast && !base_.LinkTarget(resolved).empty() ? ResolveLinks(resolved, true, targetOf) : resolved;
}

bool ConfinedFileSystem::Contains(const std::string& path, bool followLast) {
  return MayChange(Resolved(path, followLast));
}

bool ConfinedFileSystem::MayChange(const std::string& resolved) {
  const bool isInside = std::any_of(folders_.begin(), folders_.end(), [&resolved](const std::string& folder) {
    return resolved.size() > folder.size() && resolved.starts_with(folder);
  });
  return isInside || FailWith(kErrorOutside);
}

std::unique_ptr<WritableFile> ConfinedFileSystem::OpenForWriting(const std::string& path, OpenMode mode,
                                                                 mode_t permissions) {
  const bool follows = mode == OpenMode::kTruncate || mode == OpenMode::kAppend;
  return Contains(path, follows) ? base_.OpenForWriting(path, mode, permissions) : nullptr;
}

bool ConfinedFileSystem::MayRename(const std::string& from, const std::string& to) {
  return Contains(from, false) && Contains(to, false);
}

// Only a file leaves the way to every other path as it was.
bool ConfinedFileSystem::AfterRename(const std::string& to, bool done) {
  FileStatus status;
  if (done && !(base_.LinkStatus(to, status) && status.IsFile())) resolved_.clear();
  return done;
}

bool ConfinedFileSystem::Rename(const std::string& from, const std::string& to) {
  return MayRename(from, to) && AfterRename(to, base_.Rename(from, to));
}

bool ConfinedFileSystem::RenameWithoutReplacing(const std::string& from, const std::string& to) {
  return MayRename(from, to) && AfterRename(to, base_.RenameWithoutReplacing(from, to));
}

bool ConfinedFileSystem::Remove(const std::string& path) {
  if (!Contains(path, false)) return false;
  if (!base_.LinkTarget(path).empty()) resolved_.clear();
  return base_.Remove(path);
}

bool ConfinedFileSystem::MakeFolder(const std::string& path, mode_t permissions) {
  return Contains(path, false) && base_.MakeFolder(path, permissions);
}

bool ConfinedFileSystem::RemoveFolder(const std::string& path) {
  resolved_.clear();
  return Contains(path, false) && base_.RemoveFolder(path);
}

bool ConfinedFileSystem::SetPermissions(const std::string& path, mode_t permissions) {
  return Contains(path, true) && base_.SetPermissions(path, permissions);
}

bool ConfinedFileSystem::SetModified(const std::string& path, const timespec& time) {
  return Contains(path, true) && base_.SetModified(path, time);
}

}  // namespace win
