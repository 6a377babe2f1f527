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

  win::ListBox lstFile{*this, "lstFile"};
  win::Button cmdAdd{*this, "cmdAdd", "&Add"};
  win::Button cmdRemove{*this, "cmdRemove", "&Remove"};
  win::Button cmdMoveUp{*this, "cmdMoveUp", "Move &Up"};
  win::Button cmdMoveDown{*this, "cmdMoveDown", "Move &Down"};
  win::ComboBox cmbCmd{*this, "cmbCmd"};
  win::Label lblHelpCmd{*this, "lblHelpCmd"};
  win::ComboBox cmbParam{*this, "cmbParam"};
  win::TextBox txtParam{*this, "txtParam"};
  win::Label lblParamInfo{*this, "lblParamInfo", "Paramater Notes: "};
  win::Label lblHelpParam{*this, "lblHelpParam"};
  win::CheckBox chkLock{*this, "chkLock", "Lock(Can't be edited further without notepad)"};
  win::Button cmdSave{*this, "cmdSave", "&Save"};
  win::Button cmdCancel{*this, "cmdCancel", "&Cancel"};

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

  // Asks when something is unsaved. False when the dialog has to stay.
  [[nodiscard]] bool MayClose();

  // Shows the draft's selected row: its text, its directive and its first part.
  void ShowSelectedRow();
  void ShowNoRow();
  void ShowParts();
  void ShowRowText(int row);

  DefinitionDraft draft_;
  bool isDirty_ = false;  // a person has changed something since the last load or save
  bool showing_ = false;  // controls follow the draft and are not to be taken for a person's choice
};

}  // namespace varnik
