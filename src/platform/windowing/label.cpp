#include "windowing/label.h"

#include "platform/windowing/caption.h"
#include "platform/windowing/qtsupport.h"

namespace win {

Label::Label(Container& parent, const char* name, const std::string& caption)
    : CaptionedControl(name, new LabelWidget(parent.Area())), label_(static_cast<LabelWidget*>(Widget())) {
  SetCaption(caption);
}

void Label::SetBold(bool bold) {
  if (!Widget()) return;
  QFont font = label_->font();
  font.setBold(bold);
  label_->setFont(font);
  FitText();
}

void Label::SetCentered(bool centered) {
  if (Widget()) label_->setAlignment(Qt::AlignTop | (centered ? Qt::AlignHCenter : Qt::AlignLeft));
}

}  // namespace win
