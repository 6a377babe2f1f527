#pragma once

#include <cstdint>
#include <string>

namespace varnik {

// What a start is to become.
constexpr std::int16_t kRunModeNormal = 0;
constexpr std::int16_t kRunModeLeave = 1;   // finish and end, no main window
constexpr std::int16_t kRunModeHidden = 2;  // the tray icon stands for the window

// Takes the run mode from the program's own command line and performs the deactivation that it asks for.
std::int16_t ProcessCmdLine(int maxArgs = 20);

// Finishes a run that was interrupted, by its marker. True when a marker was acted on, whatever came of it.
bool RecoverFromCrash();

}  // namespace varnik
