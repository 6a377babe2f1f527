#pragma once

#include "windowing/control.h"

#include <functional>

class QSlider;

namespace win {

// A slider over whole numbers. Change is raised by a person's move and by SetValue when the value is another, and by a
// new range that moves the value.
class Slider : public Control {
 public:
  Slider(Container& parent, const char* name);

  int Value() const;
  void SetRange(int min, int max);  // `max` below `min` counts as `min`
  void SetValue(int value);         // kept within the range

  std::function<void()> Change;

 private:
  QSlider* slider_;
};

}  // namespace win
