#include "startup/maintenance.h"

#include "modengine/runguard.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/instance.h"
#include "platform/system/process/services.h"
#include "platform/system/store/registry.h"
#include "platform/system/store/settings.h"
#include "platform/system/text/text.h"
#include "support/debuglog.h"
#include "support/registry.h"
#include "support/settings.h"

namespace varnik {

bool AnswerMaintenanceWord(win::Instance& instance) {
  const std::string line = win::LowerCase(win::Trim(win::CommandLine()));
  if (line != "clearreg" && line != "close") return false;
  if (line == "clearreg") {
    win::DeleteSetting(kApplication);
    RegRemoveValue(win::kHkeyLocalMachine, kAboutUrlsKey, kAboutUrlsValue);
  }
  static_cast<void>(ActivatePrevInstance(instance, true));
  return true;
}

bool ActivatePrevInstance(win::Instance& instance, bool closeOther) {
  LogLine("ActivatePrevInstance Start");
  // A program that works on an install counts like a running instance, so that its settings do not vanish.
  if (!instance.OtherIsRunning() && RunGuard().IsHeld()) return false;
  if (closeOther) {
    instance.CloseOther();
    return false;
  }
  const std::string title = win::Program().title;
  win::MsgBox(title + " is already running. You may have to open the window from the system tray, or it may be busy.",
              win::kOkOnly, title + " Already Running");
  return true;
}

void PublishHomePage() {
  if (RegReadValue(win::kHkeyLocalMachine, kAboutUrlsKey, kAboutUrlsValue) == kHomePage) return;
  RegWriteValue(win::kHkeyLocalMachine, kAboutUrlsKey, kAboutUrlsValue, kHomePage, win::kRegSz);
}

}  // namespace varnik
