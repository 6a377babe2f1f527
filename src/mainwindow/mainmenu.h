#pragma once

#include "windowing/menu.h"

namespace varnik {

// The menu bar of the main window, in its order.
struct MainMenu {
  explicit MainMenu(win::Form& form);

  win::Menu mnuFile;
  win::MenuItem mnuFileNew;
  win::MenuItem mnuFileEdit;
  win::MenuSeparator mnuFileSpacer;
  win::MenuItem mnuOptions;
  win::MenuItem mnuShowTray;
  win::MenuItem mnuFileHide;
  win::MenuItem mnuFileClose;

  win::Menu mnuBZ2Dir;
  win::MenuArray mnuBZ2Sel;
  win::MenuItem mnubz2reload;
  win::MenuSeparator mnuBZ2DirSpacer;
  win::MenuItem mnuBZ2DirAddRem;

  win::Menu mnuEmergency;
  win::MenuItem mnuEmergencyDeactivate;

  win::Menu mnuHelp;
  win::MenuItem mnuHelpAbout;
};

// The menu of the tray icon, which never stands in the bar.
struct HiddenMenu {
  HiddenMenu();

  win::Menu mnuHidden;
  win::MenuItem mnuVarnikOpenH;
  win::Menu mnuBZ2DirH;
  win::MenuArray mnuBZ2SelH;
  win::MenuItem mnubz2hreload;
  win::Menu mnuRunModH;
  win::MenuItem mnuRunModHBZ2;
  win::MenuArray mnuModH;
  win::MenuItem mnuCloseH;
};

// The rows of installs in both menus, one for each row of InstallList, from the list as it was just read.
void FillInstallMenus(MainMenu& menu, HiddenMenu& hidden);

// Marks the row of the selected install in both menus, which then cannot be chosen again; -1 marks none.
void MarkInstall(MainMenu& menu, HiddenMenu& hidden, int index);

// The rows of mods in the tray's menu: no mod, then one for each row of ModList, each with its index as tag.
void FillModMenu(HiddenMenu& hidden);

}  // namespace varnik
