#include "maps/mapdetails.h"

#include "maps/mapclass.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"

#include <algorithm>
#include <vector>

namespace varnik {
namespace {

std::string TypeLines(const MapEntry& map) {
  if (IsInstantPath(map.Folder)) return "Map Type: Instant Action";
  if (map.Ivar5 == 1) return std::string("Map Type: Deathmatch\r\n Subtype: ") + SubTypeOf(map.Ivar7).caption;
  if (map.Ivar5 != 2) return "Map Type: N/A";
  if (!map.Ivar3Set) return "Map Type: Strategy";
  return map.Ivar12Set ? "Map Type: MPI" : "Map Type: Team Strategy";
}

using Accept = std::function<bool(const std::string& path)>;

// Beside the map under any of the names, else the first name that the selected mod's folders hold.
std::string FindFirstOf(const MapEntry& map, const std::vector<std::string>& names, const Accept& accept = {}) {
  for (const std::string& name : names) {
    const std::string beside = InstallRoot() + map.Folder + name;
    if (FileExists(beside) && (!accept || accept(beside))) return beside;
  }
  for (const std::string& name : names) {
    const std::string found = FindInSearchDirs(name, 1);
    if (!found.empty() && (!accept || accept(found))) return found;
  }
  return "";
}

// Each name once: looking a second time for what is not there could take a while.
std::vector<std::string> PictureNames(const std::string& pictureFile) {
  const std::string stem = pictureFile.substr(0, pictureFile.size() - std::min<std::size_t>(3, pictureFile.size()));
  std::vector<std::string> names = {pictureFile};
  for (const char* const extension : {"png", "jpg", "bmp"})
    if (stem + extension != pictureFile) names.push_back(stem + extension);
  return names;
}

}  // namespace

std::string MapDetails(const MapEntry& map) { return "Map Name: " + map.Title + "\r\n" + TypeLines(map); }

std::string FindMapDescription(const MapEntry& map) { return FindFirstOf(map, {map.DescFile}); }

std::string FindMapPicture(const MapEntry& map, const Accept& accept) {
  return FindFirstOf(map, PictureNames(map.PictureFile), accept);
}

}  // namespace varnik
