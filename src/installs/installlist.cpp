#include "installs/installlist.h"

#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "support/debuglog.h"
#include "support/ini_sm.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"
#include "support/runstate.h"

namespace varnik {
namespace {

// The game shipped without this file first; its patches bring it somewhere below addon.
std::string DetectVersion(const std::string& root) {
  const std::string file = FindFirstFile(root + "addon\\", "localize.odf");
  return file.empty() ? "1.0" : ReadIniValue("Network", "VersionStr", file, "N/A");
}

InstallEntry MakeInstallEntry(const std::string& path, const std::string& description) {
  InstallEntry entry{path, "", ""};
  if (!IsBZ2Install(path)) return entry;
  entry.Version = DetectVersion(path);
  entry.Description = description.empty() ? "(" + entry.Version + ")" + path : description;
  return entry;
}

}  // namespace

bool IsBZ2Install(const std::string& path) {
  const std::string trimmed = win::Trim(path);
  if (trimmed.empty()) return false;
  const std::string folder = win::WithSeparator(trimmed);
  return FileExists(folder + "bzone.exe") && FileExists(folder + "data.pak") && FileExists(folder + "binkw32.dll");
}

std::string StoredInstallPath(std::size_t row, const win::SettingsSnapshot& stored) {
  const std::string path = stored.Get(kInstallsSection, "BZ2Loc" + std::to_string(row));
  const std::string kept = row == 0 ? win::Trim(path) : path;
  return kept.empty() ? kept : win::WithSeparator(kept);
}

std::string StoredInstallDescription(std::size_t row, const win::SettingsSnapshot& stored) {
  return win::Trim(stored.Get(kInstallsSection, "BZ2Des" + std::to_string(row)));
}

bool StoredInstallIsTicked(std::size_t row, const win::SettingsSnapshot& stored) {
  return win::Trim(stored.Get(kInstallsSection, "BZ2Sel" + std::to_string(row), "No")) == "Yes";
}

void ReadInstallList(const win::SettingsSnapshot& stored) {
  LogLine("LoadBZ2List Begin");
  std::vector<InstallEntry> rows;
  for (std::string path; !(path = StoredInstallPath(rows.size(), stored)).empty();)
    rows.push_back(MakeInstallEntry(path, StoredInstallDescription(rows.size(), stored)));
  if (!rows.empty()) SetInstallList(std::move(rows));
}

bool IsOffered(std::size_t row, const win::SettingsSnapshot& stored) {
  return row < InstallList.size() && !InstallList[row].Description.empty() && StoredInstallIsTicked(row, stored);
}

std::int16_t StoredActiveInstall(const win::SettingsSnapshot& stored) {
  return win::RoundToInt16(win::LeadingNumber(stored.Get(kInstallsSection, kActiveKey, "-1"))).value_or(-1);
}

void StoreActiveInstall(std::int16_t row) { Store(kInstallsSection, kActiveKey, std::to_string(row)); }

void UseInstallFolder(const std::string& path) {
  SetInstallList({MakeInstallEntry(win::WithSeparator(path), "")});
  SelectInstall(0);
}

}  // namespace varnik
