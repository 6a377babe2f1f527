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

 private:
  LabelWidget* label_;
};

}  // namespace win
