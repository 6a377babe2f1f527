#pragma once

#include "windowing/button.h"
#include "windowing/combobox.h"
#include "windowing/frame.h"
#include "windowing/label.h"
#include "windowing/picturebox.h"

#include <functional>
#include <string>
#include <vector>

namespace varnik {

// Two small services for the selected install: a viewer for the game's screenshots, and the emptying of its cache
// folder.
class FrmExtras {
 public:
  // `setHint` writes the first panel of the status bar.
  FrmExtras(win::Container& parent, std::function<void(const std::string&)> setHint);

  // Refills the list of screenshots, on a visit of the page.
  void populatescreenshots();

  // For the hints of the status bar.
  std::vector<win::Control*> Controls() { return {&cmbScreenshots, &imgScreenshot, &cmdClearBindata}; }

  win::Frame frmExtras;
  win::Label lblScreenshots{frmExtras, "lblScreenshots", "Display Screenshots(Aspect Ratio not Guarenteed):"};
  win::ComboBox cmbScreenshots{frmExtras, "cmbScreenshots"};
  win::PictureBox imgScreenshot{frmExtras, "imgScreenshot", win::PictureSize::kStretch};
  win::Label lblNoScreenshots{frmExtras, "lblNoScreenshots",
                              "There are no screenshots yet. The game puts them into the folder screenshots of the "
                              "install, as .bmp files."};
  win::Label lblClearBindata{frmExtras, "lblClearBindata",
                             "Clear Bindata deletes all files in your @rootdir\\data\\bindata folder."};
  win::Button cmdClearBindata{frmExtras, "cmdClearBindata", "Clear Bindata"};

 private:
  void cmbScreenshots_Click();

  std::function<void(const std::string&)> setHint_;
};

}  // namespace varnik
