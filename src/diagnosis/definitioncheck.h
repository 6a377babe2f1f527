#pragma once

#include "diagnosis/finding.h"
#include "diagnosis/installcheck.h"

#include <string>

namespace varnik {

// Looks at a definition of the current format as its three passes read it. Without `install` what lies in the install
// is not looked at. False when there are more lines, included files too, than are looked at; a finding says so.
bool CheckCurrentDefinition(const std::string& path, Findings& findings, InstallCheck* install);

}  // namespace varnik
