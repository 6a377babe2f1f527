#include "platform/system/paths/shippedfiles.h"

#include "platform/system/filesystem/contentid.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/text/text.h"

#include <cstdio>
#include <functional>
#include <ios>
#include <map>
#include <optional>
#include <sstream>
#include <vector>

namespace win {
namespace {

constexpr std::uint64_t kMaxShippedBytes = std::uint64_t{256} << 20;

// The record: the version in the first line, then a line for each file with the content that was shipped, which need
// not be what the user's folder holds.
struct ShippedRecord {
  std::string version;
  std::map<std::string, ContentId> files;  // by the path below the folder
};

std::string RecordFile(const std::string& folder) { return JoinPath(folder, ".shipped"); }

std::optional<std::string> ContentOf(const std::string& path) {
  FileStatus status;
  const auto file = OpenFile(CurrentFileSystem(), path, status);
  return file ? ReadUpTo(*file, status.size, kMaxShippedBytes) : std::nullopt;
}

std::optional<ContentId> IdOf(const std::string& path) {
  const std::optional<std::string> content = ContentOf(path);
  return content ? std::optional(ContentIdOf(*content)) : std::nullopt;
}

ShippedRecord ReadRecord(const std::string& folder) {
  ShippedRecord record;
  std::istringstream lines(ContentOf(RecordFile(folder)).value_or(""));
  std::getline(lines, record.version);
  ContentId id;
  for (std::string path; lines >> id.size >> std::hex >> id.high >> id.low >> std::dec && lines.get() == ' ' &&
                         std::getline(lines, path);)
    record.files[path] = id;
  return record;
}

bool WriteRecord(const std::string& folder, const ShippedRecord& record) {
  std::ostringstream lines;
  lines << record.version << '\n';
  for (const auto& [path, id] : record.files)
    lines << id.size << ' ' << std::hex << id.high << ' ' << id.low << std::dec << ' ' << path << '\n';
  FileSystem& files = CurrentFileSystem();
  const std::string unfinished = TemporaryNameFor(RecordFile(folder));
  const auto file = files.OpenForWriting(unfinished, OpenMode::kLocked, 0666);
  return file && file->Append(lines.str()) && file->Sync() && file->Close() &&
         files.Rename(unfinished, RecordFile(folder));
}

// Copies under another name first, so that a copy cut short is never taken for the file.
bool CopyShippedFile(const std::string& from, const std::string& to) {
  FileSystem& files = CurrentFileSystem();
  FileStatus status;
  MakeFolders(files, FolderAbove(to), 0777);
  const std::string unfinished = to + ".part";
  const bool isCopied = CopyFile(files, from, unfinished) && files.Status(unfinished, status) &&
                        files.SetPermissions(unfinished, status.permissions | 0200) && files.Rename(unfinished, to);
  if (!isCopied) files.Remove(unfinished);
  return isCopied;
}

// The paths below `folder`, each behind `above`.
void ListFiles(const std::string& folder, const std::string& above, std::vector<std::string>& paths) {
  const auto listing = CurrentFileSystem().OpenFolder(folder);
  for (FoundEntry entry; listing && listing->Next(entry);) {
    if (entry.name == "." || entry.name == "..") continue;
    if (!entry.isFolder)
      paths.push_back(above + entry.name);
    else if (!entry.isLink)
      ListFiles(JoinPath(folder, entry.name), above + entry.name + "/", paths);
  }
}

class Follower {
 public:
  Follower(const std::string& folder, const std::string& shipped, ShippedRecord& record)
      : folder_(folder), shipped_(shipped), record_(record) {}

  // False when the file should have been copied and could not be.
  bool Follow(const std::string& path) {
    const std::string from = JoinPath(shipped_, path), to = JoinPath(folder_, path);
    const std::optional<ContentId> now = IdOf(from);
    if (!now) return true;
    const auto known = record_.files.find(path);
    const bool isKnown = known != record_.files.end();
    if (!CurrentFileSystem().HasEntry(to)) {
      if (!isKnown && !CopyShippedFile(from, to)) return false;
    } else if (const std::optional<ContentId> own = IdOf(to); own != now) {
      if (isKnown && own == known->second) {
        if (!CopyShippedFile(from, to)) return false;
      } else if (!record_.version.empty() && (!isKnown || *now != known->second)) {
        const std::string text = to + ": has been changed here and stays as it is; the new one is " + from;
        std::fprintf(stderr, "%s\n", Printable(text).c_str());
      }
    }
    record_.files[path] = *now;
    return true;
  }

 private:
  const std::string& folder_;
  const std::string& shipped_;
  ShippedRecord& record_;
};

}  // namespace

void FollowShippedFiles(const std::string& folder, const std::string& shipped, const std::string& marker,
                        const std::string& version) {
  FileSystem& files = CurrentFileSystem();
  const bool isFull = files.IsFile(JoinPath(folder, marker));
  ShippedRecord record = ReadRecord(folder);
  if (!isFull) record.files.erase(marker);  // comes back, since the program needs it
  if ((isFull && record.version == version) || !files.IsFolder(shipped)) return;
  std::vector<std::string> paths;
  ListFiles(shipped, "", paths);
  // Last, since it says that the rest is there.
  std::erase(paths, marker);
  paths.push_back(marker);
  bool isDone = true;
  Follower follower(folder, shipped, record);
  for (const std::string& path : paths)
    isDone = follower.Follow(path) && isDone;
  if (isDone) record.version = version;
  WriteRecord(folder, record);
}

}  // namespace win
