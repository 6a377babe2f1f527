#pragma once

#include "windowing/captioned.h"

#include <functional>
#include <string>

namespace win {

class ButtonWidget;

// A push button. `&` in the caption marks the key that presses it together with Alt.
class Button : public CaptionedControl {
 public:
  Button(Container& parent, const char* name, const std::string& caption = "");

  // Raises Click as a person's press does; nothing while the button is disabled.
  void Press();

  std::function<void()> Click;

 private:
  ButtonWidget* button_;
};

}  // namespace win
