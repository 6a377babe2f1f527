#pragma once

#include "platform/system/filesystem/filesystem.h"

namespace win {

// The operating system's, or the replacement of the newest ScopedFileSystem. For one thread.
FileSystem& CurrentFileSystem();

// Native path of what `native` leads to, as ResolveLinks resolves it in the current file system.
std::string FollowLinks(const std::string& native);

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
