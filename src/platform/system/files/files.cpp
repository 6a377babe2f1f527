#include "platform/system/files/files.h"

#include "platform/system/files/findfile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/pathfinder.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/wildcards.h"

#include <vector>

namespace win {

namespace {

std::string_view WithoutTrailingSeparators(std::string_view path) {
  while (path.size() > 1 && EndsInSeparator(path))
    path.remove_suffix(1);
  return path;
}

// The copy gets its name only when it is whole, so that a crash leaves the file where it was.
bool MoveToOtherFileSystem(const std::string& from, const std::string& to) {
  FileSystem& files = CurrentFileSystem();
  FileStatus status;
  if (!files.LinkStatus(from, status) || !status.IsFile()) return false;
  const std::string copy = TemporaryNameFor(to);
  const bool isMoved = CopyFile(files, from, copy) && files.Sync(copy) && files.RenameWithoutReplacing(copy, to);
  if (!isMoved) files.Remove(copy);
  return isMoved && files.Sync(FolderAbove(to)) && files.Remove(from);
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
  FileStatus status;
  const bool exists = CurrentFileSystem().Status(native, status);
  if (exists && status.IsFolder()) return FailWith(EISDIR);
  if (exists && status.IsReadOnly()) return FailWith(EPERM);
  return CurrentFileSystem().Remove(native);
}

bool Rename(const std::string& from, const std::string& to) {
  const std::string_view toText = WithoutTrailingSeparators(to);
  const std::optional<std::string> source = FindNativePath(WithoutTrailingSeparators(from));
  const std::string target = NativePath(toText);
  if (!source || target.empty()) return FailWith(ENOENT);
  // A target that is the source itself: only the case changes.
  const std::string newName = target == *source ? JoinPath(FolderAbove(target), NewName(FileNameOf(toText))) : target;
  if (newName == *source) return true;
  if (newName == target && CurrentFileSystem().HasEntry(target)) return FailWith(EEXIST);
  if (CurrentFileSystem().RenameWithoutReplacing(*source, newName)) return true;
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
  return ReportOperation(Operation::kRename, to, from, [&] { return Rename(from, to); });
}

bool DeleteFiles(const std::string& pattern) {
  return ReportOperation(Operation::kDelete, pattern, "", [&] { return Delete(pattern); });
}

bool MakeFolder(const std::string& path) {
  return ReportOperation(Operation::kMakeFolder, path, "", [&] {
    return CurrentFileSystem().MakeFolder(NativePath(path), 0777) || FailWith(errno == ENOENT ? ENOTDIR : errno);
  });
}

bool RemoveFolder(const std::string& path) {
  return ReportOperation(Operation::kRemoveFolder, path, "", [&] {
    return CurrentFileSystem().RemoveFolder(NativePath(path)) || FailWith(errno == ENOTDIR ? ENOENT : errno);
  });
}

std::optional<unsigned> GetAttributes(const std::string& path) {
  const std::string native = NativePath(path);
  FileStatus status;
  if (!CurrentFileSystem().Status(native, status)) return std::nullopt;
  unsigned attributes = status.IsFolder() ? kAttributeDirectory : kAttributeArchive;
  if (status.IsReadOnly()) attributes |= kAttributeReadOnly;
  if (FileNameOf(WithoutTrailingSeparators(native)).starts_with('.')) attributes |= kAttributeHidden;
  return attributes;
}

std::optional<std::uint64_t> FileSize(const std::string& path) {
  FileStatus status;
  if (!CurrentFileSystem().Status(NativePath(path), status) || !status.IsFile()) return std::nullopt;
  return status.size;
}

bool SetAttributes(const std::string& path, unsigned attributes) {
  const std::string native = NativePath(path);
  FileStatus status;
  if (!CurrentFileSystem().Status(native, status)) return false;
  const bool readOnly = (attributes & kAttributeReadOnly) != 0;
  // On Windows the attribute does not keep files out of a folder, as the mode bit would here.
  if (readOnly == status.IsReadOnly() || (readOnly && status.IsFolder())) return true;
  return CurrentFileSystem().SetPermissions(native, status.permissions ^ 0200);
}

bool SyncFileSystemOf(const std::string& path) { return CurrentFileSystem().SyncAll(NativePath(path)); }

bool ClearReadOnly(const std::string& path) {
  const unsigned attributes = GetAttributes(path).value_or(0);
  return (attributes & kAttributeReadOnly) == 0 || SetAttributes(path, attributes & ~kAttributeReadOnly);
}

}  // namespace win
