#pragma once

#include "platform/system/filesystem/filesystem.h"

namespace win {

// The file system of the operating system.
FileSystem& PosixFileSystem();

}  // namespace win
