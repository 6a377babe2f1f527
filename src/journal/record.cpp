#include "journal/record.h"

#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"

#include <algorithm>
#include <utility>

namespace varnik {

ActiveState NoteActiveState(const win::RecordingFileSystem& record) { return {record.Moves(), record.Contents()}; }

bool FillJournal(Journal& journal, const win::RecordingFileSystem& record, ActiveState active, std::string& failed) {
  win::FileSystem& files = win::CurrentFileSystem();
  const std::string base = win::FollowLinks(win::NativePath(journal.root)) + "/";
  const auto named = [&base](const std::string& path) {
    return path.starts_with(base) ? path.substr(base.size()) : path;
  };
  const win::OwnFolders own;
  for (const std::string& path : record.Touched()) {
    if (own.Hold(path)) continue;
    JournalEntry entry{named(path), false, {}, {}, {}};
    entry.existed = files.LinkStatus(path, entry.before);
    if (record.Destroyed().contains(path) && entry.before.IsFile()) {
      entry.copy = win::ReadWholeFile(win::WindowsPathFromNative(path));
      failed = path;
      if (!entry.copy) return false;
    }
    if (const auto moved = active.moves.find(path); moved != active.moves.end()) entry.movedTo = named(moved->second);
    journal.entries.push_back(std::move(entry));
  }
  const std::set<win::ContentId> written = record.Written();
  journal.written.assign(written.begin(), written.end());
  for (auto& [path, text] : active.texts)
    if (!own.Hold(path)) journal.texts.push_back(std::move(text));
  return true;
}

std::string PathInInstall(const std::string& nativeRoot, const std::string& path) {
  return path.starts_with('/') ? path : win::JoinPath(nativeRoot, path);
}

}  // namespace varnik
