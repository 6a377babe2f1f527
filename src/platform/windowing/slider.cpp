#include "windowing/slider.h"

#include "platform/windowing/qtsupport.h"

#include <QSlider>

#include <algorithm>

namespace win {

Slider::Slider(Container& parent, const char* name)
    : Control(name, new QSlider(Qt::Horizontal, parent.Area())), slider_(static_cast<QSlider*>(Widget())) {
  slider_->setTickPosition(QSlider::TicksBelow);
  slider_->setPageStep(1);
  QObject::connect(slider_, &QSlider::valueChanged, slider_, [this] { Raise(Change); });
}

int Slider::Value() const { return Widget() ? slider_->value() : 0; }

void Slider::SetRange(int min, int max) {
  if (Widget()) slider_->setRange(min, std::max(min, max));
}

void Slider::SetValue(int value) {
  if (Widget()) slider_->setValue(value);
}

}  // namespace win
