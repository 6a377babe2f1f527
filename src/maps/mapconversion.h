#pragma once

#include "maps/mapentry.h"
#include "platform/system/files/profile.h"

#include <string>

// Game version 1.3 takes a map's type from `svar7` of its .inf, which older maps lack. A load of the catalogue offers
// to write it, deduced from the older numbers.
namespace varnik {

// Lets the question come again.
void ResetConversion();

// Asks once per load of the catalogue, and on Yes writes `svar7` into the .inf of a map that lacks it, read-only or
// not. Maps outside the multiplayer folder of version 1.3, and outside the folders of the selected mod, are left alone.
void OfferConversion(const MapEntry& entry, const win::ProfileFile& inf, const std::string& infPath);

}  // namespace varnik
