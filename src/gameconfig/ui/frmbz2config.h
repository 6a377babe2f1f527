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
  win::CheckBox chkdarkPlants;
  win::Label lblSettingsWarning;
  win::Button cmdCfgApply;
};

}  // namespace varnik
