#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "installs/installlist.h"
#include "installs/locations.h"
#include "support/settings.h"

#include <numeric>

namespace varnik::cli {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

template <class Entries>
std::size_t RowOfPath(const Entries& rows, const std::string& path) {
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (rows[i].Path == path) return i;
  return kNone;
}

Json RowAsJson(std::size_t row, bool isActive) {
  const InstallEntry& install = InstallList[row];
  return {{"Index", row},
          {"Path", Text(install.Path)},
          {"Description", Text(install.Description)},
          {"Version", Text(install.Version)},
          {"Valid", IsBZ2Install(install.Path)},
          {"Offered", IsOffered(row)},
          {"Active", isActive}};
}

Row RowAsText(std::size_t row, bool isActive) {
  const InstallEntry& install = InstallList[row];
  const char* const state = isActive                  ? "active"
                            : install.Version.empty() ? "no install"
                            : IsOffered(row)          ? ""
                                                      : "hidden";
  return {std::to_string(row), install.Version, state, install.Path, install.Description};
}

int FailAtRow(const Arguments& arguments) {
  return Fail(std::to_string(arguments.index), "the list has no install of this number");
}

}  // namespace

int ListInstalls(const Arguments& arguments) {
  ReadInstallList();
  // An emptied store leaves the rows read before.
  std::vector<std::size_t> rows(StoredInstallPath(0).empty() ? 0 : InstallList.size());
  std::iota(rows.begin(), rows.end(), 0);
  // With --root that folder is the selected install, listed or not.
  const std::size_t active = arguments.root ? RowOfPath(InstallList, GivenFolder(*arguments.root))
                                            : static_cast<std::size_t>(StoredActiveInstall());
  const auto asJson = [&](std::size_t row) { return RowAsJson(row, row == active); };
  const auto asRow = [&](std::size_t row) { return RowAsText(row, row == active); };
  return PrintList(arguments.json, rows, asJson, {"#", "Version", "State", "Path", "Description"}, asRow);
}

int AddInstall(const Arguments& arguments) {
  ReadInstallList();
  const std::string folder = GivenFolder(arguments.folder);
  if (!IsBZ2Install(folder)) return Fail(folder, "no install: bzone.exe, data.pak and binkw32.dll are not all there");
  LocationList list = LoadLocations();
  if (!AddLocation(list, folder)) return Fail(folder, "is listed already");
  list.rows.back().Offered = true;
  list.Descriptions[list.rows.size() - 1] = arguments.description;
  // Saving forgets which install is selected; an addition moves none, so that it can stay.
  const auto active = static_cast<std::size_t>(StoredActiveInstall());
  const std::string path = active < InstallList.size() ? InstallList[active].Path : "";
  SaveLocations(list);
  const std::size_t row = RowOfPath(list.rows, path);
  if (row != kNone) StoreActiveInstall(static_cast<std::int16_t>(row));
  return ListInstalls(arguments);
}

int RemoveInstall(const Arguments& arguments) {
  ReadInstallList();
  if (arguments.index >= InstallList.size()) return FailAtRow(arguments);
  LocationList list = LoadLocations();
  RemoveLocation(list, RowOfPath(list.rows, InstallList[arguments.index].Path));
  SaveLocations(list);
  Note("no install is selected now");
  return ListInstalls(arguments);
}

int SelectInstallRow(const Arguments& arguments) {
  ReadInstallList();
  if (arguments.index >= InstallList.size()) return FailAtRow(arguments);
  const std::string& path = InstallList[arguments.index].Path;
  if (!IsBZ2Install(path)) return Fail(path, "holds no install");
  StoreActiveInstall(static_cast<std::int16_t>(arguments.index));
  return ListInstalls(arguments);
}

}  // namespace varnik::cli
