#pragma once

#include "journal/journal.h"
#include "platform/system/filesystem/recordingfilesystem.h"

#include <map>
#include <string>

// Makes the entries of a journal from what a rehearsal has recorded.
namespace varnik {

// What the mod does to the install while it is active: to be noted between the rehearsed activation and the rehearsed
// deactivation.
struct ActiveState {
  std::map<std::string, std::string> moves;  // native paths: from where to where
  std::map<std::string, std::string> texts;  // by native path
};

ActiveState NoteActiveState(const win::RecordingFileSystem& record);

// Fills `entries`, `written` and `texts` from both rehearsals; `root` is set already. What the program stores for
// itself is left out. To be called behind the rehearsal. False when a file that will be overwritten cannot be copied;
// `failed` receives its path and the reason is in errno.
bool FillJournal(Journal& journal, const win::RecordingFileSystem& record, ActiveState active, std::string& failed);

// The native path of an entry's `path` or `movedTo`.
std::string PathInInstall(const std::string& nativeRoot, const std::string& path);

}  // namespace varnik
