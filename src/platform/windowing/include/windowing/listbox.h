#pragma once

#include "windowing/control.h"
#include "windowing/liststyle.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace win {

// A list of rows, from index 0. A sorted list (order: compare.h) decides itself where a row lands; among equal texts
// the later one stands behind. Data, tick and selection travel with their row. An index outside the list changes
// nothing and reads as empty text, 0 or false.
//
// Rows that do not fit in width end in dots, and their tool tip is the whole text. Typing goes to the row that begins
// so.
//
// Click is raised by a person's click on a row, by a move of the selection, by a person's tick, and by SetListIndex
// when the index changes. Adding, removing and clearing raise nothing.
class ListBox : public Control {
 public:
  ListBox(Container& parent, const char* name, ListStyle style = ListStyle::kPlain);
  ~ListBox() override;

  // `index` is where an unsorted list takes the row; -1: at the end.
  void AddItem(const std::string& text, int index = -1);
  int NewIndex() const;        // where the last AddItem put its row; -1 after a removal
  void RemoveItem(int index);  // removing the selected row leaves none selected
  void Clear();

  int ListCount() const;
  std::string List(int index) const;
  void SetList(int index, const std::string& text);  // the row stays where it is, also in a sorted list

  int ListIndex() const;  // -1 with no row selected
  void SetListIndex(int index);

  std::int32_t ItemData(int index) const;
  void SetItemData(int index, std::int32_t data);

  // The tick of a row; without ticks, whether it is the selected row.
  bool Selected(int index) const;
  void SetSelected(int index, bool selected);

  void SetMark(int index, RowMark mark);

  // Leaves out of sight the rows for which `shows` is false, until it is called again; an empty function shows all.
  // Rows keep their indices, and the selected one stays selected. Rows that are added are shown.
  void SetFilter(const std::function<bool(int index)>& shows);
  bool IsShown(int index) const;

  void SetMonospace();

  // Between the two, AddItem costs next to nothing: rows stand in the order in which they were added, and indices
  // (NewIndex too) count in that order. EndUpdate sorts and shows them. Pairs may nest.
  void BeginUpdate();
  void EndUpdate();

  std::function<void()> Click;
  std::function<void()> DblClick;  // on the selected row; Click has been raised
  std::function<void(int step)>
      DragRow;  // a person drags the selected row up (-1) or down (1); moving it is up to the handler
  std::function<void(int index)> ItemCheck;  // a tick changed, by a person (Click follows) or by SetSelected

 private:
  void Acted(bool clickedRow);

  struct State;
  std::shared_ptr<State> state_;
};

// Holds a list's update open for as long as it lives.
class ListUpdate {
 public:
  explicit ListUpdate(ListBox& list) : list_(list) { list_.BeginUpdate(); }
  ~ListUpdate() { list_.EndUpdate(); }
  ListUpdate(const ListUpdate&) = delete;
  ListUpdate& operator=(const ListUpdate&) = delete;

 private:
  ListBox& list_;
};

}  // namespace win
