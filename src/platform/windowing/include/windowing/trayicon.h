#pragma once

#include "windowing/picture.h"

#include <functional>
#include <memory>
#include <string>

namespace win {

class Menu;

// An icon in the desktop's tray. Events come from a person's mouse, on the thread of the event loop.
class TrayIcon {
 public:
  TrayIcon();
  ~TrayIcon();  // removes the icon
  TrayIcon(const TrayIcon&) = delete;
  TrayIcon& operator=(const TrayIcon&) = delete;

  // False when the desktop has no tray, after waiting up to `patience` milliseconds for one: at a start together with
  // the desktop session the tray may come later than the program. Events run meanwhile.
  // Some trays ask for a menu to show by themselves, and raise no RightUp: they get `menu`.
  bool Add(const std::string& tip, const Picture& image, Menu& menu, int patience = 0);
  bool Active() const;
  void SetImage(const Picture& image);  // nothing happens while there is no icon
  void SetTip(const std::string& tip);
  void Remove();

  std::function<void()> DoubleClick;
  std::function<void()> RightUp;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace win
