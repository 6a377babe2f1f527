#pragma once

#include "windowing/menu.h"

namespace varnik {

// The menu bar of the main window, in its order.
struct MainMenu {
  explicit MainMenu(win::Form& form);

  win::Menu mnuFile;
  win::MenuItem mnuFileNew{mnuFile, "mnuFileNew", "&New MOD File"};
  win::MenuItem mnuFileEdit{mnuFile, "mnuFileEdit", "&Edit MOD File"};
  win::MenuItem mnuFileFind{mnuFile, "mnuFileFind", "&Find Mod or Map"};
  win::MenuSeparator mnuFileSpacer{mnuFile, "mnuFileSpacer"};
  win::MenuItem mnuOptions{mnuFile, "mnuOptions", "&Options"};
  win::MenuItem mnuShowTray{mnuFile, "mnuShowTray", "&Show Tray Icon"};
  win::MenuItem mnuFileHide{mnuFile, "mnuFileHide", "&Hide Main Window"};
  win::MenuItem mnuFileClose{mnuFile, "mnuFileClose", "&Close Varnik"};

  win::Menu mnuBZ2Dir;
  win::MenuArray mnuBZ2Sel{mnuBZ2Dir, "mnuBZ2Sel", "<BZ2 Dir Sel>"};
  win::MenuItem mnubz2reload{mnuBZ2Dir, "mnubz2reload", "&Reload Current"};
  win::MenuSeparator mnuBZ2DirSpacer{mnuBZ2Dir, "mnuBZ2DirSpacer"};
  win::MenuItem mnuBZ2DirAddRem{mnuBZ2Dir, "mnuBZ2DirAddRem", "&Add/Remove BZ2 Directory"};

  win::Menu mnuEmergency;
  win::MenuItem mnuEmergencyDeactivate{mnuEmergency, "mnuEmergencyDeactivate", "&Force Deactivate Selected Mod"};

  win::Menu mnuHelp;
  win::MenuItem mnuHelpAbout{mnuHelp, "mnuHelpAbout", "&About"};
};

// The menu of the tray icon, which never stands in the bar.
struct HiddenMenu {
  HiddenMenu();

  win::Menu mnuHidden{"mnuHidden", "Hidden"};
  win::MenuItem mnuVarnikOpenH{mnuHidden, "mnuVarnikOpenH", "Open Varnik Window"};
  win::Menu mnuBZ2DirH{mnuHidden, "mnuBZ2DirH", "Battlezone II Directory"};
  win::MenuArray mnuBZ2SelH{mnuBZ2DirH, "mnuBZ2SelH", "<BZ2 Dir Sel>"};
  win::MenuItem mnubz2hreload{mnuBZ2DirH, "mnubz2hreload", "Reload Current"};
  win::Menu mnuRunModH{mnuHidden, "mnuRunModH", "Run Mod"};
  win::MenuItem mnuRunModHBZ2{mnuRunModH, "mnuRunModHBZ2", ""};
  win::MenuArray mnuModH{mnuRunModH, "mnuModH", "<No Mod>"};
  win::MenuItem mnuCloseH{mnuHidden, "mnuCloseH", "Close Varnik"};
};

// The rows of installs in both menus, one for each row of InstallList, from the list as it was just read.
void FillInstallMenus(MainMenu& menu, HiddenMenu& hidden);

// Marks the row of the selected install in both menus, which then cannot be chosen again; -1 marks none.
void MarkInstall(MainMenu& menu, HiddenMenu& hidden, int index);

// The rows of mods in the tray's menu: no mod, then one for each row of ModList, each with its index as tag.
void FillModMenu(HiddenMenu& hidden);

}  // namespace varnik
