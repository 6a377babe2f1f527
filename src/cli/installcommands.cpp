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

constexpr char kNotStored[] = "the list cannot be stored; it is as it was";

// Empty behind the end of the list.
std::string ListedPath(std::size_t row, const win::SettingsSnapshot& stored) {
  std::size_t n = 0;
  while (n < row && !StoredInstallPath(n, stored).empty())
    ++n;
  return n == row ? StoredInstallPath(row, stored) : "";
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
  const std::string folder = GivenFolder(arguments.folder);
  if (!IsBZ2Install(folder)) return Fail(folder, "no install: bzone.exe, data.pak and binkw32.dll are not all there");
  bool isNew = true;
  const bool isStored = ChangeLocations(Selected::kKeep, [&](LocationList& list, const auto&) {
    isNew = AddLocation(list, folder);
    if (!isNew) return false;
    list.Descriptions[list.rows.size() - 1] = arguments.description;
    return true;
  });
  if (!isStored) return Fail(folder, kNotStored);
  return isNew ? ListInstalls(arguments) : Fail(folder, "is listed already");
}

int RemoveInstall(const Arguments& arguments) {
  std::string path;
  const bool isStored = ChangeLocations(Selected::kForget, [&](LocationList& list, const auto& stored) {
    path = ListedPath(arguments.index, stored);
    RemoveLocation(list, RowOfPath(list.rows, path));
    return !path.empty();
  });
  if (!isStored) return Fail(std::to_string(arguments.index), kNotStored);
  if (path.empty()) return FailAtRow(arguments);
  Note("no install is selected now");
  return ListInstalls(arguments);
}

int SelectInstallRow(const Arguments& arguments) {
  std::string path;
  bool isInstall = false;
  const bool isStored = Update(kInstallsSection, [&](const auto& stored) -> std::optional<win::SectionChange> {
    path = ListedPath(arguments.index, stored);
    isInstall = IsBZ2Install(path);
    if (!isInstall) return std::nullopt;
    return win::SectionChange{{{kActiveKey, std::to_string(arguments.index)}}};
  });
  if (!isStored) return Fail(std::to_string(arguments.index), kNotStored);
  if (path.empty()) return FailAtRow(arguments);
  return isInstall ? ListInstalls(arguments) : Fail(path, "holds no install");
}

}  // namespace varnik::cli
