#include "gameconfig/ui/frmbz2config.h"

#include "gameconfig/gamesettings.h"

namespace varnik {

FrmBZ2Config::FrmBZ2Config(win::Container& parent) : frmBZ2Config(parent, "frmBZ2Config") {
  frmBZ2Config.Move(2280, 360, 5520, 5010);
  chkdarkPlants.Move(240, 420, 5040, 315);
  lblSettingsWarning.Move(240, 960, 5040, 840);
  cmdCfgApply.Move(3900, 4440, 1380, 375);
  chkdarkPlants.SetMnemonic('u');
  cmdCfgApply.SetMnemonic('p');
  chkdarkPlants.SetAnchors(win::kAcross);
  lblSettingsWarning.SetAnchors(win::kAcross);
  cmdCfgApply.SetAnchors(win::kBottomRight);
  cmdCfgApply.Click = [this] { ApplyDarkPlants(chkdarkPlants.Value() != 0); };
}

void FrmBZ2Config::LoadSettings() { chkdarkPlants.SetValue(ReadDarkPlants()); }

}  // namespace varnik
