#pragma once

#include "platform/system/filesystem/confinedfilesystem.h"
#include "platform/system/filesystem/currentfilesystem.h"

#include <string>

namespace varnik {

// Where a definition may change files and start programs: in the install, in `mods\` of the program's folder, and in
// the folders that a player allows by `Allow=` in platform.ini. Definitions come from strangers.
class Confines {
 public:
  // For a pass on the install at `root`. The selected install counts too, since an undo looks into both.
  explicit Confines(const std::string& root);

  // In force while the result lives, which is to be as long as a line is carried out and no longer: what the program
  // itself stores lies elsewhere.
  [[nodiscard]] win::ScopedFileSystem Enforce() { return win::ScopedFileSystem(files_); }

  // Runs pending events. Their handlers are not confined, also while a line is carried out.
  void DoEvents();

  // Whether a line may have ShellExecute start this. A refusal is reported as the start that was not done.
  [[nodiscard]] bool MayStart(const std::string& commandLine);

  // Whether a line may change the file or folder of this path; that of a link, or what it leads to.
  [[nodiscard]] bool Contains(const std::string& path, bool followLink);

 private:
  win::ConfinedFileSystem files_;
};

}  // namespace varnik
