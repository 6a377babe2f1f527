#pragma once

#include "cmdline/optionlist.h"
#include "windowing/button.h"
#include "windowing/frame.h"
#include "windowing/label.h"
#include "windowing/listbox.h"
#include "windowing/textbox.h"

#include <functional>
#include <string>
#include <vector>

namespace varnik {

// What the editor of the option list needs of the window.
struct OptionEditHost {
  std::function<void()> showCommandLinePage;  // the page switch for its node
  std::function<void()> reloadOptions;        // populatecmdlinelist of that page
};

// Edits the option list as a whole and saves it as the selected install's own.
class FrmCMDLineEdit {
 public:
  FrmCMDLineEdit(win::Container& parent, OptionEditHost host);

  // Fills the list from the file that counts, on a visit of the page. What was not saved is gone.
  void LoadList();

  // Before another page comes up: unsaved rows may be saved, or they are given up, whatever the answer.
  void OfferToSave();

  // Before the program ends. False when the player wants to stay.
  [[nodiscard]] bool MayClose();

  void cmdSaveFile_Click();

  // For the hints of the status bar.
  std::vector<win::Control*> Controls();

  win::Frame frmCMDLineEdit;
  win::Label lblEditCMD{frmCMDLineEdit, "lblEditCMD",
                        "Command Line Parameter List. Use checkboxes to select defaults:"};
  win::ListBox lstCmdLineParam{frmCMDLineEdit, "lstCmdLineParam", win::ListStyle::kCheckBoxes};
  win::Button cmdMoveUp{frmCMDLineEdit, "cmdMoveUp", "Move Up"};
  win::Button cmdMoveDown{frmCMDLineEdit, "cmdMoveDown", "Move Down"};
  win::Button cmdAdd{frmCMDLineEdit, "cmdAdd", "Add"};
  win::Button cmdRemove{frmCMDLineEdit, "cmdRemove", "Remove"};
  win::Label lblChangeParam{
      frmCMDLineEdit, "lblChangeParam",
      "You can change the parameter below. A : in the parameter adds a configurable sub-parameter, the "
      "default for which should be entered in after the :"};
  win::TextBox txtCmdEdit{frmCMDLineEdit, "txtCmdEdit"};
  win::Button cmdSaveChanges{frmCMDLineEdit, "cmdSaveChanges", "Save Changes"};
  win::Button cmdSaveFile{frmCMDLineEdit, "cmdSaveFile", "Save File"};
  win::Button cmdDeleteCustom{frmCMDLineEdit, "cmdDeleteCustom", "Delete Custom"};

 private:
  void PlaceControls();
  void WireControls();
  void FillList(const std::vector<OptionRow>& rows);
  void lstCmdLineParam_Click();
  void txtCmdEdit_Change();
  void cmdSaveChanges_Click();
  void cmdAdd_Click();
  void cmdRemove_Click();
  void cmdDeleteCustom_Click();

  // Moves the selected row by one place, up (-1) or down (1).
  void MoveRow(int step);

  // Keeps or drops an edit of the parameter. False on Cancel: the selection is back where it was, and the caller stops.
  [[nodiscard]] bool AskParam();

  OptionEditHost host_;
  int ParamIndex = -1;      // the row edited in txtCmdEdit, -1 none
  bool ParamDirty = false;  // txtCmdEdit differs from that row
  bool ListDirty = false;   // rows differ from the file
  std::string problem_;     // why the list could not be read, and may not be saved
  std::string file_;        // where the list is saved: another install may be selected before the player answers
};

}  // namespace varnik
