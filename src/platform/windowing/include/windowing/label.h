#pragma once

#include "windowing/captioned.h"

#include <string>

namespace win {

class LabelWidget;

// A text that wraps at its width. It becomes higher than it was made when its text needs that.
class Label : public CaptionedControl {
 public:
  Label(Container& parent, const char* name, const std::string& caption = "");

  void SetBold(bool bold);
  void SetCentered(bool centered);
  void SetAtBottom();  // a text lower than the label stands at its lower edge, close to what it names
  void SetElided();    // lines do not wrap: one that is too wide is cut in its middle, and the tool tip has it whole

  // What the label names: screen readers say the caption there, and the label's mnemonic moves the focus to it.
  void SetTarget(Control& target);

 private:
  LabelWidget* label_;
};

}  // namespace win
