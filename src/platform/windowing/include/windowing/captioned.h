#pragma once

#include "windowing/control.h"

#include <string>

namespace win {

// A control that shows a caption. A caption that wraps makes its control higher than it was made when it needs that.
class CaptionedControl : public Control {
 public:
  std::string Caption() const { return caption_; }
  void SetCaption(const std::string& caption);

 protected:
  // `&` marks a key in the caption of a control that such a key can press.
  CaptionedControl(const char* name, QWidget* widget);
  void FitText() override;

 private:
  std::string caption_;
};

}  // namespace win
