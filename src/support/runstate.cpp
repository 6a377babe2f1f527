#include "support/runstate.h"

namespace varnik {

std::string AppPath;
bool DebugLog = false;
bool StartingUp = false;
bool GameRunning = false;
std::vector<std::string> SearchDirs(1);
int SelectedMapIndex = -1;
bool ShowOldMods = true;
bool HighPriority = false;
bool ClearBindataOnLaunch = false;

void ReadOptionFlags(const win::SettingsSnapshot& stored) {
  ShowOldMods = OptionIsOn("OldMods", stored);
  HighPriority = OptionIsOn("HighPri", stored);
  ClearBindataOnLaunch = OptionIsOn("BinDat", stored);
}

}  // namespace varnik
