#pragma once

#include "definition/modentry.h"

#include <functional>
#include <string>
#include <vector>

// The mods that fit the selected install.
namespace varnik {

// In the order in which their files were found; row 0 is unused. Written by LoadModFile, AppendModRow and ClearModList
// only.
extern const std::vector<ModEntry>& ModList;

// At least one row was added.
extern const bool& ModListFilled;

// The selected mod's renames, index 0 empty, and whether there are any. Written by SelectModFolders and ClearModList.
extern const std::vector<RenameEntry>& ModRenames;
extern const bool& ModRenamesActive;

// Empties ModList, ModListFilled and ModRenames.
void ClearModList();

// Rebuilds the catalogue from the install root and then `mods\` of the program's folder. `progress` gets each step
// in words and may be empty. Does nothing with no install selected. When an event rebuilds the list during the call,
// that list stays.
void LoadModList(const std::function<void(const std::string&)>& progress = {});

constexpr char kDefinitionPattern[] = "*.bzm";

// A file of the older format drops out when one of its name lies in the program's own folder of mods.
bool StandsInModsFolder(const std::string& path);

// Adds at most one row. A file without the marker line, and one whose mod does not fit, add none.
void LoadModFile(std::string path);

void AppendModRow(ModEntry entry);

// The row's name with its state behind it, as the list of mods shows it.
std::string ModRowText(const ModEntry& entry);

// Row of the catalogue whose definition file has this file name (case-blind) or this path; 0 for none.
std::size_t FindMod(const std::string& nameOrPath);

// Sets SearchDirs, ModRenames and ModRenamesActive for a row of ModList, or for no mod (-1).
void SelectModFolders(int modIndex);

}  // namespace varnik
