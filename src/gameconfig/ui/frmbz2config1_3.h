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
  win::CheckBox chkFramerate{frmBZ2Config1_3, "chkFramerate", "Show Framerate(Note: Always on in Multiplayer)"};
  win::CheckBox chkVsync{frmBZ2Config1_3, "chkVsync", "VSync On"};
  win::Label lblViews{frmBZ2Config1_3, "lblViews", "View Settings for entering craft:"};
  win::Label lblHovercraft{frmBZ2Config1_3, "lblHovercraft", "Hovercraft:"};
  win::ComboBox cmbHovercraft{frmBZ2Config1_3, "cmbHovercraft"};
  win::Label lblPerson{frmBZ2Config1_3, "lblPerson", "Person:"};
  win::ComboBox cmbPerson{frmBZ2Config1_3, "cmbPerson"};
  win::Label lblTracked{frmBZ2Config1_3, "lblTracked", "Tracked:"};
  win::ComboBox cmbTracked{frmBZ2Config1_3, "cmbTracked"};
  win::Label lblWalker{frmBZ2Config1_3, "lblWalker", "Walker:"};
  win::ComboBox cmbWalker{frmBZ2Config1_3, "cmbWalker"};
  win::Label lblAltNick{frmBZ2Config1_3, "lblAltNick",
                        "Alternate IRC Nickname. Used if your login name is taken in IRC."};
  win::TextBox txtAltNick{frmBZ2Config1_3, "txtAltNick"};
  win::Label lblIRCUserID{frmBZ2Config1_3, "lblIRCUserID",
                          "IRC User ID. Used to identify you in IRC, but is not your nickname."};
  win::TextBox txtIRCUserID{frmBZ2Config1_3, "txtIRCUserID"};
  win::Label lblIRCFullName{frmBZ2Config1_3, "lblIRCFullName",
                            "Full Name to give the IRC server. Not used as your nickname."};
  win::TextBox txtIRCFullName{frmBZ2Config1_3, "txtIRCFullName"};
  win::Button cmdCFGApply1_3{frmBZ2Config1_3, "cmdCFGApply1_3", "Apply"};

 private:
  void PlaceControls();
  void PlaceViews(double top);
  void PlaceTexts(double top);
  void FillViews();
  void cmdCFGApply1_3_Click();
};

}  // namespace varnik
