#pragma once

#include "cmdline/optionlist.h"
#include "windowing/button.h"
#include "windowing/checkbox.h"
#include "windowing/frame.h"
#include "windowing/label.h"
#include "windowing/listbox.h"
#include "windowing/textbox.h"

#include <functional>
#include <string>
#include <vector>

namespace varnik {

// The command-line page: ticks become text, which may be edited by hand; at launch the map and the edit switch go round
// it.
class FrmCmdLine {
 public:
  // `mapNameLeft` is called when the box for the map's name loses the focus.
  FrmCmdLine(win::Container& parent, std::function<void()> mapNameLeft);

  // Fills the list from the option file of the selected install, else of the program; hand edits are lost.
  void populatecmdlinelist();

  std::string buildcmdline(bool keepEditSwitches) const;

  // With no install selected.
  void ClearList();

  // For the hints of the status bar.
  std::vector<win::Control*> Controls() {
    return {&lstCmdLine, &cmdCMDReset, &txtCmdLine, &txtMapFileName, &chkCMDEdit};
  }

  win::Frame frmCmdLine;
  win::ListBox lstCmdLine{frmCmdLine, "lstCmdLine", win::ListStyle::kCheckBoxes};
  win::Label lblCMDReset{
      frmCmdLine, "lblCMDReset",
      "Command line option changes stay set until Varnik is restarted, you click on the button below, or "
      "you change BZ2 locations."};
  win::Button cmdCMDReset{frmCmdLine, "cmdCMDReset", "Reset Defaults"};
  win::Label lblCmdLine{
      frmCmdLine, "lblCmdLine",
      "Manual Edit of Listbox Options. Note: Changes will be lost if you select/deselect/change options "
      "above after making changes here."};
  win::TextBox txtCmdLine{frmCmdLine, "txtCmdLine"};
  win::Label lblMapName{
      frmCmdLine, "lblMapName",
      "Map File Name, must end with .bzn or .trn, affected by selecting from the map list. Must be valid "
      "for /edit to be applied."};
  win::TextBox txtMapFileName{frmCmdLine, "txtMapFileName"};
  win::CheckBox chkCMDEdit{frmCmdLine, "chkCMDEdit", "/edit"};

 private:
  void PlaceControls();
  void FillList(std::vector<OptionEntry> options);
  void lstCmdLine_Click();
  bool TicksChanged() const;

  std::vector<OptionEntry> options_;  // the rows, ticked as at the last build of txtCmdLine
};

}  // namespace varnik
