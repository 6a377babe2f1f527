#pragma once

#include "diagnosis/finding.h"

#include <string>

// Names below the install as definitions of the current format give them.
namespace varnik {

// Reports a name that no file of an install can have, and returns false then.
bool CheckInstallPath(const Place& place, const std::string& name);

// Reports a name with wildcards, and returns false then.
bool CheckSingleName(const Place& place, const std::string& name);

}  // namespace varnik
