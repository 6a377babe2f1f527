#pragma once

#include <string_view>

namespace varnik {

// Appends one line to error.log in AppPath while DebugLog is on; opened and closed for each line, so that the log of a
// program that dies is whole.
void LogLine(std::string_view text);

}  // namespace varnik
