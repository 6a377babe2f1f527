#include "platform/system/filesystem/currentfilesystem.h"

#include "platform/system/filesystem/posixfilesystem.h"

#include <utility>

namespace win {

namespace {

FileSystem* replaced = nullptr;

}  // namespace

FileSystem& CurrentFileSystem() {
  static PosixFileSystem posix;
  return replaced != nullptr ? *replaced : posix;
}

ScopedFileSystem::ScopedFileSystem(FileSystem& replacement) : outer_(std::exchange(replaced, &replacement)) {}

ScopedFileSystem::~ScopedFileSystem() {
  replaced = outer_;
}

}  // namespace win
