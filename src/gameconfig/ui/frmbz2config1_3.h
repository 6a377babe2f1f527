#pragma once

#include "windowing/button.h"
#include "windowing/checkbox.h"
#include "windowing/combobox.h"
#include "windowing/frame.h"
#include "windowing/label.h"
#include "windowing/textbox.h"

#include <vector>

namespace varnik {

// The page with the settings that the game has from version 1.3 on.
class FrmBZ2Config1_3 {
 public:
  explicit FrmBZ2Config1_3(win::Container& parent);

  // Reads the game's file, on a visit of the page. False when there is none: the player has been told, and the page has
  // nothing to show.
  [[nodiscard]] bool LoadSettings();

  // For the hints of the status bar.
  std::vector<win::Control*> Controls();

  win::Frame frmBZ2Config1_3;
  win::CheckBox chkFramerate;
  win::CheckBox chkVsync;
  win::Label lblViews;
  win::Label lblHovercraft;
  win::ComboBox cmbHovercraft;
  win::Label lblPerson;
  win::ComboBox cmbPerson;
  win::Label lblTracked;
  win::ComboBox cmbTracked;
  win::Label lblWalker;
  win::ComboBox cmbWalker;
  win::Label lblAltNick;
  win::TextBox txtAltNick;
  win::Label lblIRCUserID;
  win::TextBox txtIRCUserID;
  win::Label lblIRCFullName;
  win::TextBox txtIRCFullName;
  win::Button cmdCFGApply1_3;

 private:
  void PlaceControls();
  void FillViews();
  void cmdCFGApply1_3_Click();
};

}  // namespace varnik
