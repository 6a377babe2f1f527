#include "windowing/frame.h"

#include "platform/windowing/qtsupport.h"

#include <QGroupBox>

namespace win {

Frame::Frame(Container& parent, const char* name, const std::string& caption)
    : Control(name, new QGroupBox(parent.Area())), box_(static_cast<QGroupBox*>(Widget())) {
  SetCaption(caption);
}

std::string Frame::Caption() const {
  return caption_;
}

void Frame::SetCaption(const std::string& caption) {
  caption_ = caption;
  // A frame is no target for a key, so `&` is a character like the others.
  if (Widget()) box_->setTitle(Readable(caption).replace("&", "&&"));
}

QWidget* Frame::Area() const {
  return box_;
}

}  // namespace win
