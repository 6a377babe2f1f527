#include "fuzz/world.h"
#include "maps/mapdetails.h"
#include "maps/maplist.h"

// The cache of the map catalogue, varnik.lst.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::Text(data, size);
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  world.Put("a.bzn", "");
  world.Put("addon/b.bzn", "");
  world.Put("addon/b.inf", "[DESCRIPTION]\r\nmissionName=B\r\n[NetVars]\r\nivar5=1\r\nivar7=2\r\n");
  world.Put("varnik.lst", text);
  varnik::LoadMapList(false);
  for (std::size_t row = 1; row < varnik::MapList.size(); ++row) {
    varnik::PagesOfMapRow(row);
    varnik::MapDetails(varnik::MapList[row]);
  }
  for (const varnik::MapPage& page : varnik::kMapPages)
    varnik::MapRowsOfPage(page.mapType, page.subType);
  varnik::ClearMapList();
  return 0;
}
