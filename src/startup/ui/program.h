#pragma once

namespace varnik {

// The whole life of the process with a window: answers the maintenance words, refuses a second instance, finishes what
// an interrupted run left, and runs the main window. Gives the exit status.
int Main();

}  // namespace varnik
