#pragma once

#include "maps/mapentry.h"
#include "maps/mapfiles.h"

#include <string>

namespace varnik {

// Fills `entry` from a path relative to the install root: that of a .bzn or of an .inf. The .inf of a .bzn stands
// beside it, else it is the first of that name in the install. `path` leaves as the path of the .inf when there is one.
// `folder` receives the folder of `path` as it came; without a backslash in `path` it stays, as do the entry's folder
// and name. False when a number does not fit into 16 bits: the load ends there, and the entry is not to be used.
[[nodiscard]] bool ParseMapEntry(MapEntry& entry, std::string& path, std::string& folder, MapFiles& files);

}  // namespace varnik
