#include "windowing/button.h"

#include "platform/windowing/caption.h"
#include "platform/windowing/qtsupport.h"

namespace win {

Button::Button(Container& parent, const char* name, const std::string& caption)
    : CaptionedControl(name, new ButtonWidget(parent.Area())), button_(static_cast<ButtonWidget*>(Widget())) {
  QObject::connect(button_, &QPushButton::clicked, button_, [this] {
    // Its key presses a button without moving the focus there, but what was typed elsewhere has to be taken in first.
    if (button_->focusPolicy() != Qt::NoFocus) button_->setFocus(Qt::ShortcutFocusReason);
    Raise(Click);
  });
  SetCaption(caption);
}

void Button::Press() {
  if (Widget()) button_->click();
}

}  // namespace win
