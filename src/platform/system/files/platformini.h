#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace win {

// What `platform.ini` in the configuration folder says, the settings that only this system has: one `Key=value` a line,
// keys without regard to case. The values of a key in the order of their lines, trimmed, empty ones left out.
std::vector<std::string> PlatformValues(std::string_view key);

}  // namespace win
