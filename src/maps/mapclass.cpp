#include "maps/mapclass.h"

#include "modengine/catalogue.h"
#include "platform/system/text/text.h"
#include "support/install.h"
#include "support/runstate.h"

namespace varnik {
namespace {

bool IsBelowMissions(const std::string& folder, const char* kind) {
  const std::string place = TranslateMapPath(folder);
  const std::string below = std::string("missions\\") + kind + "\\";
  return (!IsVersion13() && win::StartsWithNoCase(place, "data\\" + below)) ||
         win::StartsWithNoCase(place, "addon\\" + below);
}

bool IsTypeInMultiplayer(const MapEntry& map, MapPlace place, int ivar5) {
  return place == MapPlace::kMultiplayer && map.Ivar5 == ivar5;
}

bool IsDeathmatch(const MapEntry& map, MapPlace place) { return IsTypeInMultiplayer(map, place, 1); }
bool IsStrategy(const MapEntry& map, MapPlace place) { return IsTypeInMultiplayer(map, place, 2); }

template <int... kIvar7>
bool IsDeathmatchOf(const MapEntry& map, MapPlace place) {
  return IsDeathmatch(map, place) && ((map.Ivar7 == kIvar7) || ...);
}

template <bool kIvar12>
bool IsStrategyOf(const MapEntry& map, MapPlace place) {
  return IsStrategy(map, place) && map.Ivar12Set == kIvar12;
}

bool IsAny(const MapEntry&, MapPlace) { return true; }
bool IsInstant(const MapEntry&, MapPlace place) { return place == MapPlace::kInstant; }

bool IsOther(const MapEntry& map, MapPlace place) {
  return !IsInstant(map, place) && !IsDeathmatch(map, place) && !IsStrategy(map, place);
}

constexpr MapSubType kUnknownSubType = {-1, "Unknown", "dm"};
constexpr MapSubType kSubTypes[] = {
    {0, "Normal", "dm"}, {1, "KOTH", "koth"}, {2, "CTF", "ctf"},   {3, "Loot", "loot"},
    {5, "Race", "race"}, {6, "Race", "race"}, {7, "Normal", "dm"},
};

}  // namespace

const std::vector<MapPage> kMapPages = {
    {"RMap", "Maps", 0, kAllSubTypes, IsAny},
    {"CMap1", "DeathMatch", 1, kAllSubTypes, IsDeathmatch},
    {"SMap1.0", "Normal", 1, 0, IsDeathmatchOf<0, 7>},
    {"SMap1.1", "Capture The Flag", 1, 1, IsDeathmatchOf<2>},
    {"SMap1.2", "King of the Hill", 1, 2, IsDeathmatchOf<1>},
    {"SMap1.3", "Loot", 1, 3, IsDeathmatchOf<3>},
    {"SMap1.4", "Race", 1, 4, IsDeathmatchOf<5, 6>},
    {"CMap2", "IA", 4, kAllSubTypes, IsInstant},
    {"CMap3", "MPI", 3, kAllSubTypes, IsStrategyOf<true>},
    {"CMap4", "Strategy", 2, kAllSubTypes, IsStrategyOf<false>},
    {"CMap5", "Other", 5, kAllSubTypes, IsOther},
};

const MapPage* FindMapPage(int mapType, int subType) {
  for (const MapPage& page : kMapPages)
    if (page.mapType == mapType && page.subType == subType) return &page;
  return nullptr;
}

const MapSubType& SubTypeOf(std::int16_t ivar7) {
  for (const MapSubType& subType : kSubTypes)
    if (subType.ivar7 == ivar7) return subType;
  return kUnknownSubType;
}

std::string TranslateMapPath(const std::string& path) {
  if (!ModRenamesActive) return path;
  for (std::size_t i = 1; i < ModRenames.size(); ++i) {
    const RenameEntry& rename = ModRenames[i];
    if (win::StartsWithNoCase(path, rename.From)) return rename.To + path.substr(rename.From.size());
  }
  return path;
}

bool IsMultiplayerPath(const std::string& folder) { return IsBelowMissions(folder, "multiplayer"); }
bool IsInstantPath(const std::string& folder) { return IsBelowMissions(folder, "instant"); }

bool IsInModFolders(const std::string& folder) {
  const std::string place = TranslateMapPath(folder);
  for (std::size_t i = 1; i < SearchDirs.size(); ++i)
    if (win::StartsWithNoCase(place, SearchDirs[i] + "\\")) return true;
  return false;
}

MapPlace PlaceOfFolder(const std::string& folder) {
  if (IsMultiplayerPath(folder)) return MapPlace::kMultiplayer;
  return IsInstantPath(folder) ? MapPlace::kInstant : MapPlace::kElsewhere;
}

}  // namespace varnik
