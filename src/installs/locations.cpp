#include "installs/locations.h"

#include "installs/installlist.h"
#include "platform/system/text/text.h"
#include "support/settings.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace varnik {

LocationList LoadLocations() {
  LocationList list;
  const win::SettingsSnapshot stored = StoredSettings();
  std::string path;
  for (std::size_t n = 0; !(path = StoredInstallPath(n, stored)).empty(); ++n) {
    AddLocation(list, path);
    list.Descriptions.resize(std::max(list.Descriptions.size(), n + 1));
    list.Descriptions[n] = StoredInstallDescription(n, stored);
    // Behind a path that stood twice there is no row of this number.
    if (n < list.rows.size()) list.rows[n].Offered = StoredInstallIsTicked(n, stored);
  }
  return list;
}

bool AddLocation(LocationList& list, const std::string& path) {
  for (const Location& row : list.rows)
    if (win::Trim(row.Path) == path) return false;
  list.rows.push_back({path, false});
  list.Descriptions.resize(list.rows.size() + 1);
  return true;
}

void RemoveLocation(LocationList& list, std::size_t row) {
  if (row >= list.rows.size()) return;
  list.rows.erase(list.rows.begin() + static_cast<std::ptrdiff_t>(row));
  list.Descriptions.erase(list.Descriptions.begin() + static_cast<std::ptrdiff_t>(row));
}

void SwapLocations(LocationList& list, std::size_t a, std::size_t b) {
  if (a >= list.rows.size() || b >= list.rows.size()) return;
  std::swap(list.rows[a], list.rows[b]);
  std::swap(list.Descriptions[a], list.Descriptions[b]);
}

void AddSearchResults(LocationList& list, const FileSearchResults& results) {
  constexpr std::string_view kProgram = "bzone.exe";
  for (std::size_t i = 1; i < results.size(); ++i) {
    std::string folder = win::Trim(results[i]);
    folder.erase(folder.size() - std::min(folder.size(), kProgram.size()));
    if (IsBZ2Install(folder)) AddLocation(list, folder);
  }
}

void SaveLocations(const LocationList& list) {
  std::vector<win::SettingRow> rows;
  for (std::size_t i = 0; i < list.rows.size(); ++i) {
    const std::string n = std::to_string(i);
    rows.push_back({"BZ2Loc" + n, list.rows[i].Path});
    rows.push_back({"BZ2Des" + n, list.Descriptions[i]});
    rows.push_back({"BZ2Sel" + n, list.rows[i].Offered ? "Yes" : "No"});
  }
  // Without a first row the section counts as empty, and its other keys stay.
  const bool holdsList = !ReadStored(kInstallsSection, "BZ2Loc0").empty();
  StoreAll(kInstallsSection, rows, holdsList ? win::OtherKeys::kRemove : win::OtherKeys::kKeep);
}

}  // namespace varnik
