#pragma once

#include "windowing/control.h"

#include <functional>
#include <string>

namespace win {

class ButtonWidget;

// A push button. `&` in the caption marks the key that presses it together with Alt.
class Button : public Control {
 public:
  Button(Container& parent, const char* name, const std::string& caption = "");

  std::string Caption() const;
  void SetCaption(const std::string& caption);

  // Raises Click as a person's press does; nothing while the button is disabled.
  void Press();

  std::function<void()> Click;

 private:
  void FitText() override;
  ButtonWidget* button_;
  std::string caption_;
};

}  // namespace win
