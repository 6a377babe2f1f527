#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace varnik {

// What a start is to become.
constexpr std::int16_t kRunModeNormal = 0;
constexpr std::int16_t kRunModeLeave = 1;   // finish and end, no main window
constexpr std::int16_t kRunModeHidden = 2;  // the tray icon stands for the window

// Blanks and tabs outside quotes separate; quotes are dropped wherever they stand, and an empty pair is an argument.
// What follows the first `maxArgs` arguments is lost.
std::vector<std::string> SplitCommandLine(std::string_view line, int maxArgs);

// Takes the run mode from the program's own command line and performs the deactivation that it asks for.
std::int16_t ProcessCmdLine(int maxArgs = 20);

}  // namespace varnik
