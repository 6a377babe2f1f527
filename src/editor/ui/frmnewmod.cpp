#include "editor/ui/frmnewmod.h"

#include "platform/system/process/services.h"
#include "platform/system/text/text.h"
#include "windowing/shortcut.h"

#include <utility>

namespace varnik {

frmNewMod::frmNewMod(std::function<void()> reloadInstall) : Form("frmNewMod", 8400, 6600) {
  SetCaption("Create New Mod File");
  PlaceControls();
  WireControls();
  for (const DirectiveInfo& directive : Directives) {
    cmbCmd.AddItem(std::string(directive.Keyword));
    cmbCmd.SetItemData(cmbCmd.NewIndex(), cmbCmd.NewIndex());
  }
  ShowNoRow();
  // Out of sight first: the reload pumps events, and nothing is to be edited any more.
  Unload = [this, reload = std::move(reloadInstall)] {
    Hide();
    reload();
  };
}

void frmNewMod::PlaceControls() {
  lstFile.Move(120, 120, 6480, 3900);
  lstFile.SetAccessibleName("Rows of the file");
  cmdAdd.Move(6780, 120, 1500, 375);
  cmdRemove.Move(6780, 600, 1500, 375);
  cmdMoveUp.Move(6780, 1200, 1500, 375);
  cmdMoveDown.Move(6780, 1680, 1500, 375);
  cmbCmd.Move(120, 4200, 2760, 330);
  cmbCmd.SetAccessibleName("Directive");
  lblHelpCmd.Move(3060, 4230, 5220, 300);
  cmbParam.Move(120, 4680, 2760, 330);
  cmbParam.SetAccessibleName("Part of the row");
  txtParam.Move(3060, 4680, 5220, 330);
  txtParam.SetAccessibleName("Text of the part");
  lblParamInfo.Move(120, 5160, 1680, 300);
  lblHelpParam.Move(1860, 5160, 6420, 300);
  chkLock.Move(120, 5640, 8160, 315);
  cmdSave.Move(5160, 6060, 1500, 375);
  cmdCancel.Move(6780, 6060, 1500, 375);
  SetSizable();
  lstFile.SetMonospace();
  txtParam.SetMonospace();
  chkLock.SetMnemonic('L');
  lstFile.SetAnchors(win::kFill);
  for (win::Button* button : {&cmdAdd, &cmdRemove, &cmdMoveUp, &cmdMoveDown})
    button->SetAnchors(win::kTopRight);
  for (win::Control* control : std::initializer_list<win::Control*>{&cmbCmd, &cmbParam, &lblParamInfo})
    control->SetAnchors(win::kBottomLeft);
  for (win::Control* control : std::initializer_list<win::Control*>{&lblHelpCmd, &txtParam, &lblHelpParam, &chkLock})
    control->SetAnchors(win::kBottomAcross);
  cmdSave.SetAnchors(win::kBottomRight);
  cmdCancel.SetAnchors(win::kBottomRight);
}

void frmNewMod::WireControls() {
  lstFile.Click = [this] { lstFile_Click(); };
  cmbCmd.Click = [this] { cmbCmd_Click(); };
  cmbParam.Click = [this] { cmbParam_Click(); };
  txtParam.Change = [this] { txtParam_Change(); };
  cmdAdd.Click = [this] { cmdAdd_Click(); };
  cmdRemove.Click = [this] { cmdRemove_Click(); };
  cmdMoveUp.Click = [this] { MoveRow(draft_.MoveUp()); };
  cmdMoveDown.Click = [this] { MoveRow(draft_.MoveDown()); };
  cmdSave.Click = [this] { cmdSave_Click(); };
  cmdCancel.Click = [this] { Close(); };
  QueryUnload = [this](bool& cancel, win::UnloadMode mode) {
    cancel = mode == win::UnloadMode::kControlMenu && !MayClose();
  };
  SetEscapeCloses();
  win::AddShortcut(lstFile, "Ins", [this] { cmdAdd_Click(); });
  win::AddShortcut(lstFile, "Del", [this] { cmdRemove_Click(); });
  win::AddShortcut(lstFile, "Ctrl+Up", [this] { MoveRow(draft_.MoveUp()); });
  win::AddShortcut(lstFile, "Ctrl+Down", [this] { MoveRow(draft_.MoveDown()); });
  win::AddShortcut(*this, "Ctrl+S", [this] { cmdSave_Click(); });
}

bool frmNewMod::MayClose() {
  if (!isDirty_) return true;
  const win::Answer answer = win::MsgBox("Would you like to save your changes?", win::kYesNoCancel, "Save Changes?");
  if (answer == win::Answer::kYes) cmdSave_Click();
  return answer == win::Answer::kNo || !isDirty_;
}

void frmNewMod::loadmod(const std::string& path) {
  const bool isRead = draft_.Load(path);
  isDirty_ = false;
  {
    const win::ListUpdate update(lstFile);
    lstFile.Clear();
    for (const std::string& row : draft_.Rows())
      lstFile.AddItem(row);
  }
  ShowNoRow();
  if (isRead)
    SetCaption("Edit Mod File: " + draft_.EditFileName());
  else
    win::MsgBox("The file could not be read to its end and is not opened: " + path +
                "\r\nIt stays as it is. Please check the disk and try again.");
}

void frmNewMod::lstFile_Click() {
  if (showing_) return;
  draft_.SelectRow(lstFile.ListIndex());
  ShowSelectedRow();
}

void frmNewMod::ShowSelectedRow() {
  const int row = draft_.SelectedRow();
  if (row < 0) {
    ShowNoRow();
    return;
  }
  showing_ = true;
  lstFile.SetListIndex(row);
  cmbCmd.SetEnabled(true);
  cmbCmd.SetListIndex(draft_.Selected()->Directive());
  showing_ = false;
  ShowParts();
}

void frmNewMod::ShowNoRow() {
  showing_ = true;
  cmbCmd.SetEnabled(false);
  cmbCmd.SetListIndex(-1);
  cmbParam.Clear();
  cmbParam.SetEnabled(false);
  txtParam.SetText("");
  txtParam.SetEnabled(false);
  lblHelpCmd.SetCaption("");
  lblHelpParam.SetCaption("");
  showing_ = false;
}

void frmNewMod::ShowParts() {
  const DirectiveRow& selected = *draft_.Selected();
  lblHelpCmd.SetCaption(std::string(Directives[selected.Directive()].HelpText));
  showing_ = true;
  cmbParam.Clear();
  cmbParam.SetEnabled(true);
  for (int part = 0; part < selected.PartCount(); ++part)
    cmbParam.AddItem(std::string(selected.PartName(part)));
  showing_ = false;
  cmbParam.SetListIndex(0);
  ShowRowText(draft_.SelectedRow());
}

void frmNewMod::ShowRowText(int row) {
  if (row >= 0 && row < static_cast<int>(draft_.Rows().size())) lstFile.SetList(row, draft_.Rows()[row]);
}

void frmNewMod::cmbCmd_Click() {
  if (showing_ || draft_.SelectedRow() < 0 || cmbCmd.ListIndex() < 0) return;
  draft_.ChangeDirective(cmbCmd.ListIndex());
  isDirty_ = true;
  ShowParts();
}

void frmNewMod::cmbParam_Click() {
  if (showing_ || draft_.SelectedRow() < 0) return;
  const int part = cmbParam.ListIndex();
  showing_ = true;
  txtParam.SetEnabled(part >= 0);
  txtParam.SetText(part < 0 ? "" : draft_.Selected()->PartText(part));
  showing_ = false;
  lblHelpParam.SetCaption(std::string(draft_.Selected()->PartNote(part)));
}

void frmNewMod::txtParam_Change() {
  if (showing_ || draft_.SelectedRow() < 0) return;
  draft_.ChangePart(cmbParam.ListIndex(), txtParam.Text());
  isDirty_ = true;
  ShowRowText(draft_.SelectedRow());
}

void frmNewMod::cmdAdd_Click() {
  draft_.AddRow();
  isDirty_ = true;
  lstFile.AddItem(draft_.Rows()[draft_.SelectedRow()], draft_.SelectedRow());
  ShowSelectedRow();
}

void frmNewMod::cmdRemove_Click() {
  const int row = draft_.SelectedRow();
  if (row < 0) return;
  draft_.RemoveRow();
  isDirty_ = true;
  showing_ = true;
  lstFile.RemoveItem(row);
  showing_ = false;
  ShowSelectedRow();
}

void frmNewMod::MoveRow(bool moved) {
  if (!moved) return;
  isDirty_ = true;
  const int row = draft_.SelectedRow();
  for (int neighbour : {row - 1, row, row + 1})
    ShowRowText(neighbour);
  ShowSelectedRow();
}

void frmNewMod::cmdSave_Click() {
  if (lstFile.ListCount() == 0) {
    win::MsgBox(
        "Nothing to save. And yes, I will save all blank lines and comments. Mainly because my programmer was too lazy "
        "to check if it was all blank lines and comments, but occasionally because a 'blank' file is wanted for "
        "testing.");
    return;
  }
  const std::string proposed = draft_.EditFileName().empty() ? kProposedFileName : draft_.EditFileName();
  const std::string name = win::Trim(win::InputBox("Please specify a filename.", "BZM Filename", proposed));
  if (!IsUsableFileName(name)) {
    win::MsgBox("Invalid Filename. Please specify a (different) filename. Aborting save.");
    return;
  }
  if (!IsDefinitionName(name)) win::MsgBox("File will be saved for inclusion only.");
  if (draft_.Save(name, chkLock.Value() == 1)) isDirty_ = false;
  win::MsgBox("Done. No error checking preformed.");
}

}  // namespace varnik
