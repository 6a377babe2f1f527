#pragma once

#include "cmdline/ui/frmcmdline.h"
#include "cmdline/ui/frmcmdlineedit.h"
#include "definition/report.h"
#include "gameconfig/ui/frmbz2config.h"
#include "gameconfig/ui/frmbz2config1_3.h"
#include "gameconfig/ui/frmextras.h"
#include "mainwindow/frmmod.h"
#include "mainwindow/mainmenu.h"
#include "mainwindow/tray.h"
#include "maps/ui/frmmap.h"
#include "modengine/runcycle.h"
#include "support/busywindow.h"
#include "support/ui/frmoptions.h"
#include "support/ui/frmsplash.h"
#include "support/ui/frmsplashscrn.h"
#include "windowing/form.h"
#include "windowing/imagelist.h"
#include "windowing/statusbar.h"
#include "windowing/timer.h"
#include "windowing/treeview.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace varnik {

// The main window: the tree of pages on the left, one page at a time on the right, the launch button below them. It
// wires the pages to each other; what a page does stands with the page.
class FrmMain : public win::Form {
 public:
  // `busy` is the one busy window of the program; it must outlive this one.
  explicit FrmMain(frmSplash& busy);
  ~FrmMain() override;

  // Makes row `index` of InstallList the selected install and builds everything anew; an index outside the list leaves
  // none selected. Unless `quiet`, the busy window is up while that takes.
  void activatebz2(int index, bool quiet);

  void LoadBZ2List();
  void LoadMods();
  void ClearMods();
  void ClearMaps();
  void SettingTree_NodeClick(const std::string& key);
  void showstatusbar(bool show);
  void MaximizeAsLeft();  // when it was maximised when it was closed last

  MainMenu menu;
  HiddenMenu hidden;
  win::TreeView SettingTree{*this, "SettingTree"};
  win::TextBox txtActivePage{*this, "txtActivePage"};
  FrmMod modPage;
  FrmMap mapPage;
  FrmCmdLine cmdLinePage;
  FrmCMDLineEdit cmdLineEditPage;
  FrmBZ2Config configPage;
  FrmBZ2Config1_3 config13Page;
  FrmExtras extrasPage;
  win::Label lblNoBZ2Dir;
  win::Button cmdAddInstall{*this, "cmdAddInstall", "Add a BZ2 &Location..."};
  win::Label lblBZ2LocVer{*this, "lblBZ2LocVer"};
  win::Button cmdLaunchBZ2{*this, "cmdLaunchBZ2", "Launch"};
  win::StatusBar StatusBar1{*this, "StatusBar1"};
  win::ImageList imglstIcon;
  win::ImageList imglstnomap;
  Tray tray;

 private:
  // lifecycle.cpp
  void Form_Load();
  void TakeStoredSize();
  void MeasureHeight();
  double CurrentFormHeight() const;
  void Form_QueryUnload(bool& cancel, win::UnloadMode mode);
  bool MayLoseEdits();
  void Form_Unload();
  void AddTrayAtLoad();
  bool TurnTrayOn(int patience);
  void HideStatusBarAtLoad();
  void ShowReport(const Report& report);
  void ShowTrayState();

  // wiring.cpp
  void PlaceControls();
  void WireMenus();
  void WireControls();
  std::vector<win::Control*> HintedControls();
  ModPageHost MakeModPageHost();
  MapPageHost MakeMapPageHost();
  OptionsHost MakeOptionsHost();
  BusyWindow MakeBusyWindow();

  // selection.cpp
  void SelectInstall(int index);
  void SelectNoInstall();
  void ShowNoModSelected();
  void ShowNoInstallPage(bool shown);

  // pages.cpp
  void PopulateTree();
  std::vector<win::Frame*> Frames();
  void HidePages();
  void ShowNode(const std::string& key);  // the page of a node, which the tree then marks
  void ShowPage(const std::string& key);
  void ShowConfig13Page(const std::string& key);
  void ShowNoPage();

  // commands.cpp
  void cmdLaunchBZ2_Click();
  void mnuModH_Click(int index);
  void mnuFileEdit_Click();
  void mnuFileFind_Click();
  void mnuBZ2DirAddRem_Click();
  void mnuShowTray_Click();
  void mnuFileHide_Click();
  void mnuEmergencyDeactivate_Click();
  void PopupHiddenMenu();
  void OpenWindow();
  void ShowSplash(const std::string& picture);
  void FinishSplash();
  RunHooks MakeRunHooks();
  std::function<void()> MakeReload();
  std::function<void()> MakeReloadAfterEdit();

  // A launch, or a load of the catalogues, is under way. Events run during it and the tray's menu works: a request that
  // would change the install or its lists is ignored.
  bool IsBusy() const { return running_ || !Enabled(); }

  // For what a dialog has saved already: done now, or once the window is no longer busy.
  void DoWhenIdle(std::function<void()> work);
  void DoPostponed();

  frmSplash& busy_;
  BusyWindow busyWindow_;
  std::unique_ptr<frmSplashScrn> splash_;
  std::string clickedNode_;
  Report lastReport_;      // what did not work in the last run, activation or deactivation
  win::Timer tmrTree_{1};  // marks the node of the page that shows, once the click that brought it has been served
  std::vector<std::function<void()>> postponed_;
  win::Timer postponedTimer_{50};
  bool running_ = false;    // from a click that launches to the end of what it does
  double FormHeight = 0;    // with the status bar showing, in twips
  bool wasVisible_ = true;  // before a run
  win::WindowState stateBefore_ = win::WindowState::kNormal;
};

}  // namespace varnik
