#include "windowing/listbox.h"

#include "platform/windowing/listmodel.h"
#include "platform/windowing/qtsupport.h"
#include "platform/windowing/rowview.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>
#include <QPointer>

#include <utility>

namespace win {

namespace {

// Tells when a person has acted on it, behind the view's own handling: a handler may rebuild the list.
class ListView : public RowView<QListView> {
 public:
  using RowView::RowView;
  std::function<void(bool clickedRow)> acted;
  std::function<void()> doubleClicked;
  std::function<bool()> canDrag;
  std::function<void(int step)> dragged;

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    dragging_ = false;
    // Below the last row there is nothing to select, and the selection stays.
    if (indexAt(event->pos()).isValid()) RowView::mousePressEvent(event);
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    if (!(event->buttons() & Qt::LeftButton) || !canDrag()) return RowView::mouseMoveEvent(event);
    const int under = indexAt(event->pos()).row();
    const int row = currentIndex().row();
    if (under < 0 || row < 0 || under == row) return;
    dragging_ = true;
    const auto handler = dragged;
    handler(under < row ? -1 : 1);
  }

  void mouseDoubleClickEvent(QMouseEvent* event) override {
    RowView::mouseDoubleClickEvent(event);
    doubled_ = event->button() == Qt::LeftButton && indexAt(event->pos()).isValid();
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    if (std::exchange(dragging_, false)) return setState(NoState);  // no click on what it was dragged to
    RowView::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton) return;
    const bool doubled = std::exchange(doubled_, false);
    const QPointer<ListView> alive(this);
    Report(indexAt(event->pos()).isValid());
    if (!alive || !doubled) return;
    const auto handler = doubleClicked;
    handler();
  }

  void keyPressEvent(QKeyEvent* event) override {
    RowView::keyPressEvent(event);
    Report(false);
  }

  void focusInEvent(QFocusEvent* event) override {
    const bool none = !currentIndex().isValid();
    RowView::focusInEvent(event);
    // Qt makes the first row the current one, and the first key would then go past it.
    if (none) selectionModel()->clear();
  }

 private:
  void Report(bool clickedRow) {
    const auto handler = acted;
    if (handler) handler(clickedRow);
  }

  bool dragging_ = false, doubled_ = false;
};

}  // namespace

struct ListBox::State {
  explicit State(ListStyle itsStyle) : style(itsStyle), model(itsStyle) {}

  // Makes view and list index agree without an event.
  void Select(int index) {
    listIndex = index;
    if (!view || model.Updating()) return;
    if (index >= 0)
      view->selectionModel()->setCurrentIndex(model.index(index), QItemSelectionModel::ClearAndSelect);
    else
      view->selectionModel()->clear();
  }

  ListStyle style;
  ListModel model;
  QPointer<QListView> view;
  int listIndex = -1;
  int newIndex = -1;
  int tickedRow = -1;  // by the person's act under way
};

ListBox::ListBox(Container& parent, const char* name, ListStyle style)
    : Control(name, new ListView(parent.Area())), state_(std::make_shared<State>(style)) {
  auto* view = static_cast<ListView*>(Widget());
  state_->view = view;
  view->setModel(&state_->model);
  view->setUniformItemSizes(true);
  view->acted = [this](bool clickedRow) { Acted(clickedRow); };
  view->doubleClicked = [this] {
    if (ListIndex() >= 0) Raise(DblClick);
  };
  view->canDrag = [this] { return static_cast<bool>(DragRow); };
  view->dragged = [this](int step) { Raise(DragRow, step); };
  state_->model.tickedByPerson = [this](int index) { state_->tickedRow = index; };
}

ListBox::~ListBox() {
  if (state_->view) state_->view->setModel(nullptr);
}

void ListBox::Acted(bool clickedRow) {
  State& state = *state_;
  const int tickedRow = std::exchange(state.tickedRow, -1);
  // Qt does not move to a row whose tick is clicked.
  const int index = tickedRow != -1 ? tickedRow : state.view->currentIndex().row();
  const bool moved = index != state.listIndex;
  state.Select(index);
  if (!clickedRow && !moved && tickedRow == -1) return;
  const std::weak_ptr<State> alive = state_;
  if (tickedRow != -1) Raise(ItemCheck, tickedRow);
  if (!alive.expired()) Raise(Click);
}

void ListBox::AddItem(const std::string& text, int index) {
  State& state = *state_;
  state.newIndex = state.model.Add(text, index);
  if (state.listIndex >= state.newIndex) ++state.listIndex;
}

int ListBox::NewIndex() const { return state_->newIndex; }

void ListBox::RemoveItem(int index) {
  State& state = *state_;
  if (!state.model.Holds(index)) return;
  state.newIndex = -1;
  const int selected = state.listIndex;
  state.model.Remove(index);
  state.Select(selected == index ? -1 : selected - (selected > index ? 1 : 0));
}

void ListBox::Clear() {
  state_->model.Clear();
  state_->listIndex = state_->newIndex = -1;
}

int ListBox::ListCount() const { return state_->model.Count(); }

std::string ListBox::List(int index) const {
  return state_->model.Holds(index) ? state_->model.Row(index).text : std::string();
}

void ListBox::SetList(int index, const std::string& text) {
  if (state_->model.Holds(index)) state_->model.SetText(index, text);
}

int ListBox::ListIndex() const { return state_->listIndex; }

void ListBox::SetListIndex(int index) {
  State& state = *state_;
  if (index == state.listIndex || (index != -1 && !state.model.Holds(index))) return;
  state.Select(index);
  Raise(Click);
}

std::int32_t ListBox::ItemData(int index) const {
  return state_->model.Holds(index) ? state_->model.Row(index).data : 0;
}

void ListBox::SetItemData(int index, std::int32_t data) {
  if (state_->model.Holds(index)) state_->model.SetData(index, data);
}

bool ListBox::Selected(int index) const {
  if (state_->style != ListStyle::kCheckBoxes) return index >= 0 && index == state_->listIndex;
  return state_->model.Holds(index) && state_->model.Row(index).ticked;
}

void ListBox::SetSelected(int index, bool selected) {
  if (!state_->model.Holds(index)) return;
  if (state_->style == ListStyle::kCheckBoxes) {
    if (state_->model.SetTicked(index, selected)) Raise(ItemCheck, index);
  } else if (selected) {
    SetListIndex(index);
  } else if (index == state_->listIndex) {
    SetListIndex(-1);
  }
}

void ListBox::SetMark(int index, RowMark mark) {
  if (state_->model.Holds(index)) state_->model.SetMark(index, mark);
}

void ListBox::SetFilter(const std::function<bool(int index)>& shows) {
  if (!state_->view) return;
  for (int row = 0; row < ListCount(); ++row)
    state_->view->setRowHidden(row, shows && !shows(row));
}

bool ListBox::IsShown(int index) const {
  return state_->model.Holds(index) && state_->view && !state_->view->isRowHidden(index);
}

void ListBox::SetMonospace() {
  if (Widget()) Widget()->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

void ListBox::BeginUpdate() { state_->model.BeginUpdate(); }

void ListBox::EndUpdate() {
  State& state = *state_;
  const ListRow* selected = state.listIndex >= 0 ? &state.model.Row(state.listIndex) : nullptr;
  if (state.model.EndUpdate()) state.Select(selected ? state.model.IndexOf(selected) : -1);
}

}  // namespace win
