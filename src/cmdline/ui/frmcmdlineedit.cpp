#include "cmdline/ui/frmcmdlineedit.h"

#include "cmdline/optionlist.h"
#include "platform/system/files/files.h"
#include "platform/system/process/services.h"
#include "support/modfileexists.h"
#include "windowing/shortcut.h"

#include <algorithm>
#include <utility>

namespace varnik {

namespace {

constexpr char kSaveQuestion[] = "Would you like to save your changes to the current file?";
constexpr char kSaveTitle[] = "Save Changes?";
constexpr int kEnter = 13;

}  // namespace

FrmCMDLineEdit::FrmCMDLineEdit(win::Container& parent, OptionEditHost host)
    : frmCMDLineEdit(parent, "frmCMDLineEdit"), host_(std::move(host)) {
  PlaceControls();
  WireControls();
}

void FrmCMDLineEdit::PlaceControls() {
  frmCMDLineEdit.Move(2280, 360, 5520, 5010);
  lblEditCMD.Move(240, 210, 5040, 480);
  lstCmdLineParam.Move(240, 720, 3480, 2100);
  lstCmdLineParam.SetAccessibleName("Command line parameters");
  cmdMoveUp.Move(3900, 720, 1380, 375);
  cmdMoveDown.Move(3900, 1200, 1380, 375);
  cmdAdd.Move(3900, 1680, 1380, 375);
  cmdRemove.Move(3900, 2160, 1380, 375);
  lblChangeParam.Move(240, 2910, 5040, 720);
  txtCmdEdit.Move(240, 3660, 3480, 315);
  txtCmdEdit.SetAccessibleName("Selected parameter");
  cmdSaveChanges.Move(3900, 3630, 1380, 375);
  cmdSaveFile.Move(240, 4260, 1740, 375);
  cmdDeleteCustom.Move(2160, 4260, 1740, 375);
  lblEditCMD.SetTarget(lstCmdLineParam);
  lblEditCMD.SetMnemonic('P');
  lblChangeParam.SetTarget(txtCmdEdit);
  lblChangeParam.SetMnemonic('Y');
  const std::pair<win::Button&, char> keys[] = {{cmdMoveUp, 'U'},      {cmdMoveDown, 'w'},    {cmdAdd, 'd'},
                                                {cmdRemove, 'R'},      {cmdSaveChanges, 'S'}, {cmdSaveFile, 'F'},
                                                {cmdDeleteCustom, 'C'}};
  for (const auto& [button, key] : keys)
    button.SetMnemonic(key);
  lblEditCMD.SetAnchors(win::kAcross);
  lstCmdLineParam.SetAnchors(win::kFill);
  for (win::Button* button : {&cmdMoveUp, &cmdMoveDown, &cmdAdd, &cmdRemove})
    button->SetAnchors(win::kTopRight);
  lblChangeParam.SetAnchors(win::kBottomAcross);
  txtCmdEdit.SetAnchors(win::kBottomAcross);
  cmdSaveChanges.SetAnchors(win::kBottomRight);
  cmdSaveFile.SetAnchors(win::kBottomLeft);
  cmdDeleteCustom.SetAnchors(win::kBottomLeft);
}

void FrmCMDLineEdit::WireControls() {
  lstCmdLineParam.Click = [this] { lstCmdLineParam_Click(); };
  lstCmdLineParam.ItemCheck = [this](int) { ListDirty = true; };
  lstCmdLineParam.DragRow = [this](int step) { MoveRow(step); };
  cmdMoveUp.Click = [this] { MoveRow(-1); };
  cmdMoveDown.Click = [this] { MoveRow(1); };
  cmdAdd.Click = [this] { cmdAdd_Click(); };
  cmdRemove.Click = [this] { cmdRemove_Click(); };
  txtCmdEdit.Change = [this] { txtCmdEdit_Change(); };
  txtCmdEdit.KeyPress = [this](int& key) {
    if (key == kEnter) cmdSaveChanges_Click();
  };
  cmdSaveChanges.Click = [this] { cmdSaveChanges_Click(); };
  cmdSaveFile.Click = [this] { cmdSaveFile_Click(); };
  cmdDeleteCustom.Click = [this] { cmdDeleteCustom_Click(); };
  win::AddShortcut(lstCmdLineParam, "Ins", [this] { cmdAdd_Click(); });
  win::AddShortcut(lstCmdLineParam, "Del", [this] {
    if (cmdRemove.Enabled()) cmdRemove_Click();
  });
  win::AddShortcut(lstCmdLineParam, "Ctrl+Up", [this] { MoveRow(-1); });
  win::AddShortcut(lstCmdLineParam, "Ctrl+Down", [this] { MoveRow(1); });
  win::AddShortcut(frmCMDLineEdit, "Ctrl+S", [this] {
    if (cmdSaveFile.Enabled()) cmdSaveFile_Click();
  });
}

std::vector<win::Control*> FrmCMDLineEdit::Controls() {
  return {&lstCmdLineParam, &cmdMoveUp,      &cmdMoveDown, &cmdAdd,         &cmdRemove,
          &txtCmdEdit,      &cmdSaveChanges, &cmdSaveFile, &cmdDeleteCustom};
}

void FrmCMDLineEdit::LoadList() {
  const bool isSameList = std::exchange(file_, CustomOptionFile()) == CustomOptionFile();
  const bool wasDirty = ListDirty;
  const std::string source = OptionListFile();
  const std::optional<std::vector<OptionRow>> rows = ReadOptionRows(source);
  problem_ = rows ? "" : OptionListProblem(source);
  FillList(rows.value_or(std::vector<OptionRow>()));
  ListDirty = wasDirty && isSameList;
  // An edit that was not taken over still waits for its row.
  ParamDirty = ParamDirty && isSameList;
  if (!ParamDirty) ParamIndex = -1;
  if (lstCmdLineParam.ListCount() == 0)
    lstCmdLineParam_Click();
  else
    lstCmdLineParam.SetListIndex(0);
  if (!problem_.empty()) win::MsgBox(problem_);
}

void FrmCMDLineEdit::FillList(const std::vector<OptionRow>& rows) {
  const win::ListUpdate update(lstCmdLineParam);
  lstCmdLineParam.Clear();
  for (const OptionRow& row : rows) {
    lstCmdLineParam.AddItem(row.text);
    lstCmdLineParam.SetSelected(lstCmdLineParam.NewIndex(), row.ticked);
  }
}

void FrmCMDLineEdit::OfferToSave() {
  if (!ListDirty) return;
  const win::Answer answer = win::MsgBox(kSaveQuestion, win::kYesNoCancel, kSaveTitle);
  if (answer == win::Answer::kYes) {
    cmdSaveFile_Click();
    return;
  }
  ListDirty = false;
  ParamDirty = false;
}

bool FrmCMDLineEdit::MayClose() {
  if (!ListDirty && !ParamDirty) return true;
  const win::Answer answer = win::MsgBox(kSaveQuestion, win::kYesNoCancel, kSaveTitle);
  if (answer == win::Answer::kYes) cmdSaveFile_Click();
  if (answer == win::Answer::kNo) ListDirty = ParamDirty = false;
  return !ListDirty && !ParamDirty;
}

void FrmCMDLineEdit::lstCmdLineParam_Click() {
  const bool hasRows = lstCmdLineParam.ListCount() > 0;
  if (!hasRows) txtCmdEdit.SetText("");
  txtCmdEdit.SetEnabled(hasRows);
  for (win::Button* button : {&cmdRemove, &cmdSaveChanges, &cmdSaveFile})
    button->SetEnabled(hasRows);
  if (!hasRows || lstCmdLineParam.ListIndex() == ParamIndex) return;
  if (ParamDirty && !AskParam()) return;
  ParamIndex = lstCmdLineParam.ListIndex();
  txtCmdEdit.SetText(lstCmdLineParam.List(ParamIndex));
  ParamDirty = false;  // also when the box held just this text already
}

void FrmCMDLineEdit::txtCmdEdit_Change() { ParamDirty = txtCmdEdit.Text() != lstCmdLineParam.List(ParamIndex); }

void FrmCMDLineEdit::cmdSaveChanges_Click() {
  if (ParamDirty) ListDirty = true;
  lstCmdLineParam.SetList(ParamIndex, txtCmdEdit.Text());
  ParamDirty = false;
}

bool FrmCMDLineEdit::AskParam() {
  const win::Answer answer = win::MsgBox("Would you like to save your changes to the current command line parameter?",
                                         win::kYesNoCancel, kSaveTitle);
  if (answer == win::Answer::kYes) cmdSaveChanges_Click();
  if (answer != win::Answer::kCancel) return true;
  lstCmdLineParam.SetListIndex(ParamIndex);
  return false;
}

void FrmCMDLineEdit::cmdAdd_Click() {
  if (ParamDirty && !AskParam()) return;
  ParamIndex = -1;
  lstCmdLineParam.AddItem("<New Option>");
  lstCmdLineParam.SetListIndex(lstCmdLineParam.NewIndex());
  lstCmdLineParam_Click();
  ListDirty = true;
}

void FrmCMDLineEdit::cmdRemove_Click() {
  if (win::MsgBox("Are you sure you want to remove this parameter?", win::kYesNo + win::kDefaultNo, "Remove?") !=
      win::Answer::kYes)
    return;
  const int removed = ParamIndex;
  ParamIndex = -1;
  ParamDirty = false;
  lstCmdLineParam.RemoveItem(removed);
  lstCmdLineParam.SetListIndex(std::min(removed, lstCmdLineParam.ListCount() - 1));
  lstCmdLineParam_Click();
  ListDirty = true;
}

void FrmCMDLineEdit::MoveRow(int step) {
  const int from = lstCmdLineParam.ListIndex();
  const int to = from + step;
  if (from < 0 || to < 0 || to >= lstCmdLineParam.ListCount()) return;
  if (ParamDirty && !AskParam()) return;
  ListDirty = true;
  ParamDirty = false;
  const bool ticked = lstCmdLineParam.Selected(from);
  const std::string text = lstCmdLineParam.List(from);
  lstCmdLineParam.RemoveItem(from);
  lstCmdLineParam.AddItem(text, to);
  lstCmdLineParam.SetSelected(to, ticked);
  ParamIndex = -1;
  lstCmdLineParam.SetListIndex(to);
}

void FrmCMDLineEdit::cmdSaveFile_Click() {
  if (!problem_.empty()) {
    win::MsgBox(problem_);
    return;
  }
  if (ParamDirty && win::MsgBox("Would you like to save your changes to the current command line parameters?",
                                win::kYesNoCancel, kSaveTitle) == win::Answer::kYes)
    cmdSaveChanges_Click();
  if (win::MsgBox("Are you sure you want to save your changes? This cannot be undone! Note: This will only affect the "
                  "current BZ2 install.",
                  win::kYesNo + win::kDefaultNo, kSaveTitle) != win::Answer::kYes)
    return;
  std::vector<OptionRow> rows;
  for (int i = 0; i < lstCmdLineParam.ListCount(); ++i)
    rows.push_back({lstCmdLineParam.List(i), lstCmdLineParam.Selected(i)});
  WriteOptionRows(file_, rows);
  win::MsgBox(
      "The list has been saved. Changes will take effect the next time you run Varnik, reset defaults, or change to "
      "this BZ2 Directory again.",
      win::kOkOnly, "Saved");
  ListDirty = false;
}

void FrmCMDLineEdit::cmdDeleteCustom_Click() {
  const std::string file = CustomOptionFile();
  if (file.empty() || !FileExists(file)) return;
  if (win::MsgBox("Are you sure you want to delete the custom command line config file for this install?",
                  win::kYesNo + win::kDefaultNo, "Are you sure?") != win::Answer::kYes)
    return;
  win::DeleteFiles(file);
  ListDirty = false;
  ParamDirty = false;
  host_.showCommandLinePage();
  host_.reloadOptions();
}

}  // namespace varnik
