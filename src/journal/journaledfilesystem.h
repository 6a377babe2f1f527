#pragma once

#include "journal/journal.h"
#include "platform/system/filesystem/confinedfilesystem.h"
#include "platform/system/paths/program.h"

#include <string>
#include <unordered_set>

namespace varnik {

// The reason of a refusal. No call of this operating system gives it.
constexpr int kErrorNotNoted = EBADSLT;

// Another file system in which nothing changes but what a journal names, and what the program stores for itself. Should
// an activation find the install in another state than its rehearsal did, it changes nothing that could not be undone.
class JournaledFileSystem : public win::ConfinedFileSystem {
 public:
  // `base` must outlive this object.
  JournaledFileSystem(win::FileSystem& base, const Journal& journal);

 private:
  bool MayChange(const std::string& resolved) override;

  win::OwnFolders own_;
  std::unordered_set<std::string> paths_;
};

}  // namespace varnik
