#include "journal/journaledfilesystem.h"

#include "journal/record.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/paths/paths.h"

namespace varnik {

JournaledFileSystem::JournaledFileSystem(win::FileSystem& base, const Journal& journal) : ConfinedFileSystem(base, {}) {
  const std::string root = win::FollowLinks(win::NativePath(journal.root));
  for (const JournalEntry& entry : journal.entries)
    paths_.insert(PathInInstall(root, entry.path));
}

bool JournaledFileSystem::MayChange(const std::string& resolved) {
  return paths_.contains(resolved) || own_.Hold(resolved) || win::FailWith(kErrorNotNoted);
}

}  // namespace varnik
