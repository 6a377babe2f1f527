#pragma once

#include "support/modfindfile.h"
#include "support/settings.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// The list of installs while it is being edited: a private copy, which reaches the store only by SaveLocations.
namespace varnik {

struct Location {
  std::string Path;      // ends in `\` or `/`
  bool Offered = false;  // ticked: the menus offer it
};

struct LocationList {
  std::vector<Location> rows;
  // By row index, and one longer than the rows: a store with a path twice has a description behind the last row.
  std::vector<std::string> Descriptions;
};

// The list as the store holds it. Of two rows with the same path only the first stays, so the rows behind it move up
// while their descriptions and ticks keep the place that they have in the store.
LocationList LoadLocations(const win::SettingsSnapshot& stored = StoredSettings());

// Adds the path at the end, offered and without a description. False when it is a row already, compared exactly and
// with case, each row trimmed.
bool AddLocation(LocationList& list, const std::string& path);

void RemoveLocation(LocationList& list, std::size_t row);

// Exchanges two rows that are both in the list, with their ticks and descriptions.
void SwapLocations(LocationList& list, std::size_t a, std::size_t b);

// Adds the folders of the found files that hold an install, unless a row names that folder in whatever spelling.
// `results` are from a search for bzone.exe, index 0 unused.
void AddSearchResults(LocationList& list, const FileSearchResults& results);

// Replaces the list that the store holds, the row selected last included, in one write: a kill leaves the old list or
// the new one. False when it cannot be stored.
bool SaveLocations(const LocationList& list);

// Lets `change` alter the stored list, which no other process changes meanwhile, and stores it in the same way;
// `change` returns false to leave it. With kKeep the row selected last stays selected while its path is listed.
enum class Selected { kForget, kKeep };
using LocationChange = std::function<bool(LocationList& list, const win::SettingsSnapshot& stored)>;
bool ChangeLocations(Selected selected, const LocationChange& change);

}  // namespace varnik
