#pragma once

#include "editor/definitiondraft.h"
#include "windowing/button.h"
#include "windowing/checkbox.h"
#include "windowing/combobox.h"
#include "windowing/form.h"
#include "windowing/label.h"
#include "windowing/listbox.h"
#include "windowing/textbox.h"

#include <functional>
#include <string>

namespace varnik {

// Creates and edits a definition file row by row.
class frmNewMod : public win::Form {
 public:
  // `reloadInstall` runs when the dialog is unloaded, after a cancel too.
  explicit frmNewMod(std::function<void()> reloadInstall);

  // Shows the rows of a definition file.
  void loadmod(const std::string& path);

  win::ListBox lstFile;
  win::Button cmdAdd;
  win::Button cmdRemove;
  win::Button cmdMoveUp;
  win::Button cmdMoveDown;
  win::ComboBox cmbCmd;
  win::Label lblHelpCmd;
  win::ComboBox cmbParam;
  win::TextBox txtParam;
  win::Label lblParamInfo;
  win::Label lblHelpParam;
  win::CheckBox chkLock;
  win::Button cmdSave;
  win::Button cmdCancel;

 private:
  void PlaceControls();
  void WireControls();
  void lstFile_Click();
  void cmbCmd_Click();
  void cmbParam_Click();
  void txtParam_Change();
  void cmdAdd_Click();
  void cmdRemove_Click();
  void cmdSave_Click();
  void MoveRow(bool moved);

  // Shows the draft's selected row: its text, its directive and its first part.
  void ShowSelectedRow();
  void ShowNoRow();
  void ShowParts();
  void ShowRowText(int row);

  DefinitionDraft draft_;
  bool showing_ = false;  // controls follow the draft and are not to be taken for a person's choice
};

}  // namespace varnik
