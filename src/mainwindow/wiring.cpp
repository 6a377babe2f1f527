#include "editor/ui/frmnewmod.h"
#include "mainwindow/frmmain.h"
#include "mainwindow/hints.h"
#include "mainwindow/settingtree.h"
#include "maps/maplist.h"
#include "modengine/deactivation.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/services.h"
#include "support/runstate.h"
#include "support/ui/frmabout.h"

namespace varnik {

namespace {

constexpr char kNoInstall[] =
    "Please use the BZ2 Directory Menu to add BZ2 locations to your list, or to select a BZ2 location. Varnik will not "
    "operate properly until you do.";

constexpr double kTreeShare = 0.2;  // of the width that the window gains

// A tray that shows the hidden menu by itself does so during a run, too.
template <class Action>
auto UnlessPlaying(Action action) {
  return [action](auto... row) {
    if (!GameRunning) action(row...);
  };
}

}  // namespace

FrmMain::FrmMain(frmSplash& busy)
    : Form("frmMain", 7890, 6600),
      menu(*this),
      modPage(*this, MakeModPageHost()),
      mapPage(*this, MakeMapPageHost()),
      cmdLinePage(*this, [this] { mapPage.txtMapFileName_LostFocus(); }),
      cmdLineEditPage(*this, {[this] { ShowNode("RCMD"); }, [this] { cmdLinePage.populatecmdlinelist(); }}),
      configPage(*this),
      config13Page(*this),
      extrasPage(*this, [this](const std::string& hint) { StatusBar1.SetPanelText(1, hint); }),
      lblNoBZ2Dir(*this, "lblNoBZ2Dir", kNoInstall),
      tray(
          hidden.mnuHidden, [this] { OpenWindow(); }, [this] { PopupHiddenMenu(); }),
      busy_(busy),
      busyWindow_(MakeBusyWindow()) {
  SetCaption(win::Program().title);
  PlaceControls();
  WireControls();
  WireMenus();
  WireHints(StatusBar1, HintedControls());
  SetMapPageRefresh([this] { mapPage.lstmap_Click(); });
}

FrmMain::~FrmMain() { SetMapPageRefresh({}); }

void FrmMain::PlaceControls() {
  SettingTree.Move(120, 120, 2040, 5280);
  SettingTree.SetPathSeparator(": ");
  SettingTree.SetAccessibleName("Pages");
  txtActivePage.Move(2400, 120, 5280, 285);
  txtActivePage.SetHeading();
  txtActivePage.SetLocked(true);
  txtActivePage.SetTabStop(false);
  txtActivePage.SetAccessibleName("Active page");
  lblNoBZ2Dir.Move(2295, 675, 5145, 4065);
  cmdAddInstall.Move(2295, 2100, 2415, 495);
  lblBZ2LocVer.Move(120, 5640, 4815, 495);
  cmdLaunchBZ2.Move(5400, 5640, 2415, 495);
  StatusBar1.SetAccessibleName("Hint");
  StatusBar1.Move(0, 6225, 7890, 375);
  SetSizable();
  SettingTree.SetAnchors({0, 0, kTreeShare, 1});
  txtActivePage.SetAnchors({kTreeShare, 0, 1, 0});
  lblNoBZ2Dir.SetAnchors({kTreeShare, 0, 1, 1});
  cmdAddInstall.SetAnchors({kTreeShare, 0, kTreeShare, 0});
  for (win::Frame* page : Frames())
    page->SetAnchors({kTreeShare, 0, 1, 1});
  lblBZ2LocVer.SetElided();
  lblBZ2LocVer.SetAnchors(win::kBottomAcross);
  cmdLaunchBZ2.SetMnemonic('a');
  cmdLaunchBZ2.SetAnchors(win::kBottomRight);
  StatusBar1.SetAnchors(win::kBottomAcross);
}

void FrmMain::WireControls() {
  Load = [this] { Form_Load(); };
  QueryUnload = [this](bool& cancel, win::UnloadMode mode) { Form_QueryUnload(cancel, mode); };
  Unload = [this] { Form_Unload(); };
  CloseRefused = [this] { busy_.Stop(); };
  SettingTree.NodeClick = [this](const std::string& key) { SettingTree_NodeClick(key); };
  txtActivePage.GotFocus = [this] { SettingTree.SetFocus(); };
  cmdAddInstall.Click = [this] { mnuBZ2DirAddRem_Click(); };
  tmrTree_.Tick = [this] {
    tmrTree_.SetEnabled(false);
    SettingTree.SetSelectedItem(clickedNode_);
  };
  cmdLaunchBZ2.Click = [this] { cmdLaunchBZ2_Click(); };
  postponedTimer_.Tick = [this] { DoPostponed(); };
}

void FrmMain::WireMenus() {
  const auto select = [this](int index) { activatebz2(index, false); };
  const auto reload = MakeReload();
  const auto close = [this] { Close(); };
  menu.mnuFileNew.Click = [this] { frmNewMod(MakeReloadAfterEdit()).ShowModal(this); };
  menu.mnuFileEdit.Click = [this] { mnuFileEdit_Click(); };
  menu.mnuFileFind.Click = [this] { mnuFileFind_Click(); };
  menu.mnuBZ2DirAddRem.Click = [this] { mnuBZ2DirAddRem_Click(); };
  menu.mnuOptions.Click = [this] { frmOptions(MakeOptionsHost()).ShowModal(this); };
  menu.mnuShowTray.Click = [this] { mnuShowTray_Click(); };
  menu.mnuFileHide.Click = [this] { mnuFileHide_Click(); };
  menu.mnuFileClose.Click = close;
  menu.mnuBZ2Sel.Click = select;
  menu.mnubz2reload.Click = reload;
  menu.mnuEmergencyDeactivate.Click = [this] { mnuEmergencyDeactivate_Click(); };
  menu.mnuHelpAbout.Click = [this] { frmAbout().ShowModal(this); };
  hidden.mnuVarnikOpenH.Click = UnlessPlaying([this] { OpenWindow(); });
  hidden.mnuBZ2SelH.Click = UnlessPlaying(select);
  hidden.mnubz2hreload.Click = UnlessPlaying(reload);
  hidden.mnuModH.Click = UnlessPlaying([this](int index) { mnuModH_Click(index); });
  hidden.mnuCloseH.Click = UnlessPlaying(close);
}

OptionsHost FrmMain::MakeOptionsHost() {
  return {imglstnomap, imglstIcon, [this](const win::Picture& picture) { mapPage.SetNoMapPicture(picture); },
          [this](const win::Picture& icon) {
            if (tray.IsHooked()) tray.ShellTrayModifyImage(icon);
          },
          [this](bool shown) { showstatusbar(shown); }};
}

ModPageHost FrmMain::MakeModPageHost() {
  ModPageHost host;
  host.setLaunchCaption = [this](const std::string& caption) { cmdLaunchBZ2.SetCaption(caption); };
  host.enableEmergency = [this](bool enabled) { menu.mnuEmergencyDeactivate.SetEnabled(enabled); };
  host.enableEdit = [this](bool enabled) { menu.mnuFileEdit.SetEnabled(enabled); };
  host.markMods = [this](bool bold) { SettingTree.SetBold("RMod", bold); };
  host.keepModNodes = [this](bool present) {
    if (present)
      PutModNodesBack(SettingTree);
    else
      RemoveModNodes(SettingTree);
  };
  host.launch = [this] { cmdLaunchBZ2.Press(); };
  host.followMod = [this] {
    if (!MapLoadTried) return;
    mapPage.PopulateMapList(0, kAllSubTypes);
    mapPage.lstmap_Click();
  };
  return host;
}

MapPageHost FrmMain::MakeMapPageHost() {
  MapPageHost host;
  host.markMaps = [this](bool bold) { SettingTree.SetBold("RMap", bold); };
  host.mapName = [this] { return cmdLinePage.txtMapFileName.Text(); };
  host.setMapName = [this](const std::string& name) { cmdLinePage.txtMapFileName.SetText(name); };
  host.askForMapName = [this] {
    ShowNode("RCMD");
    cmdLinePage.txtMapFileName.SetFocus();
  };
  host.showSelectedPage = [this] { SettingTree_NodeClick(SettingTree.SelectedItem()); };
  host.busy = MakeBusyWindow();
  return host;
}

BusyWindow FrmMain::MakeBusyWindow() {
  BusyWindow busy;
  busy.begin = [this] {
    busy_.Show(this);
    SetEnabled(false);
    win::DoEvents();
  };
  busy.setStatus = [this](const std::string& status) { busy_.SetStatus(status); };
  busy.end = [this] {
    SetEnabled(true);
    busy_.Close();
  };
  busy.isStopped = [this] { return !Loaded() || busy_.IsStopped(); };
  busy.isUp = [this] { return busy_.Visible(); };
  return busy;
}

// In the order in which a page switch hides them.
std::vector<win::Frame*> FrmMain::Frames() {
  return {&modPage.frmMod,          &mapPage.frmMap,
          &cmdLinePage.frmCmdLine,  &cmdLineEditPage.frmCMDLineEdit,
          &configPage.frmBZ2Config, &config13Page.frmBZ2Config1_3,
          &extrasPage.frmExtras};
}

std::vector<win::Control*> FrmMain::HintedControls() {
  std::vector<win::Control*> controls = {&SettingTree, &txtActivePage, &cmdLaunchBZ2};
  for (const auto& page : {modPage.Controls(), mapPage.Controls(), cmdLinePage.Controls(), cmdLineEditPage.Controls(),
                           configPage.Controls(), config13Page.Controls(), extrasPage.Controls()})
    controls.insert(controls.end(), page.begin(), page.end());
  return controls;
}

}  // namespace varnik
