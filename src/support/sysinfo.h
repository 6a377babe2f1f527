#pragma once

#include <cstdint>
#include <string>

namespace varnik {

// The value's text, a number as decimal text; `value` is empty and the result false when it cannot be read.
bool ReadSharedToolsValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName,
                          std::string& value);

// Starts the platform's system information tool, or says that there is none.
void LaunchSystemInfo();

}  // namespace varnik
