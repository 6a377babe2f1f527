#pragma once

#include "platform/system/filesystem/descriptor.h"

#include <string>

// The folder from which relative paths are taken. It belongs to the process.
namespace win {

// As a Windows path that ends in a separator; empty when the folder is gone.
std::string WorkingFolder();

// Enters a folder, and returns to the one before on destruction, even if that has been renamed since. Scopes nest.
class ScopedWorkingFolder {
 public:
  // A Windows path.
  explicit ScopedWorkingFolder(const std::string& folder);
  ~ScopedWorkingFolder();
  ScopedWorkingFolder(const ScopedWorkingFolder&) = delete;
  ScopedWorkingFolder& operator=(const ScopedWorkingFolder&) = delete;

  // False when the folder cannot be entered: the process stays where it was.
  bool IsEntered() const { return before_.IsOpen(); }

 private:
  Descriptor before_;  // closed when nothing was entered
};

}  // namespace win
