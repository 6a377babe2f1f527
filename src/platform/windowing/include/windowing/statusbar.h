#pragma once

#include "windowing/control.h"

#include <string>
#include <vector>

namespace win {

class LabelWidget;

// A bar of text panels, counted from 1, which share its width evenly. A text that is too long for its panel is shown
// smaller, then cut with dots; the whole text is then its tool tip.
class StatusBar : public Control {
 public:
  StatusBar(Container& parent, const char* name, int panels = 1);

  std::string PanelText(int panel) const;
  void SetPanelText(int panel, const std::string& text);

 private:
  std::vector<LabelWidget*> panels_;
  std::vector<std::string> texts_;
};

}  // namespace win
