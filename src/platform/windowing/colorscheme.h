#pragma once

#include <QObject>
#include <QPalette>

namespace win {

// Dark colours on a desktop that asks for them, where Qt has no part of that desktop to take them from. Asked anew each
// time that the program becomes the active one.
class ColorScheme : public QObject {
 public:
  ColorScheme();

 private:
  void Ask();
  void Apply(bool dark);

  QPalette light_;
  bool dark_ = false;
};

}  // namespace win
