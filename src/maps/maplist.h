#pragma once

#include "maps/mapclass.h"
#include "maps/mapentry.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// All maps of the selected install.
namespace varnik {

// Rows from index 1; index 0 is empty. Written by LoadMapList and ClearMapList only. Rows beyond 32,767 are rows like
// the others, since an index is an int wherever it travels.
extern const std::vector<MapEntry>& MapList;

// MapList holds at least one real row.
extern const bool& MapsLoaded;

// LoadMapList has run since the last ClearMapList.
extern const bool& MapLoadTried;

// Empties the catalogue, sets SelectedMapIndex to -1 and lets the conversion question come again.
void ClearMapList();

// From `varnik.lst` in the install root when it exists and `rescan` is false, else by a scan that writes it. `progress`
// gets each step in words and may be empty. What cannot be read on (a line of the cache without a comma, a number
// beyond 16 bits) ends the load silently: the rows so far stand, and the one that failed stays empty. So does a
// catalogue that an event cleared during the load. `isStopped`, which may be empty, is asked all the time; once it says
// true the load ends as well, and a scan then leaves no row and `varnik.lst` as it was.
void LoadMapList(bool rescan, const std::function<void(const std::string&)>& progress = {},
                 const std::function<bool()>& isStopped = {});

// File names of the maps in `varnik.lst` of the selected install, in its order, without a look at any map. Empty where
// there is no such file.
std::vector<std::string> CachedMapNames();

// Rows of MapList that a page shows, grouped by folder name as SearchDirs gives them; a row that matches two names
// stands twice. The numbers name a page as kMapPages does; others show nothing.
std::vector<std::size_t> MapRowsOfPage(int mapType, int subType);

// Keys of the pages that show a row of MapList while the selected mod is the one it is.
std::vector<std::string> PagesOfMapRow(std::size_t row);

}  // namespace varnik
