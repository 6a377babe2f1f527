#pragma once

#include "platform/system/filesystem/filesystem.h"

namespace win {

// The file system that this layer works on: the operating system's, or the one that a ScopedFileSystem has put in its
// place. For one thread.
FileSystem& CurrentFileSystem();

// Replaces the current file system while alive. Scopes nest.
class ScopedFileSystem {
 public:
  explicit ScopedFileSystem(FileSystem& replacement);
  ~ScopedFileSystem();
  ScopedFileSystem(const ScopedFileSystem&) = delete;
  ScopedFileSystem& operator=(const ScopedFileSystem&) = delete;

 private:
  FileSystem* outer_;
};

}  // namespace win
