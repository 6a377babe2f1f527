#pragma once

#include "diagnosis/finding.h"
#include "diagnosis/installcheck.h"

#include <string>

// Names below the install as definitions of the current format give them.
namespace varnik {

// Reports a name that no file of an install can have, and returns false then. It may still lead out of the install.
bool CheckInstallPath(const Place& place, const std::string& name);

enum class PathUse {
  kRead,
  kMove,   // the entry of this name, a link too
  kWrite,  // what a link leads to, which may also be started
};

// Where a path of a definition begins: at the install, or with a root of its own.
enum class PathBase { kInstall, kOwn };

// Reports a path that leads out of the install, and returns false when nothing is done with it for that reason. Without
// `install` its text alone is judged.
bool CheckConfined(const Place& place, const std::string& path, PathBase base, PathUse use, InstallCheck* install);

// Reports a name with wildcards, and returns false then.
bool CheckSingleName(const Place& place, const std::string& name);

}  // namespace varnik
