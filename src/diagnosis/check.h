#pragma once

#include "diagnosis/finding.h"

#include <optional>
#include <string>
#include <vector>

namespace varnik {

struct CheckReport {
  std::vector<Finding> findings;  // in the order of lines
  std::string leftOut;            // what was not looked at, and why; empty when all was
};

// Reports what all passes over a definition file, of either format, would skip in silence. With an install selected
// its lines are held against that install, as it is now, and what it does against the mods of ModList. Changes nothing.
// Nothing when the file cannot be read.
[[nodiscard]] std::optional<CheckReport> CheckDefinition(const std::string& path);

}  // namespace varnik
