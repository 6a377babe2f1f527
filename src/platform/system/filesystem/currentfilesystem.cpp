#include "platform/system/filesystem/currentfilesystem.h"

#include "platform/system/filesystem/posixfilesystem.h"

#include <utility>

namespace win {

namespace {

FileSystem* replacement_ = nullptr;

}  // namespace

FileSystem& CurrentFileSystem() { return replacement_ != nullptr ? *replacement_ : PosixFileSystem(); }

ScopedFileSystem::ScopedFileSystem(FileSystem& replacement) : outer_(std::exchange(replacement_, &replacement)) {}

ScopedFileSystem::~ScopedFileSystem() { replacement_ = outer_; }

}  // namespace win
