#pragma once

#include "windowing/control.h"
#include "windowing/statusbar.h"

#include <vector>

// The status bar explains the controls: panel 1 shows the words about the one that the mouse moved over last, or, for a
// combo box, the one that took the focus. Nothing clears it.
namespace varnik {

// Gives each control that has a hint its handler. A handler that the control has already still runs, first.
void WireHints(win::StatusBar& statusBar, const std::vector<win::Control*>& controls);

}  // namespace varnik
