#pragma once

#include <optional>

// How large the main window opens: as it was left, with its status bar showing. Kept in section Window of the settings
// store, in twips.
namespace varnik {

struct WindowSize {
  double width = 0, height = 0;
};

// Nothing when none is stored, or no size.
std::optional<WindowSize> StoredWindowSize();
bool WindowWasMaximized();
void StoreWindowSize(const WindowSize& size, bool maximized);

// For the first start: `design` on a small screen, more on a larger one up to what still reads well.
WindowSize FirstWindowSize(const WindowSize& design, const WindowSize& screen);

}  // namespace varnik
