#include "mainwindow/tray.h"

#include "support/runstate.h"

#include <utility>

namespace varnik {

Tray::Tray(win::Menu& hidden, std::function<void()> open, std::function<void()> popup) : hidden_(hidden) {
  icon_.DoubleClick = [this, action = std::move(open)] { TrayWindowProc(action); };
  icon_.RightUp = [this, action = std::move(popup)] { TrayWindowProc(action); };
}

bool Tray::ShellTrayAdd(const std::string& tip, const win::Picture& image, int patience) {
  return icon_.Add(tip, image, hidden_, patience);
}

void Tray::ShellTrayModifyImage(const win::Picture& image) { icon_.SetImage(image); }

void Tray::ShellTrayModifyImageTip(const std::string& tip) { icon_.SetTip(tip); }

void Tray::ShellTrayDelete() { icon_.Remove(); }

void Tray::HookMainWindow() { hooked_ = true; }

void Tray::UnhookMainWindow() { hooked_ = false; }

// While the game runs the icon stays alive and does not act; nothing is queued for afterwards.
void Tray::TrayWindowProc(const std::function<void()>& action) const {
  if (hooked_ && !GameRunning) action();
}

}  // namespace varnik
