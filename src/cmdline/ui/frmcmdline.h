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
  // `mapNameLeft` is told when the box for the map's name loses the focus.
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
  win::ListBox lstCmdLine;
  win::Label lblCMDReset;
  win::Button cmdCMDReset;
  win::Label lblCmdLine;
  win::TextBox txtCmdLine;
  win::Label lblMapName;
  win::TextBox txtMapFileName;
  win::CheckBox chkCMDEdit;

 private:
  void PlaceControls();
  void FillList(std::vector<OptionEntry> options);
  void lstCmdLine_Click();
  bool TicksChanged() const;

  std::vector<OptionEntry> options_;  // the rows, ticked as at the last build of txtCmdLine
};

}  // namespace varnik
