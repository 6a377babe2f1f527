#include "installs/installlist.h"
#include "mainwindow/frmmain.h"
#include "mainwindow/settingtree.h"
#include "modengine/catalogue.h"
#include "platform/system/process/services.h"
#include "support/debuglog.h"
#include "support/runstate.h"

namespace varnik {

void FrmMain::activatebz2(int index, bool quiet) {
  LogLine("ActivateBZ2 Begin");
  if (IsBusy()) return;
  if (!quiet) busyWindow_.begin();
  if (index < 0 || index >= static_cast<int>(InstallList.size()))
    SelectNoInstall();
  else
    SelectInstall(index);
  if (quiet) return;
  busyWindow_.end();
  SetFocus();
}

void FrmMain::SelectInstall(int index) {
  varnik::SelectInstall(static_cast<std::int16_t>(index));
  lblBZ2LocVer.SetCaption("Current BZ2 Dir: " + InstallRoot() + "\r\nVersion: " + InstallVersion());
  MarkInstall(menu, hidden, index);
  menu.mnubz2reload.SetEnabled(true);
  menu.mnuFileFind.SetEnabled(true);
  hidden.mnubz2hreload.SetEnabled(true);
  hidden.mnuRunModH.SetVisible(true);
  if (menu.mnuBZ2Sel.IsLoaded(index)) hidden.mnuRunModHBZ2.SetCaption(menu.mnuBZ2Sel[index].Caption());
  cmdLaunchBZ2.SetEnabled(true);
  StoreActiveInstall(CurrentInstall);
  LoadMods();
  ClearMaps();
  cmdLinePage.populatecmdlinelist();
  ShowConfig13Node(SettingTree, IsVersion13());
  SettingTree.SetEnabled(true);
  SettingTree_NodeClick("RMod");
  SettingTree.SetSelectedItem("RMod");
  ShowNoInstallPage(false);
}

void FrmMain::SelectNoInstall() {
  ClearMods();
  ClearMaps();
  cmdLinePage.ClearList();
  ShowNoPage();
  SettingTree.SetEnabled(false);
  ShowNoInstallPage(true);
  lblBZ2LocVer.SetCaption("Current BZ2 Dir: None\r\nVersion: N/A");
  varnik::SelectInstall(-1);
  MarkInstall(menu, hidden, -1);
  menu.mnubz2reload.SetEnabled(false);
  hidden.mnubz2hreload.SetEnabled(false);
  hidden.mnuRunModH.SetVisible(false);
  cmdLaunchBZ2.SetEnabled(false);
  menu.mnuFileFind.SetEnabled(false);
  menu.mnuFileEdit.SetEnabled(false);
  menu.mnuEmergencyDeactivate.SetEnabled(false);
  // It stays disabled for the rest of the program's life, also once an install is selected.
  menu.mnuFileNew.SetEnabled(false);
}

void FrmMain::ShowNoInstallPage(bool shown) {
  lblNoBZ2Dir.SetVisible(shown);
  cmdAddInstall.SetVisible(shown);
}

void FrmMain::LoadBZ2List() {
  ReadInstallList();
  FillInstallMenus(menu, hidden);
}

void FrmMain::LoadMods() {
  if (CurrentInstall < 0) {
    modPage.SelectFirstRow();
    return;
  }
  ShowNoModSelected();
  LoadModList([this](const std::string& status) { busy_.SetStatus(status); });
  FillModMenu(hidden);
  modPage.ShowModList();
}

void FrmMain::ClearMods() {
  ClearModList();
  ShowNoModSelected();
}

void FrmMain::ShowNoModSelected() {
  SettingTree.SetBold("RMod", false);
  cmdLaunchBZ2.SetCaption("Launch");
}

void FrmMain::ClearMaps() { mapPage.ClearMaps(); }

}  // namespace varnik
