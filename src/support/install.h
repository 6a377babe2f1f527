#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The installs and the selected one, as the rest of the program reads them.
namespace varnik {

struct InstallEntry {
  std::string Path;         // ends in `\` or `/`
  std::string Description;  // never empty for a folder that holds an install
  std::string Version;      // empty when the folder failed the install test; only the exact text 1.3 has a meaning
};

// Indexed from 0; a row's index is the number in its keys in the store. A row whose folder failed the install test
// stays, so that indices keep their meaning. Written by SetInstallList, which installs/installlist.h calls.
extern const std::vector<InstallEntry>& InstallList;
void SetInstallList(std::vector<InstallEntry> rows);

// Row of InstallList that is selected, -1 for none. Written by SelectInstall.
extern const std::int16_t& CurrentInstall;

// False, with no install selected, when the list has no such row.
bool SelectInstall(std::int16_t row);

// Of the selected install; empty, and no version, with none selected.
std::string InstallRoot();
std::string InstallVersion();

// True when the selected install's version is exactly 1.3, on which everything special to that version depends.
bool IsVersion13();

}  // namespace varnik
