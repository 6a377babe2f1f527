#pragma once

namespace win {

// Tells screen readers what the windows are; Qt takes a form for a mere area.
void InstallAccessibility();

}  // namespace win
