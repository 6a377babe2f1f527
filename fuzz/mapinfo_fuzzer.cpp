#include "fuzz/world.h"
#include "maps/mapdetails.h"
#include "maps/maplist.h"

// The .inf of a map: a scan, the page of the map, and what the conversion writes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::Text(data, size);
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  world.Put("addon/missions/multiplayer/m.bzn", "");
  world.Put("addon/missions/multiplayer/m.inf", text);
  varnik::LoadMapList(true);
  for (std::size_t row = 1; row < varnik::MapList.size(); ++row) {
    varnik::PagesOfMapRow(row);
    varnik::MapDetails(varnik::MapList[row]);
    varnik::FindMapDescription(varnik::MapList[row]);
    varnik::FindMapPicture(varnik::MapList[row]);
  }
  varnik::ClearMapList();
  return 0;
}
