#include "mainwindow/frmmain.h"
#include "mainwindow/settingtree.h"
#include "platform/system/process/services.h"
#include "support/debuglog.h"

namespace varnik {

void FrmMain::PopulateTree() {
  LogLine("PopulateTree Begin");
  AddAllNodes(SettingTree);
  ShowNode("RMod");
}

void FrmMain::SettingTree_NodeClick(const std::string& key) {
  cmdLineEditPage.OfferToSave();
  txtActivePage.SetText(SettingTree.FullPath(key));
  clickedNode_ = key;
  tmrTree_.SetEnabled(true);
  HidePages();
  const Page page = PageOfKey(key);
  if (page == Page::kMod || page == Page::kMap)
    SetDefaultButton(cmdLaunchBZ2);
  else
    SetNoDefaultButton();
  ShowPage(key);
}

void FrmMain::HidePages() {
  for (win::Frame* frame : Frames())
    frame->SetVisible(false);
}

// A page that reads a game file runs events, and another node may have been clicked by the time it has what it shows.
void FrmMain::ShowPage(const std::string& key) {
  switch (PageOfKey(key)) {
    case Page::kNone:
      break;
    case Page::kMod:
      modPage.frmMod.SetVisible(true);
      break;
    case Page::kMap: {
      mapPage.frmMap.SetVisible(true);
      int mapType = 0;
      int subType = 0;
      if (MapNumbersOfKey(key, mapType, subType)) mapPage.PopulateMapList(mapType, subType);
      break;
    }
    case Page::kCmdLine:
      cmdLinePage.frmCmdLine.SetVisible(true);
      break;
    case Page::kCmdLineEdit:
      cmdLineEditPage.frmCMDLineEdit.SetVisible(true);
      cmdLineEditPage.LoadList();
      break;
    case Page::kConfig:
      configPage.LoadSettings();
      configPage.frmBZ2Config.SetVisible(clickedNode_ == key);
      break;
    case Page::kConfig13:
      ShowConfig13Page(key);
      break;
    case Page::kExtras:
      extrasPage.frmExtras.SetVisible(true);
      extrasPage.populatescreenshots();
      break;
  }
}

void FrmMain::ShowConfig13Page(const std::string& key) {
  const bool loaded = config13Page.LoadSettings();
  if (clickedNode_ != key) return;
  if (loaded) return config13Page.frmBZ2Config1_3.SetVisible(true);
  ShowNode("RCFG");
}

void FrmMain::ShowNode(const std::string& key) {
  SettingTree.SetSelectedItem(key);
  SettingTree_NodeClick(key);
}

// The node of the mods lends its place to a text that is no page of its own.
void FrmMain::ShowNoPage() {
  SettingTree.SetKey("RMod", "RNone");
  SettingTree.SetText("RNone", "No BZ2 Location Selected");
  SettingTree_NodeClick("RNone");
  SettingTree.SetKey("RNone", "RMod");
  SettingTree.SetText("RMod", "Mods");
}

}  // namespace varnik
