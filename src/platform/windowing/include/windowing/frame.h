#pragma once

#include "windowing/captioned.h"

#include <string>

namespace win {

// A box with a caption that holds controls; hiding or disabling it does the same to what it holds.
class Frame : public CaptionedControl, public Container {
 public:
  Frame(Container& parent, const char* name, const std::string& caption = "");

  QWidget* Area() const override { return Widget(); }
};

}  // namespace win
