#pragma once

#include "windowing/control.h"

#include <string>

class QGroupBox;

namespace win {

// A box with a caption that holds controls; hiding or disabling it does the same to what it holds.
class Frame : public Control, public Container {
 public:
  Frame(Container& parent, const char* name, const std::string& caption = "");

  std::string Caption() const;
  void SetCaption(const std::string& caption);

  QWidget* Area() const override;

 private:
  QGroupBox* box_;
  std::string caption_;
};

}  // namespace win
