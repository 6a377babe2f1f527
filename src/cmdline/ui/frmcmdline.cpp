#include "cmdline/ui/frmcmdline.h"

#include "platform/system/process/services.h"
#include "support/debuglog.h"

#include <utility>

namespace varnik {

FrmCmdLine::FrmCmdLine(win::Container& parent, std::function<void()> mapNameLeft) : frmCmdLine(parent, "frmCmdLine") {
  PlaceControls();
  lstCmdLine.Click = [this] { lstCmdLine_Click(); };
  cmdCMDReset.Click = [this] { populatecmdlinelist(); };
  txtMapFileName.LostFocus = std::move(mapNameLeft);
}

void FrmCmdLine::PlaceControls() {
  frmCmdLine.Move(2280, 360, 5520, 5010);
  lstCmdLine.Move(240, 240, 5040, 1140);
  lstCmdLine.SetAccessibleName("Command line options");
  lblCMDReset.Move(240, 1440, 5040, 690);
  cmdCMDReset.Move(240, 2160, 1815, 345);
  lblCmdLine.Move(240, 2580, 5040, 690);
  txtCmdLine.Move(240, 3270, 5040, 315);
  txtCmdLine.SetAccessibleName("Options as text");
  lblMapName.Move(240, 3660, 5040, 690);
  txtMapFileName.Move(240, 4380, 3840, 315);
  txtMapFileName.SetAccessibleName("Map file name");
  chkCMDEdit.Move(4260, 4380, 1020, 315);
  cmdCMDReset.SetMnemonic('R');
  chkCMDEdit.SetMnemonic('d');
  lblCmdLine.SetTarget(txtCmdLine);
  lblCmdLine.SetMnemonic('M');
  lblMapName.SetTarget(txtMapFileName);
  lblMapName.SetMnemonic('F');
  lstCmdLine.SetAnchors(win::kFill);
  cmdCMDReset.SetAnchors(win::kBottomLeft);
  chkCMDEdit.SetAnchors(win::kBottomRight);
  for (win::Control* control :
       std::initializer_list<win::Control*>{&lblCMDReset, &lblCmdLine, &txtCmdLine, &lblMapName, &txtMapFileName})
    control->SetAnchors(win::kBottomAcross);
}

void FrmCmdLine::populatecmdlinelist() {
  LogLine("PopulateCMDLineList Begin");
  ClearList();
  txtCmdLine.SetText("");
  const std::string file = OptionListFile();
  if (file.empty()) {
    win::MsgBox("varnik.cmd not found. Command Line Parameter listing disabled.");
    return;
  }
  std::optional<std::vector<OptionEntry>> options = ReadOptionList(file);
  if (!options) {
    win::MsgBox(OptionListProblem(file));
    return;
  }
  FillList(std::move(*options));
  win::DoEvents();
  lstCmdLine.SetListIndex(0);
  lstCmdLine_Click();
}

void FrmCmdLine::FillList(std::vector<OptionEntry> options) {
  options_ = std::move(options);
  const win::ListUpdate update(lstCmdLine);
  for (OptionEntry& option : options_) {
    lstCmdLine.AddItem(option.text);
    lstCmdLine.SetItemData(lstCmdLine.NewIndex(), option.hasSubParam ? 1 : 0);
    lstCmdLine.SetSelected(lstCmdLine.NewIndex(), option.ticked);
    option.ticked = false;  // so that the next click finds the ticks changed
  }
}

void FrmCmdLine::ClearList() {
  lstCmdLine.Clear();
  options_.clear();
}

// A click that only moves the cursor leaves the text alone, and so any edit by hand.
void FrmCmdLine::lstCmdLine_Click() {
  if (!TicksChanged()) return;
  for (std::size_t i = 0; i < options_.size(); ++i)
    options_[i].ticked = lstCmdLine.Selected(static_cast<int>(i));
  txtCmdLine.SetText(JoinTickedOptions(options_));
}

bool FrmCmdLine::TicksChanged() const {
  for (std::size_t i = 0; i < options_.size(); ++i)
    if (options_[i].ticked != lstCmdLine.Selected(static_cast<int>(i))) return true;
  return false;
}

std::string FrmCmdLine::buildcmdline(bool keepEditSwitches) const {
  return BuildCommandLine({txtCmdLine.Text(), txtMapFileName.Text(), chkCMDEdit.Value() == 1}, keepEditSwitches);
}

}  // namespace varnik
