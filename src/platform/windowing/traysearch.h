#pragma once

namespace win {

// Whether the desktop has a tray at this moment, of the kind on the session bus or of the kind on the X server.
bool DesktopHasTray();
bool BusHasTray();

}  // namespace win
