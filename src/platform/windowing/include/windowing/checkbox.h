#pragma once

#include "windowing/captioned.h"

#include <functional>
#include <string>

namespace win {

class CheckBoxWidget;

// A check box with the values 0 cleared, 1 ticked, 2 greyed. A person's click goes between 0 and 1.
class CheckBox : public CaptionedControl {
 public:
  CheckBox(Container& parent, const char* name, const std::string& caption = "");

  int Value() const;

  // Raises Click when the value is another. False, with nothing changed, for a value outside 0 to 2.
  bool SetValue(int value);

  std::function<void()> Click;

 private:
  CheckBoxWidget* box_;
  int value_ = 0;
};

}  // namespace win
