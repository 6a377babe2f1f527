#include "windowing/frame.h"

#include <QGroupBox>

namespace win {

Frame::Frame(Container& parent, const char* name, const std::string& caption)
    : CaptionedControl(name, new QGroupBox(parent.Area())) {
  SetCaption(caption);
}

}  // namespace win
