#include "platform/system/filesystem/currentfilesystem.h"

#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/posixfilesystem.h"

#include <utility>

namespace win {

namespace {

FileSystem* replacement_ = nullptr;

}  // namespace

FileSystem& CurrentFileSystem() { return replacement_ != nullptr ? *replacement_ : PosixFileSystem(); }

std::string FollowLinks(const std::string& native) {
  return ResolveLinks(native, true, [](const std::string& path) { return CurrentFileSystem().LinkTarget(path); });
}

ScopedFileSystem::ScopedFileSystem(FileSystem& replacement) : outer_(std::exchange(replacement_, &replacement)) {}

ScopedFileSystem::~ScopedFileSystem() { replacement_ = outer_; }

}  // namespace win
