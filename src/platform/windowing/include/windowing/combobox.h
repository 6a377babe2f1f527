#pragma once

#include "windowing/control.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class QComboBox;

namespace win {

// A drop-down list: a person chooses one of its rows and types none. Rows count from 0. Click is raised when a person
// chooses a row, also the one that was chosen before, and by SetListIndex when the index changes. An index outside the
// list changes nothing and reads as empty text or 0.
class ComboBox : public Control {
 public:
  ComboBox(Container& parent, const char* name);

  void AddItem(const std::string& text);
  int NewIndex() const;  // of the last AddItem
  void Clear();          // leaves no row selected, without an event

  int ListCount() const;
  std::string List(int index) const;
  std::string Text() const;  // of the selected row, empty with none

  int ListIndex() const;  // -1 with no row selected
  bool SetListIndex(int index);

  std::int32_t ItemData(int index) const;
  void SetItemData(int index, std::int32_t data);

  std::function<void()> Click;

 private:
  struct Row {
    std::string text;
    std::int32_t data = 0;
  };
  bool Holds(int index) const { return index >= 0 && index < ListCount(); }

  QComboBox* box_;
  std::vector<Row> rows_;
  int listIndex_ = -1;
};

}  // namespace win
