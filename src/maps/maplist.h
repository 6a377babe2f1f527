#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "maps/mapentry.h"

// All maps of the selected install.
namespace varnik {

// Rows from index 1; index 0 is empty. Written by LoadMapList and ClearMapList only.
extern const std::vector<MapEntry>& MapList;

// MapList holds at least one real row.
extern const bool& MapsLoaded;

// LoadMapList has run since the last ClearMapList.
extern const bool& MapLoadTried;

// Empties the catalogue, sets SelectedMapIndex to -1 and lets the conversion question come again.
void ClearMapList();

// From `varnik.lst` in the install root when it exists and `rescan` is false, else by a scan that writes it. `progress` is told each step in
// words and may be empty. A failure ends the load; what was read stands.
void LoadMapList(bool rescan, const std::function<void(const std::string&)>& progress = {});

constexpr int kAllSubTypes = 20;

// Rows of MapList that a page shows, grouped by folder name as SearchDirs gives them; a row that matches two names stands twice.
// The numbers name a page as the tree does: see kMapPages.
std::vector<std::size_t> MapRowsOfPage(int mapType, int subType);

struct MapPage {
  const char* key;  // of its tree node
  const char* caption;
  int mapType;
  int subType;
};

// In the order of the tree.
extern const std::vector<MapPage> kMapPages;

}  // namespace varnik
