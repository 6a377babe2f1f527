#pragma once

#include "maps/mapentry.h"

#include <cstdint>
#include <string>
#include <vector>

// Where a map belongs. The pages, the details text and the conversion read the number fields of a map each in their own
// way: a map may well stand on one page and be described as another.
namespace varnik {

// `path` as the file lies while the selected mod is active: the first of ModRenames that fits applies, and no other.
// The mod hides a file by a target that no folder has.
std::string TranslateMapPath(const std::string& path);

// Tests of a folder relative to the install root. Under game version 1.3 only the addon tree counts.
bool IsMultiplayerPath(const std::string& folder);
bool IsInstantPath(const std::string& folder);

// One of SearchDirs holds the folder.
bool IsInModFolders(const std::string& folder);

// What the pages need to know of a map's folder.
enum class MapPlace { kElsewhere, kMultiplayer, kInstant };
MapPlace PlaceOfFolder(const std::string& folder);

constexpr int kAllSubTypes = 20;

// A page of the map list: a node of the tree.
struct MapPage {
  const char* key;  // of its tree node
  const char* caption;
  int mapType;
  int subType;
  bool (*shows)(const MapEntry& map, MapPlace place);
};

// In the order of the tree.
extern const std::vector<MapPage> kMapPages;

// Null for numbers that name no page.
const MapPage* FindMapPage(int mapType, int subType);

// What `ivar7` says of a deathmatch map.
struct MapSubType {
  std::int16_t ivar7;
  const char* caption;
  const char* tag;  // as game version 1.3 spells it
};
const MapSubType& SubTypeOf(std::int16_t ivar7);

}  // namespace varnik
