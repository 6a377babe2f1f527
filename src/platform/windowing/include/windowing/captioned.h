#pragma once

#include "windowing/control.h"

#include <string>

namespace win {

// A control that shows a caption. A caption that wraps makes its control higher than it was made when it needs that.
class CaptionedControl : public Control {
 public:
  std::string Caption() const { return caption_; }
  void SetCaption(const std::string& caption);

  // The letter that together with Alt presses the control, or moves to the target of a label, and is underlined in the
  // caption if it is there. For a caption that marks none by itself.
  void SetMnemonic(char letter);

 protected:
  // `&` marks a key in the caption of a control that such a key can press.
  CaptionedControl(const char* name, QWidget* widget);
  void FitText() override;

 private:
  void ShowCaption();

  std::string caption_;
  char mnemonic_ = 0;
};

}  // namespace win
