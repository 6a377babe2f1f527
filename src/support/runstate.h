#pragma once

#include "support/settings.h"

#include <cstdint>
#include <string>
#include <vector>

// What the subsystems share while the program runs. Each variable says who writes it; nobody else does.
namespace varnik {

// The program's folder, ends in a backslash. Written once, by Main or by the command-line tool.
extern std::string AppPath;

// Switches the debug log on. Nobody writes it but a debugger: the log is compiled in and silent.
extern bool DebugLog;

// True while the start brings up the main window. Written by Main.
extern bool StartingUp;

// True exactly while ShellAndWait waits. Written by ShellAndWait.
extern bool GameRunning;

// Folder names under the install root in which game files are looked for; index 0 is empty. Written by Main and by
// SelectModFolders.
extern std::vector<std::string> SearchDirs;

// Row of MapList in use; -1 no map, -2 a name typed by hand. Written by the map page, by ClearMapList, by
// SelectModFolders and by DeactivateMod.
extern int SelectedMapIndex;

// Options. Written by the options dialog and by ReadOptionFlags, which the main window and the command-line tool call
// at their start.
extern bool ShowOldMods;
extern bool HighPriority;
extern bool ClearBindataOnLaunch;

// Sets the three options from the settings store.
void ReadOptionFlags(const win::SettingsSnapshot& stored = StoredSettings());

}  // namespace varnik
