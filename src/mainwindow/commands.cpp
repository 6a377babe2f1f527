#include "editor/ui/frmnewmod.h"
#include "installs/ui/frmaddrembz2.h"
#include "mainwindow/frmmain.h"
#include "modengine/applymod.h"
#include "modengine/catalogue.h"
#include "modengine/takeover.h"
#include "platform/system/process/services.h"
#include "platform/system/text/text.h"
#include "support/install.h"
#include "support/runstate.h"
#include "support/settings.h"

#include <chrono>
#include <thread>
#include <utility>

namespace varnik {

namespace {

constexpr char kForcedWarning[] =
    "WARNING: CLICKING ON 'YES' COULD CAUSE DAMAGE TO YOUR BATTLEZONE II INSTALL. IN ORDER TO CORRECT THIS DAMAGE A "
    "FULL REINSTALL OF BATTLEZONE II MAY BE NECESSARY. ARE YOU SURE YOU WANT TO ATTEMPT A FORCED DEACTIVATION OF THE "
    "SELECTED MOD?\r\n"
    "Additional note: This code is untested as very few people have had trouble with mods and noone wants to "
    "intentionally screw something up to test it.\r\n\r\n"
    "If this mod uses a seperate EXE then the restoration will be done BY THAT EXE, not by Varnik, and Varnik will "
    "have no control over the EXE while the deactivation occurs.";

}  // namespace

void FrmMain::cmdLaunchBZ2_Click() {
  if (IsBusy()) return;
  running_ = true;
  const auto buildLine = [this] { return cmdLinePage.buildcmdline(true); };
  const ClickOutcome click = LaunchClick(modPage.SelectedMod(), buildLine, MakeRunHooks());
  if (click.act == ClickOutcome::Act::kActivated || click.act == ClickOutcome::Act::kDeactivated) LoadMods();
  running_ = false;
  ShowReport(click.act == ClickOutcome::Act::kRun ? click.run.failed : click.failed);
  if (!click.run.earlyEnd.empty()) win::MsgBox(click.run.earlyEnd);
}

// From the tray every mod is run, a persistent one too.
void FrmMain::mnuModH_Click(int index) {
  if (IsBusy()) return;
  running_ = true;
  const int mod = win::RoundToInt16(win::LeadingNumber(hidden.mnuModH[index].Tag())).value_or(-1);
  const RunOutcome run = LaunchBZ2(mod, cmdLinePage.buildcmdline(false), false, MakeRunHooks());
  running_ = false;
  ShowReport(run.failed);
  if (!run.earlyEnd.empty()) win::MsgBox(run.earlyEnd);
}

// No box comes between a player and the game: the status bar says how many steps did not work, and which the first was.
void FrmMain::ShowReport(const Report& report) {
  lastReport_ = report;
  if (report.empty()) return;
  const std::size_t more = report.size() - 1;
  StatusBar1.SetPanelText(1, TextOf(report[0]) + (more == 0 ? "" : " (and " + std::to_string(more) + " more)"));
}

RunHooks FrmMain::MakeRunHooks() {
  RunHooks hooks;
  hooks.foretell = [this](const Report& report) { ShowReport(report); };
  hooks.setTrayTip = [this](const std::string& tip) { tray.ShellTrayModifyImageTip(tip); };
  hooks.restoreTrayTip = [this] { tray.ShellTrayModifyImageTip(Caption()); };
  hooks.hideWindow = [this] {
    wasVisible_ = Visible();
    stateBefore_ = State();
    mnuFileHide_Click();
  };
  hooks.restoreWindow = [this] {
    if (!Loaded()) return;  // closed from the tray during the run
    SetVisible(wasVisible_);
    SetState(stateBefore_);
    if (wasVisible_ && stateBefore_ != win::WindowState::kMinimized) BringToFront();
  };
  hooks.showSplash = [this](const std::string& picture) { ShowSplash(picture); };
  hooks.finishSplash = [this] { FinishSplash(); };
  hooks.reloadInstall = [this] {
    running_ = false;
    activatebz2(CurrentInstall, false);
  };
  return hooks;
}

void FrmMain::ShowSplash(const std::string& picture) {
  splash_ = std::make_unique<frmSplashScrn>();
  splash_->EnsureLoaded();
  splash_->Picture1.SetPicture(win::Picture::FromFile(picture));
  win::DoEvents();
  splash_->SetClientSize(splash_->Picture1.Width(), splash_->Picture1.Height());
  splash_->Show();
  splash_->Timer1.SetEnabled(true);
  win::DoEvents();
}

void FrmMain::FinishSplash() {
  if (!splash_) return;
  while (splash_->Visible() && !splash_->SplashDone && splash_->Timer1.Enabled()) {
    win::DoEvents();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  splash_->Close();
  splash_.reset();
}

std::function<void()> FrmMain::MakeReload() {
  return [this] { activatebz2(CurrentInstall, false); };
}

std::function<void()> FrmMain::MakeReloadAfterEdit() {
  return [this] { DoWhenIdle(MakeReload()); };
}

void FrmMain::DoWhenIdle(std::function<void()> work) {
  postponed_.push_back(std::move(work));
  DoPostponed();
}

void FrmMain::DoPostponed() {
  while (!IsBusy() && Loaded() && !postponed_.empty()) {
    const std::function<void()> work = std::move(postponed_.front());
    postponed_.erase(postponed_.begin());
    work();
  }
  postponedTimer_.SetEnabled(Loaded() && !postponed_.empty());
}

void FrmMain::mnuFileEdit_Click() {
  const int mod = modPage.SelectedMod();
  if (mod < 1 || mod >= static_cast<int>(ModList.size())) return;
  frmNewMod dialog(MakeReloadAfterEdit());
  dialog.EnsureLoaded();
  dialog.loadmod(ModList[mod].DefinitionFile);
  dialog.ShowModal(this);
}

void FrmMain::mnuFileFind_Click() {
  if (mapPage.frmMap.Visible()) return mapPage.Finder().Open();
  if (!modPage.frmMod.Visible()) ShowNode("RMod");
  modPage.Finder().Open();
}

// Once the list has been saved no install is selected until the player picks one.
void FrmMain::mnuBZ2DirAddRem_Click() {
  const auto listSaved = [this] {
    DoWhenIdle([this] {
      LoadBZ2List();
      activatebz2(-1, false);
    });
  };
  frmAddRemBZ2(listSaved).ShowModal(this);
}

void FrmMain::mnuShowTray_Click() {
  if (tray.IsHooked()) {
    tray.ShellTrayDelete();
    tray.UnhookMainWindow();
    StoreOption("TrayIcon", "0");
  } else {
    StoreOption("TrayIcon", "1");
    if (!TurnTrayOn(0)) StoreOption("TrayIcon", "0");
  }
  ShowTrayState();
}

void FrmMain::mnuFileHide_Click() {
  SetState(win::WindowState::kMinimized);
  SetVisible(false);
}

void FrmMain::OpenWindow() {
  SetVisible(true);
  win::DoEvents();
  SetState(win::WindowState::kNormal);
  BringToFront();
}

void FrmMain::PopupHiddenMenu() {
  BringToFront();
  hidden.mnuHidden.PopupAtCursor();
}

void FrmMain::mnuEmergencyDeactivate_Click() {
  const win::Answer answer = win::MsgBox(kForcedWarning, win::kYesNo + win::kCritical, "Varnik WARNING");
  const int mod = modPage.SelectedMod();
  if (answer != win::Answer::kYes || mod < 1 || mod >= static_cast<int>(ModList.size())) return;
  if (const std::string problem = DeactivationProblem(ModList[mod].DefinitionFile, InstallRoot()); !problem.empty()) {
    win::MsgBox(problem);
    return;
  }
  const RevertResult result = RevertMod(ModList[mod].DefinitionFile, InstallRoot(), true);
  if (!result.refusal.empty()) win::MsgBox(result.refusal);
  ShowReport(result.failed);
}

}  // namespace varnik
