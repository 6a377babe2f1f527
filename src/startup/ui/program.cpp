#include "startup/ui/program.h"

#include "mainwindow/frmmain.h"
#include "platform/system/paths/program.h"
#include "platform/system/paths/workingfolder.h"
#include "platform/system/process/instance.h"
#include "platform/system/process/services.h"
#include "platform/system/store/configfolder.h"
#include "platform/system/text/text.h"
#include "startup/commandline.h"
#include "startup/crashrecovery.h"
#include "startup/maintenance.h"
#include "support/debuglog.h"
#include "support/runstate.h"
#include "support/settings.h"
#include "support/ui/artwork.h"
#include "support/ui/frmsplash.h"
#include "windowing/application.h"

namespace varnik {

namespace {

constexpr char kOptionFile[] = "varnik.cmd";  // marks a portable copy

void FixAppPath() { AppPath = win::ProgramFolder(kOptionFile); }

bool TrayIsOff() { return win::LeadingNumber(ReadOption("TrayIcon")) == 0; }

// The mode of this start, once an interrupted run has been dealt with.
std::int16_t DecideRunMode(std::int16_t mode) {
  if (RecoverFromCrash().acted && mode != kRunModeHidden) mode = kRunModeLeave;
  if (mode == kRunModeHidden && TrayIsOff()) mode = kRunModeLeave;  // the window could not be reached
  return mode;
}

void ShowAsMode(FrmMain& window, std::int16_t mode) {
  window.Show();
  if (mode == kRunModeNormal) return window.MaximizeAsLeft();
  win::DoEvents();
  window.SetState(win::WindowState::kMinimized);
  win::DoEvents();
  window.Hide();
}

void RunMainWindow(win::Application& application, frmSplash& busy, std::int16_t mode) {
  StartingUp = true;
  win::DoEvents();
  SearchDirs = {"", "addon", "data"};
  FrmMain window(busy);
  window.EnsureLoaded();
  application.SetMainForm(&window);
  win::DoEvents();
  busy.Close();
  if (window.Loaded()) ShowAsMode(window, mode);
  StartingUp = false;
  application.Run();
}

}  // namespace

int Main() {
  win::Application application;
  application.SetIcon(WindowIcon());
  win::Instance instance;
  if (AnswerMaintenanceWord(instance)) return 0;
  if (ActivatePrevInstance(instance, false)) return 0;
  win::TidyConfigFolder();
  PublishHomePage();
  FixAppPath();
  LogLine("Varnik Startup");
  if (ActivatePrevInstance(instance, false)) return 0;
  application.Serve(instance);
  frmSplash busy;
  busy.Show();
  const std::int16_t asked = ProcessCmdLine();
  // Relative paths of the command line start where the caller is, those of older definitions in the program's folder,
  // wherever the program is started from.
  const win::ScopedWorkingFolder folder(AppPath);
  const std::int16_t mode = DecideRunMode(asked);
  if (mode == kRunModeLeave) {
    busy.Close();
    return 0;
  }
  RunMainWindow(application, busy, mode);
  return 0;
}

}  // namespace varnik
