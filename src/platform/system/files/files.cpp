#include "platform/system/files/files.h"

#include "platform/system/files/findfile.h"
#include "platform/system/filesystem/deeds.h"
#include "platform/system/filesystem/disk.h"
#include "platform/system/filesystem/nativefile.h"
#include "platform/system/paths/pathfinder.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/wildcards.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <vector>

namespace win {

namespace {

namespace fs = std::filesystem;

bool IsReadOnly(const struct stat& status) { return (status.st_mode & S_IWUSR) == 0; }

std::optional<struct stat> StatusOf(const std::string& native) {
  struct stat status;
  if (TheDisk().Stat(native, status) != 0) return std::nullopt;
  return status;
}

bool EntryExists(const std::string& native) {
  struct stat status;
  return TheDisk().LinkStat(native, status) == 0;
}

std::string_view WithoutTrailingSeparators(std::string_view path) {
  while (path.size() > 1 && EndsInSeparator(path))
    path.remove_suffix(1);
  return path;
}

bool RenameWithoutReplacing(const std::string& from, const std::string& to) {
  if (TheDisk().Rename(from, to, RENAME_NOREPLACE) == 0) return true;
  // A file system that does not know the flag. Linking the new name first would not replace either, but a crash behind
  // it would leave both names.
  if ((errno != EINVAL && errno != ENOSYS) || EntryExists(to)) return false;
  return TheDisk().Rename(from, to, 0) == 0;
}

// The copy gets its name only when it is whole, so that a crash leaves the file where it was.
bool MoveToOtherFileSystem(const std::string& from, const std::string& to) {
  struct stat status;
  if (TheDisk().LinkStat(from, status) != 0 || !S_ISREG(status.st_mode)) return false;
  const std::string copy = TemporaryNameFor(to);
  std::error_code failed;
  if (fs::copy_file(from, copy, failed)) {
    fs::last_write_time(copy, fs::last_write_time(from, failed), failed);
    if (FlushToDisk(copy) && RenameWithoutReplacing(copy, to)) return unlink(from.c_str()) == 0;
    unlink(copy.c_str());
  }
  return false;
}

// What `to` would be called beside the entry that it already names, when that entry is `from` itself: only the case
// changes.
std::string NewNameFor(const std::string& from, const std::string& to, std::string_view toText) {
  return from == to ? FolderOf(from) + NewName(FileNameOf(toText)) : to;
}

// Names first, deletion afterwards: a folder that is changed while it is read may leave some out.
std::vector<std::string> FilesThatMatch(const std::string& folder, const std::string& pattern) {
  std::vector<std::string> names;
  FolderReader reader(folder);
  for (FoundEntry entry; reader.Next(entry);)
    if (!entry.isFolder && MatchesWildcards(entry.name, pattern)) names.push_back(entry.name);
  return names;
}

bool DeleteNativeFile(const std::string& native) {
  const std::optional<struct stat> status = StatusOf(native);
  if (status && S_ISDIR(status->st_mode)) return FailWith(EISDIR);
  if (status && IsReadOnly(*status)) return FailWith(EPERM);
  return TheDisk().Unlink(native) == 0;
}

bool Rename(const std::string& from, const std::string& to) {
  const std::string_view toText = WithoutTrailingSeparators(to);
  const std::optional<std::string> source = FindNativePath(WithoutTrailingSeparators(from));
  const std::string target = NativePath(toText);
  if (!source || target.empty()) return FailWith(ENOENT);
  const std::string newName = NewNameFor(*source, target, toText);
  if (newName == *source) return true;
  if (newName == target && EntryExists(target)) return FailWith(EEXIST);
  if (RenameWithoutReplacing(*source, newName)) return true;
  if (errno == EXDEV) return MoveToOtherFileSystem(*source, newName) || FailWith(EXDEV);
  return FailWith(errno == ENOENT ? ENOTDIR : errno);
}

bool Delete(const std::string& pattern) {
  const std::string name = FileNameOf(pattern);
  if (!HasWildcards(name)) {
    const std::optional<std::string> native = FindNativePath(pattern);
    return native ? DeleteNativeFile(*native) : FailWith(ENOENT);
  }
  const std::string folder = pattern.substr(0, pattern.size() - name.size());
  const std::string nativeFolder = folder.empty() ? "" : NativePath(folder);
  bool allGone = true;
  const std::vector<std::string> names = FilesThatMatch(folder.empty() ? "." : folder, name);
  for (const std::string& file : names)
    allGone = DeleteNativeFile(nativeFolder + file) && allGone;
  return allGone && (!names.empty() || FailWith(ENOENT));
}

}  // namespace

bool RenameFile(const std::string& from, const std::string& to) {
  return Tell(Act::kRename, to, from, [&] { return Rename(from, to); });
}

bool DeleteFiles(const std::string& pattern) {
  return Tell(Act::kDelete, pattern, "", [&] { return Delete(pattern); });
}

bool MakeFolder(const std::string& path) {
  return Tell(Act::kMakeFolder, path, "", [&] {
    return TheDisk().MakeFolder(NativePath(path), 0777) == 0 || FailWith(errno == ENOENT ? ENOTDIR : errno);
  });
}

bool RemoveFolder(const std::string& path) {
  return Tell(Act::kRemoveFolder, path, "", [&] {
    return TheDisk().RemoveFolder(NativePath(path)) == 0 || FailWith(errno == ENOTDIR ? ENOENT : errno);
  });
}

std::optional<unsigned> GetAttributes(const std::string& path) {
  const std::string native = NativePath(path);
  const std::optional<struct stat> status = StatusOf(native);
  if (!status) return std::nullopt;
  unsigned attributes = S_ISDIR(status->st_mode) ? kAttributeDirectory : kAttributeArchive;
  if (IsReadOnly(*status)) attributes |= kAttributeReadOnly;
  if (FileNameOf(WithoutTrailingSeparators(native)).starts_with('.')) attributes |= kAttributeHidden;
  return attributes;
}

std::optional<std::uint64_t> FileSize(const std::string& path) {
  const std::optional<struct stat> status = StatusOf(NativePath(path));
  if (!status || !S_ISREG(status->st_mode)) return std::nullopt;
  return static_cast<std::uint64_t>(status->st_size);
}

bool SetAttributes(const std::string& path, unsigned attributes) {
  const std::string native = NativePath(path);
  const std::optional<struct stat> status = StatusOf(native);
  if (!status) return false;
  const bool readOnly = (attributes & kAttributeReadOnly) != 0;
  if (readOnly == IsReadOnly(*status)) return true;
  // On Windows the attribute does not keep files out of a folder, as the mode bit would here.
  if (readOnly && S_ISDIR(status->st_mode)) return true;
  const mode_t mode = (status->st_mode & 07777) ^ S_IWUSR;
  return TheDisk().ChangeMode(native, mode) == 0;
}

}  // namespace win
