#include "support/install.h"

#include <utility>

namespace varnik {
namespace {

std::vector<InstallEntry> installs;
std::int16_t currentInstall = -1;

bool IsRow(std::int16_t row) { return row >= 0 && static_cast<std::size_t>(row) < installs.size(); }

}  // namespace

const std::vector<InstallEntry>& InstallList = installs;
const std::int16_t& CurrentInstall = currentInstall;

void SetInstallList(std::vector<InstallEntry> rows) { installs = std::move(rows); }

bool SelectInstall(std::int16_t row) {
  currentInstall = IsRow(row) ? row : std::int16_t{-1};
  return IsRow(row);
}

std::string InstallRoot() { return IsRow(currentInstall) ? installs[currentInstall].Path : ""; }

std::string InstallVersion() { return IsRow(currentInstall) ? installs[currentInstall].Version : ""; }

bool IsVersion13() { return InstallVersion() == "1.3"; }

}  // namespace varnik
