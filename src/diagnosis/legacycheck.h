#pragma once

#include "diagnosis/finding.h"
#include "diagnosis/installcheck.h"

#include <string>

namespace varnik {

// The same as CheckCurrentDefinition for a definition of the older format.
bool CheckLegacyDefinition(const std::string& path, Findings& findings, InstallCheck* install);

}  // namespace varnik
