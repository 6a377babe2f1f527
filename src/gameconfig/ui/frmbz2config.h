#pragma once

#include "windowing/button.h"
#include "windowing/checkbox.h"
#include "windowing/frame.h"
#include "windowing/label.h"

#include <vector>

namespace varnik {

// The page with the setting of the game's render.cfg.
class FrmBZ2Config {
 public:
  explicit FrmBZ2Config(win::Container& parent);

  // Reads the file, on a visit of the page.
  void LoadSettings();

  // For the hints of the status bar.
  std::vector<win::Control*> Controls() { return {&chkdarkPlants, &cmdCfgApply}; }

  win::Frame frmBZ2Config;
  win::CheckBox chkdarkPlants{frmBZ2Config, "chkdarkPlants", "Automatically darken the ground under trees"};
  win::Label lblSettingsWarning{
      frmBZ2Config, "lblSettingsWarning",
      "Warning: this page changes the game's own configuration file. Editing configuration files by "
      "hand may keep the game from starting; keep a copy of a file before you do."};
  win::Button cmdCfgApply{frmBZ2Config, "cmdCfgApply", "Apply"};
};

}  // namespace varnik
