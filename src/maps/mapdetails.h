#pragma once

#include "maps/mapentry.h"

#include <functional>
#include <string>

// What the map page shows of a map besides its name.
namespace varnik {

// The lines "Map Name", "Map Type" and, for a deathmatch map, the subtype.
std::string MapDetails(const MapEntry& map);

// Full path of the description text: beside the map, else anywhere in the folders of the selected mod; empty when there
// is none. For a map that names no file it is the map's folder.
std::string FindMapDescription(const MapEntry& map);

// The same for the picture, whose name may also end in png, jpg or bmp instead. A file that `accept` refuses is
// skipped.
std::string FindMapPicture(const MapEntry& map, const std::function<bool(const std::string& path)>& accept = {});

}  // namespace varnik
