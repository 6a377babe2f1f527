#pragma once

#include "diagnosis/finding.h"

#include <optional>
#include <string>
#include <vector>

namespace varnik {

struct CheckReport {
  std::vector<Finding> findings;  // in the order of lines
  std::string leftOut;            // what was not looked at, and why, for a person; empty when all was
};

// Tells what all readers of a definition file, of either format, would pass over in silence. With an install selected
// its lines are held against that install, as it is now. Changes nothing. Nothing when the file cannot be read.
[[nodiscard]] std::optional<CheckReport> CheckDefinition(const std::string& path);

}  // namespace varnik
