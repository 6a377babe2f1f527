#pragma once

#include "installs/locations.h"
#include "windowing/button.h"
#include "windowing/form.h"
#include "windowing/label.h"
#include "windowing/listbox.h"
#include "windowing/textbox.h"

#include <functional>
#include <string>
#include <vector>

namespace varnik {

// Keeps the list of installs. Nothing reaches the settings store until cmdSaveChanges.
class frmAddRemBZ2 : public win::Form {
 public:
  // `listSaved` runs once the store holds the list, before the dialog is unloaded.
  explicit frmAddRemBZ2(std::function<void()> listSaved);

  win::Label lblList;
  win::ListBox lstBZ2Loc{*this, "lstBZ2Loc", win::ListStyle::kCheckBoxes};
  win::Button cmdMvUp{*this, "cmdMvUp", "Move Current Selection Up"};
  win::Button cmdMvDown{*this, "cmdMvDown", "Move Current Selection Down"};
  win::Label lblSel{*this, "lblSel"};
  win::Label lblDescriptiveName{*this, "lblDescriptiveName", "Descriptive Name for Selected Location:"};
  win::TextBox txtDescriptiveName{*this, "txtDescriptiveName"};
  win::Label lblManual{*this, "lblManual", "Manual Entry:"};
  win::TextBox txtManual{*this, "txtManual"};
  win::Button cmdManualAdd{*this, "cmdManualAdd", "&Add"};
  win::Label lblSearch;
  win::Button cmdSearchBZ2{*this, "cmdSearchBZ2", "Search Computer"};
  win::Label lblRemove;
  win::Button cmdRemove{*this, "cmdRemove", "Remove Selected Location"};
  win::Button cmdSaveChanges{*this, "cmdSaveChanges", "Save Changes"};
  win::Button cmdCancel{*this, "cmdCancel", "Discard Changes"};

 private:
  void PlaceControls();
  void WireControls();
  void Form_Load();
  void lstBZ2Loc_Click();
  void txtDescriptiveName_Change();
  void cmdManualAdd_Click();
  void cmdSearchBZ2_Click();
  void cmdRemove_Click();
  void cmdSaveChanges_Click();
  void MoveRow(int step);

  // Brings the rows of the list that the box does not hold yet behind those that it does.
  void ShowAddedRows();

  LocationList list_;
  std::function<void()> listSaved_;
};

}  // namespace varnik
