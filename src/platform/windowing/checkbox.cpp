#include "windowing/checkbox.h"

#include "platform/windowing/caption.h"
#include "platform/windowing/qtsupport.h"

namespace win {

CheckBox::CheckBox(Container& parent, const char* name, const std::string& caption)
    : CaptionedControl(name, new CheckBoxWidget(parent.Area())), box_(static_cast<CheckBoxWidget*>(Widget())) {
  // Only a person's click arrives here. It ends the greyed state.
  QObject::connect(box_, &QCheckBox::clicked, box_, [this] { SetValue(value_ == 1 ? 0 : 1); });
  SetCaption(caption);
}

int CheckBox::Value() const { return value_; }

bool CheckBox::SetValue(int value) {
  if (value < 0 || value > 2) return false;
  if (!Widget()) return false;
  constexpr Qt::CheckState kStates[] = {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked};
  const bool changed = value != value_;
  value_ = value;
  box_->setTristate(value == 2);
  box_->setCheckState(kStates[value]);
  if (changed) Raise(Click);
  return true;
}

}  // namespace win
