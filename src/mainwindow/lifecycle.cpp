#include "installs/installlist.h"
#include "mainwindow/frmmain.h"
#include "mainwindow/picturelists.h"
#include "mainwindow/windowsize.h"
#include "platform/system/process/services.h"
#include "platform/system/text/text.h"
#include "support/debuglog.h"
#include "support/runstate.h"
#include "support/settings.h"

#include <charconv>
#include <cmath>

namespace varnik {

namespace {

// At a start together with the desktop session the tray may come later than the program.
constexpr int kPatienceAtBoot = 5000;

double NumberOption(const char* key) { return win::LeadingNumber(ReadOption(key)); }

// The shortest text that reads back as the same single-precision number.
std::string SingleText(double twips) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, static_cast<float>(twips)).ptr;
  return std::string(text, end);
}

}  // namespace

void FrmMain::Form_Load() {
  LogLine("Main form Load Begin");
  TakeStoredSize();
  Move(NumberOption("MainLeft"), NumberOption("MainTop"));
  loadimglist(imglstnomap);
  loadiconlist(imglstIcon);
  mapPage.SetNoMapPicture(imglstnomap.At(ChosenPicture(imglstnomap, "NoMapPic")));
  PopulateTree();
  ClearMaps();
  ClearMods();
  ReadOptionFlags();
  MeasureHeight();
  LoadBZ2List();
  AddTrayAtLoad();
  ShowTrayState();
  activatebz2(StoredActiveInstall(), true);
  HideStatusBarAtLoad();
}

void FrmMain::TakeStoredSize() {
  const WindowSize size =
      StoredWindowSize().value_or(FirstWindowSize({Width(), Height()}, {ScreenWidth(), ScreenHeight()}));
  SetSize(size.width, size.height);
}

// The window has its height once it has been on screen; at this point the status bar is showing.
void FrmMain::MeasureHeight() {
  Show();
  win::DoEvents();
  FormHeight = std::floor(Height());
  win::DoEvents();
  Hide();
}

void FrmMain::MaximizeAsLeft() {
  if (WindowWasMaximized()) SetState(win::WindowState::kMaximized);
}

void FrmMain::AddTrayAtLoad() {
  if (NumberOption("TrayIcon") != 1) return;
  if (TurnTrayOn(StartingUp ? kPatienceAtBoot : 0)) return;
  if (StartingUp) Close();
  StoreOption("TrayIcon", "0");
}

bool FrmMain::TurnTrayOn(int patience) {
  if (!tray.ShellTrayAdd(Caption(), imglstIcon.At(1), patience)) return false;
  tray.ShellTrayModifyImage(imglstIcon.At(ChosenPicture(imglstIcon, "TrayIconNum")));
  tray.HookMainWindow();
  return true;
}

void FrmMain::ShowTrayState() {
  menu.mnuShowTray.SetChecked(tray.IsHooked());
  menu.mnuFileHide.SetVisible(tray.IsHooked());
}

void FrmMain::HideStatusBarAtLoad() {
  // Showing a window that has been unloaded would load it anew.
  if (ReadOption("StatusBar") == "On" || !Loaded()) return;
  Show();
  win::DoEvents();
  showstatusbar(false);
  Hide();
}

void FrmMain::Form_QueryUnload(bool& cancel, win::UnloadMode mode) {
  if (mode == win::UnloadMode::kControlMenu && tray.IsHooked()) {
    cancel = true;
    mnuFileHide_Click();
    return;
  }
  // At the end of a session there is nobody to answer.
  cancel = GameRunning || (mode != win::UnloadMode::kAppWindows && !MayLoseEdits());
}

// Dialogs are asked as by their close boxes.
bool FrmMain::MayLoseEdits() {
  const std::vector<win::Form*> forms = win::OpenForms();
  for (std::size_t i = forms.size(); i-- > 0;)
    if (forms[i] != this && forms[i] != &busy_ && !forms[i]->Close(win::UnloadMode::kControlMenu)) return false;
  return cmdLineEditPage.MayClose();
}

void FrmMain::Form_Unload() {
  const std::vector<win::Form*> forms = win::OpenForms();
  for (std::size_t i = forms.size(); i-- > 1;)
    if (forms[i] != this) forms[i]->Close();
  if (State() != win::WindowState::kMinimized) {
    StoreOption("MainLeft", SingleText(Left()));
    StoreOption("MainTop", SingleText(Top()));
    StoreWindowSize({Width(), CurrentFormHeight()}, State() == win::WindowState::kMaximized);
  }
  if (tray.IsHooked()) {
    tray.ShellTrayDelete();
    tray.UnhookMainWindow();
  }
  LogLine("Main Form Unload");
}

// A person may have changed it since it was set.
double FrmMain::CurrentFormHeight() const {
  constexpr double kOnePixel = 15;
  const double height = Height() + (StatusBar1.Visible() ? 0 : StatusBar1.Height());
  return std::abs(height - FormHeight) > kOnePixel ? height : FormHeight;
}

void FrmMain::showstatusbar(bool show) {
  FormHeight = CurrentFormHeight();
  const win::WindowState state = State();
  const bool visible = Visible();
  SetVisible(true);
  // A maximised window keeps its height, and what changes is the one that it will have again.
  if (state != win::WindowState::kMaximized) SetState(win::WindowState::kNormal);
  if (!StatusBar1.Visible() && show) {
    StatusBar1.SetVisible(true);
    SetHeight(FormHeight);
  } else if (StatusBar1.Visible() && !show) {
    SetHeight(FormHeight - StatusBar1.Height());
    StatusBar1.SetVisible(false);
  }
  SetState(state);
  SetVisible(visible);
}

}  // namespace varnik
