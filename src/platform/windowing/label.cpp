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

void Label::SetAtBottom() {
  if (Widget()) label_->setAlignment(Qt::AlignBottom | Qt::AlignLeft);
}

void Label::SetElided() {
  if (Widget()) label_->SetElided();
}

void Label::SetTarget(Control& target) {
  if (Widget() && target.Widget()) label_->setBuddy(target.Widget());
}

void Label::SetCentered(bool centered) {
  if (Widget()) label_->setAlignment(Qt::AlignTop | (centered ? Qt::AlignHCenter : Qt::AlignLeft));
}

}  // namespace win
