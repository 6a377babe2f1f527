#pragma once

#include "windowing/imagelist.h"
#include "windowing/trayicon.h"

#include <functional>
#include <string>

namespace varnik {

// The icon in the desktop's tray. The hook, through which its mouse events reach the window, is the single mark that
// the icon is on.
class Tray {
 public:
  // `open` brings the window back, `popup` opens the hidden menu, which some trays show by themselves.
  Tray(win::Menu& hidden, std::function<void()> open, std::function<void()> popup);

  // False when the desktop refuses the icon. `patience` as in trayicon.h.
  [[nodiscard]] bool ShellTrayAdd(const std::string& tip, const win::Picture& image, int patience);
  void ShellTrayModifyImage(const win::Picture& image);
  void ShellTrayModifyImageTip(const std::string& tip);
  void ShellTrayDelete();

  void HookMainWindow();
  void UnhookMainWindow();
  bool IsHooked() const { return hooked_; }

 private:
  void TrayWindowProc(const std::function<void()>& action) const;

  win::Menu& hidden_;
  win::TrayIcon icon_;
  bool hooked_ = false;
};

}  // namespace varnik
