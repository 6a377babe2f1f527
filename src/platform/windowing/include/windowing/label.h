#pragma once

#include "windowing/control.h"

#include <string>

namespace win {

class LabelWidget;

// A text that wraps at its width. It becomes higher than it was made when its text needs that.
class Label : public Control {
 public:
  Label(Container& parent, const char* name, const std::string& caption = "");

  std::string Caption() const;
  void SetCaption(const std::string& caption);
  void SetBold(bool bold);
  void SetCentered(bool centered);

 private:
  void FitText() override;
  LabelWidget* label_;
  std::string caption_;
};

}  // namespace win
