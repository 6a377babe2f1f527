#include "windowing/statusbar.h"

#include "platform/windowing/caption.h"
#include "platform/windowing/qtsupport.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QStyle>

namespace win {

StatusBar::StatusBar(Container& parent, const char* name, int panels)
    : Control(name, new QFrame(parent.Area())), texts_(panels) {
  auto* layout = new QHBoxLayout(Widget());
  layout->setContentsMargins(0, 0, 0, 0);
  for (int panel = 0; panel < panels; ++panel) {
    panels_.push_back(new LabelWidget(Widget()));
    panels_.back()->SetOneLine();
    panels_.back()->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    panels_.back()->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    layout->addWidget(panels_.back(), 1);
  }
}

std::string StatusBar::PanelText(int panel) const {
  return panel >= 1 && panel <= static_cast<int>(texts_.size()) ? texts_[panel - 1] : std::string();
}

void StatusBar::SetPanelText(int panel, const std::string& text) {
  if (panel < 1 || panel > static_cast<int>(texts_.size()) || texts_[panel - 1] == text) return;
  texts_[panel - 1] = text;
  if (!Widget()) return;
  LabelWidget& label = *panels_[panel - 1];
  label.setText(Readable(text));
  label.setToolTip(PlainToolTip(label.text()));
}

}  // namespace win
