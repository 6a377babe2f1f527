#include "installs/locations.h"

#include "installs/installlist.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "support/settings.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace varnik {

namespace {

bool AddRow(LocationList& list, const Location& added) {
  for (const Location& row : list.rows)
    if (win::Trim(row.Path) == added.Path) return false;
  list.rows.push_back(added);
  list.Descriptions.resize(list.rows.size() + 1);
  return true;
}

// A folder that a search found, as a person would type it: `/games/bz2\`.
std::string AsTyped(const std::string& folder) {
  if (folder.empty() || !win::IsSeparator(folder[0])) return folder;
  std::string path = win::ToNativeSpelling(folder);
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  return win::WithSeparator(path);
}

bool IsListed(const LocationList& list, const std::string& folder) {
  return std::any_of(list.rows.begin(), list.rows.end(),
                     [&](const Location& row) { return win::IsSamePath(row.Path, folder); });
}

}  // namespace

LocationList LoadLocations(const win::SettingsSnapshot& stored) {
  LocationList list;
  std::string path;
  for (std::size_t n = 0; !(path = StoredInstallPath(n, stored)).empty(); ++n) {
    AddRow(list, {path, false});
    list.Descriptions.resize(std::max(list.Descriptions.size(), n + 1));
    list.Descriptions[n] = StoredInstallDescription(n, stored);
    // Behind a path that stood twice there is no row of this number.
    if (n < list.rows.size()) list.rows[n].Offered = StoredInstallIsTicked(n, stored);
  }
  return list;
}

bool AddLocation(LocationList& list, const std::string& path) { return AddRow(list, {path, true}); }

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
    if (IsBZ2Install(folder) && !IsListed(list, folder)) AddLocation(list, AsTyped(folder));
  }
}

namespace {

win::SectionChange ChangeOf(const LocationList& list, const win::SettingsSnapshot& stored) {
  win::SectionChange change;
  for (std::size_t i = 0; i < list.rows.size(); ++i) {
    const std::string n = std::to_string(i);
    change.rows.push_back({"BZ2Loc" + n, list.rows[i].Path});
    change.rows.push_back({"BZ2Des" + n, list.Descriptions[i]});
    change.rows.push_back({"BZ2Sel" + n, list.rows[i].Offered ? "Yes" : "No"});
  }
  // Without a first row the section counts as empty, and its other keys stay.
  const bool holdsList = !stored.Get(kInstallsSection, "BZ2Loc0").empty();
  change.others = holdsList ? win::OtherKeys::kRemove : win::OtherKeys::kKeep;
  return change;
}

}  // namespace

bool SaveLocations(const LocationList& list) {
  return Update(kInstallsSection, [&](const win::SettingsSnapshot& stored) { return ChangeOf(list, stored); });
}

bool ChangeLocations(Selected selected, const LocationChange& change) {
  return Update(kInstallsSection, [&](const win::SettingsSnapshot& stored) -> std::optional<win::SectionChange> {
    LocationList list = LoadLocations(stored);
    if (!change(list, stored)) return std::nullopt;
    win::SectionChange rows = ChangeOf(list, stored);
    const std::int16_t active = selected == Selected::kKeep ? StoredActiveInstall(stored) : -1;
    const std::string path = active < 0 ? "" : StoredInstallPath(static_cast<std::size_t>(active), stored);
    const auto row = std::find_if(list.rows.begin(), list.rows.end(), [&](const auto& it) { return it.Path == path; });
    if (row != list.rows.end()) rows.rows.push_back({kActiveKey, std::to_string(row - list.rows.begin())});
    return rows;
  });
}

}  // namespace varnik
