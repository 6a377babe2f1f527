#pragma once

#include "windowing/control.h"

#include <functional>
#include <string>

namespace win {

class CheckBoxWidget;

// A check box with the values 0 cleared, 1 ticked, 2 greyed. A person's click goes between 0 and 1.
class CheckBox : public Control {
 public:
  CheckBox(Container& parent, const char* name, const std::string& caption = "");

  std::string Caption() const;
  void SetCaption(const std::string& caption);

  int Value() const;

  // Raises Click when the value is another. False, with nothing changed, for a value outside 0 to 2.
  bool SetValue(int value);

  std::function<void()> Click;

 private:
  void FitText() override;
  CheckBoxWidget* box_;
  std::string caption_;
  int value_ = 0;
};

}  // namespace win
