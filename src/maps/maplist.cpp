#include "maps/maplist.h"

#include "maps/mapconversion.h"
#include "maps/mapfiles.h"
#include "maps/mapmetadata.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/paths/paths.h"
#include "platform/system/process/services.h"
#include "platform/system/text/text.h"
#include "support/debuglog.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/runstate.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace varnik {
namespace {

std::vector<MapEntry> mapList(1);
bool mapsLoaded = false;
bool mapLoadTried = false;

// Events run during a load, and a handler may select another install. A load goes on only while the catalogue is its
// own.
unsigned generation = 0;

using Progress = std::function<void(const std::string&)>;
using IsStopped = std::function<bool()>;

class Load {
 public:
  Load(const Progress& progress, const IsStopped& isStopped)
      : progress_(progress), isStopped_(isStopped), files_(InstallRoot(), isStopped), generation_(generation) {}

  void ReadCache(const std::string& cache);
  void Scan(const std::string& cache);

 private:
  void Report(const std::string& text);
  bool Lost() const { return generation_ != generation; }
  bool Ended() const { return Lost() || (isStopped_ && isStopped_()); }
  bool ReadCacheLine(const std::string& line);
  bool ReadRow(std::size_t row, std::string& path, std::string& folder);

  const Progress& progress_;
  const IsStopped& isStopped_;
  MapFiles files_;
  const unsigned generation_;
};

void Load::Report(const std::string& text) {
  if (progress_) progress_(text);
  win::DoEvents();
}

std::string CountText(std::size_t row) { return "Processing Map: " + std::to_string(row); }

// The row takes its values when all of them are there.
bool Load::ReadRow(std::size_t row, std::string& path, std::string& folder) {
  MapEntry entry;
  if (!ParseMapEntry(entry, path, folder, files_) || Lost()) return false;
  mapList[row] = std::move(entry);
  return true;
}

bool Load::ReadCacheLine(const std::string& line) {
  const std::size_t row = mapList.size();
  mapList.emplace_back();
  const std::size_t comma = line.find(',');
  if (comma == std::string::npos) return false;
  const std::string_view fields = line;
  std::string path = win::Trim(fields.substr(0, comma));
  std::string folder = win::Trim(fields.substr(comma + 1));
  if (!ReadRow(row, path, folder)) return false;
  // A map whose .inf lies elsewhere moves to the folder of the .inf here; a scan gives it that of its .bzn.
  mapList[row].Folder = std::move(folder);
  mapsLoaded = true;
  return true;
}

void Load::ReadCache(const std::string& cache) {
  win::LineReader file(cache);
  while (!file.AtEnd()) {
    Report(CountText(mapList.size()));
    if (Ended() || !ReadCacheLine(file.ReadLine())) return;
  }
}

void Load::Scan(const std::string& cache) {
  Report("Loading Map File List");
  std::vector<std::string> found = files_.FindMaps();
  if (found.empty() || Ended()) return;
  mapList.resize(found.size() + 1);
  std::string lines;
  std::size_t row = 1;
  for (; row <= found.size(); ++row) {
    Report(CountText(row));
    std::string folder;
    if (Ended() || !ReadRow(row, found[row - 1], folder)) break;
    lines += found[row - 1] + "," + folder + "\r\n";
  }
  if (Lost()) return;
  if (Ended()) return mapList.resize(1);
  mapsLoaded = row > found.size();
  // Only now, and all at once: a cache is always trusted, and a program that is killed must not leave half of one.
  win::WriteWholeFile(cache, lines);
}

std::string CacheFile() { return InstallRoot() + "varnik.lst"; }

// The empty name at index 0 of SearchDirs counts here, for folders that begin with a backslash.
bool IsBelow(const std::string& folder, const std::string& searchDir) {
  return win::StartsWithNoCase(folder, searchDir + "\\");
}

// A row's folder as the selected mod places it.
struct Placed {
  std::string folder;
  MapPlace place;
};

Placed PlacedFolder(const std::string& folder) { return {TranslateMapPath(folder), PlaceOfFolder(folder)}; }

}  // namespace

const std::vector<MapEntry>& MapList = mapList;
const bool& MapsLoaded = mapsLoaded;
const bool& MapLoadTried = mapLoadTried;

void ClearMapList() {
  LogLine("ClearMaps Begin");
  ++generation;
  mapList.assign(1, {});
  mapLoadTried = false;
  SelectedMapIndex = -1;
  mapsLoaded = false;
  ResetConversion();
}

void LoadMapList(bool rescan, const Progress& progress, const IsStopped& isStopped) {
  ClearMapList();
  mapLoadTried = true;
  if (CurrentInstall < 0) return;
  const std::string cache = CacheFile();
  Load load(progress, isStopped);
  if (!rescan && FileExists(cache))
    load.ReadCache(cache);
  else
    load.Scan(cache);
}

std::vector<std::string> CachedMapNames() {
  std::vector<std::string> names;
  if (CurrentInstall < 0) return names;
  for (win::LineReader file(CacheFile()); !file.AtEnd();) {
    const std::string line = file.ReadLine();
    names.push_back(win::FileNameOf(win::Trim(line.substr(0, line.find(',')))));
  }
  return names;
}

std::vector<std::size_t> MapRowsOfPage(int mapType, int subType) {
  std::vector<std::size_t> rows;
  const MapPage* const page = FindMapPage(mapType, subType);
  if (page == nullptr || !MapsLoaded) return rows;
  std::unordered_map<std::string, Placed> places;  // few folders hold many maps
  for (const std::string& name : SearchDirs)
    for (std::size_t row = 1; row < mapList.size(); ++row) {
      const auto [found, isNew] = places.try_emplace(mapList[row].Folder);
      Placed& placed = found->second;
      if (isNew) placed = PlacedFolder(mapList[row].Folder);
      if (IsBelow(placed.folder, name) && page->shows(mapList[row], placed.place)) rows.push_back(row);
    }
  return rows;
}

std::vector<std::string> PagesOfMapRow(std::size_t row) {
  std::vector<std::string> keys;
  if (row == 0 || row >= mapList.size()) return keys;
  const Placed placed = PlacedFolder(mapList[row].Folder);
  const auto holds = [&](const std::string& name) { return IsBelow(placed.folder, name); };
  if (std::none_of(SearchDirs.begin(), SearchDirs.end(), holds)) return keys;
  for (const MapPage& page : kMapPages)
    if (page.shows(mapList[row], placed.place)) keys.push_back(page.key);
  return keys;
}

}  // namespace varnik
