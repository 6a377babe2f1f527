#include "windowing/label.h"

#include "platform/windowing/caption.h"
#include "platform/windowing/qtsupport.h"

namespace win {

Label::Label(Container& parent, const char* name, const std::string& caption)
    : Control(name, new LabelWidget(parent.Area())), label_(static_cast<LabelWidget*>(Widget())) {
  SetCaption(caption);
}

std::string Label::Caption() const {
  return caption_;
}

void Label::SetCaption(const std::string& caption) {
  if (!Widget() || (caption == caption_ && !caption.empty())) return;
  caption_ = caption;
  label_->setText(Readable(caption).replace("\r\n", "\n"));
  FitText();
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

void Label::FitText() {
  if (Widget()) FitCaption(label_, AskedSize(), [this](int width) { return label_->NeededHeight(width); });
}

}  // namespace win
