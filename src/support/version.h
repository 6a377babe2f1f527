#pragma once

#include <string>

namespace varnik {

extern const char kVersion[];  // as the build names it

// The line that windows print.
std::string VersionLine();

}  // namespace varnik
