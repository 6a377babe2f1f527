#include "mainwindow/hints.h"

#include <utility>

namespace varnik {

namespace {

enum class HintEvent { kMouseMove, kGotFocus };

struct Hint {
  const char* control;
  HintEvent event;
  const char* text;
};

constexpr Hint kHints[] = {
    {"chkCMDEdit", HintEvent::kMouseMove, "Enables the /edit command. 1.3 changes compatible."},
    {"chkdarkPlants", HintEvent::kMouseMove, "When active, things like trees have the ground under them darkened."},
    {"chkFramerate", HintEvent::kMouseMove, "Show framerate at all times."},
    {"chkVsync", HintEvent::kMouseMove, "Wait for Vertical Retrace before redraw."},
    {"cmbHovercraft", HintEvent::kGotFocus, "View mode for entering Hovercraft."},
    {"cmbPerson", HintEvent::kGotFocus, "View mode for ejecting from a ship."},
    {"cmbScreenshots", HintEvent::kGotFocus, "Select a screenshot to view."},
    {"cmbTracked", HintEvent::kGotFocus, "View mode for entering a tracked vehicle."},
    {"cmbWalker", HintEvent::kGotFocus, "View mode for entering a Walker."},
    {"cmdAdd", HintEvent::kMouseMove, "Add a new item."},
    {"cmdCfgApply", HintEvent::kMouseMove, "Apply the above setting."},
    {"cmdCFGApply1_3", HintEvent::kMouseMove, "Save 1.3 specific settings to gameprefs.ini"},
    {"cmdClearBindata", HintEvent::kMouseMove, "Deletes all files in data\\bindata."},
    {"cmdCMDReset", HintEvent::kMouseMove, "Re-loads the command line list to saved defaults."},
    {"cmdDeleteCustom", HintEvent::kMouseMove, "Delete any customized command line file."},
    {"cmdLaunchBZ2", HintEvent::kMouseMove, "Launches Battlezone II with whatever options you selected."},
    {"cmdMapLstRefresh", HintEvent::kMouseMove, "Refresh the map list from scratch. Use after installing maps."},
    {"cmdMoveDown", HintEvent::kMouseMove, "Move the selected item down the list."},
    {"cmdMoveUp", HintEvent::kMouseMove, "Move the selected item up the list."},
    {"cmdRemove", HintEvent::kMouseMove, "Remove the selected item."},
    {"cmdSaveChanges", HintEvent::kMouseMove, "Save changes to the selected item."},
    {"cmdSaveFile", HintEvent::kMouseMove, "Save the file with all current changes."},
    {"imgmap", HintEvent::kMouseMove, "Map Image."},
    {"imgnomap", HintEvent::kMouseMove, "Map Image."},
    {"imgScreenshot", HintEvent::kMouseMove, "Displays a screenshot selected above."},
    {"lblMapDetails", HintEvent::kMouseMove, "Potentially useful map information."},
    {"lstCmdLine", HintEvent::kMouseMove, "Easy point and click interface for selecting command line options."},
    {"lstCmdLineParam", HintEvent::kMouseMove, "Select an item to edit it."},
    {"lstmap", HintEvent::kMouseMove, "Select a map from the list to use it in game. Useful with the /edit parameter."},
    {"lstmods", HintEvent::kMouseMove, "List of Mods. Click to select."},
    {"picModPic", HintEvent::kMouseMove, "Mod Image."},
    {"SettingTree", HintEvent::kMouseMove, "Select a page to view. +/- expand and collapse groups."},
    {"txtActivePage", HintEvent::kMouseMove, "Shows the name of the current page, if any."},
    {"txtAltNick", HintEvent::kMouseMove, "Alternate IRC nickname, blank for none."},
    {"txtCmdEdit", HintEvent::kMouseMove, "Edit the selected item here."},
    {"txtCmdLine", HintEvent::kMouseMove, "Allows manual editing of the command line parameters."},
    {"txtIRCFullName", HintEvent::kMouseMove, "IRC Full Name, not related to nickname."},
    {"txtIRCUserID", HintEvent::kMouseMove, "IRC User ID, not related to nickname."},
    {"txtMapDesc", HintEvent::kMouseMove, "Description for the selected map."},
    {"txtMapFileName", HintEvent::kMouseMove, "Filename for the selected map, or a custom filename."},
    {"txtModDesc", HintEvent::kMouseMove, "Mod Description/Information."},
};

const Hint* FindHint(const std::string& control) {
  for (const Hint& hint : kHints)
    if (control == hint.control) return &hint;
  return nullptr;
}

}  // namespace

void WireHints(win::StatusBar& statusBar, const std::vector<win::Control*>& controls) {
  for (win::Control* control : controls) {
    const Hint* hint = FindHint(control->Name());
    if (!hint) continue;
    auto& handler = hint->event == HintEvent::kGotFocus ? control->GotFocus : control->MouseMove;
    handler = [&statusBar, text = hint->text, earlier = std::move(handler)] {
      if (earlier) earlier();
      statusBar.SetPanelText(1, text);
    };
  }
}

}  // namespace varnik
