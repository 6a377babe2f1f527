#pragma once

#include "diagnosis/finding.h"

#include <string>

// Names below the install as definitions of the current format give them.
namespace varnik {

// False, having said why, for a name that no file of an install can have.
bool CheckInstallPath(const Place& place, const std::string& name);

// False, having said so, for a name with wildcards.
bool CheckSingleName(const Place& place, const std::string& name);

}  // namespace varnik
