#include "support/runstate.h"

#include "support/settings.h"

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

void ReadOptionFlags() {
  ShowOldMods = OptionIsOn("OldMods");
  HighPriority = OptionIsOn("HighPri");
  ClearBindataOnLaunch = OptionIsOn("BinDat");
}

}  // namespace varnik
