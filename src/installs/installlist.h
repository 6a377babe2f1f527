#pragma once

#include "support/install.h"
#include "support/settings.h"

#include <cstddef>

// The installs that the player keeps, in the player's own order, and how a folder is recognised as one.
namespace varnik {

// True when bzone.exe, data.pak and binkw32.dll all exist in the folder.
bool IsBZ2Install(const std::string& path);

// What the store holds for a row: the folder with a separator behind it, empty where the list ends; the description,
// trimmed; whether the row is ticked. Only the folder of row 0 is trimmed.
std::string StoredInstallPath(std::size_t row, const win::SettingsSnapshot& stored = StoredSettings());
std::string StoredInstallDescription(std::size_t row, const win::SettingsSnapshot& stored = StoredSettings());
bool StoredInstallIsTicked(std::size_t row, const win::SettingsSnapshot& stored = StoredSettings());

// Fills the list from the settings store. Leaves CurrentInstall alone. An empty store leaves the list as it was.
void ReadInstallList(const win::SettingsSnapshot& stored = StoredSettings());

// True when the menus offer the row: it is ticked in the store and holds an install.
bool IsOffered(std::size_t row, const win::SettingsSnapshot& stored = StoredSettings());

// The row that was selected last, as the store holds it under kActiveKey; -1 for none. It need not be in the list.
constexpr char kActiveKey[] = "Active";
std::int16_t StoredActiveInstall(const win::SettingsSnapshot& stored = StoredSettings());
void StoreActiveInstall(std::int16_t row);

// Makes the folder, which need not be in the store, the selected install: one row, index 0.
void UseInstallFolder(const std::string& path);

}  // namespace varnik
