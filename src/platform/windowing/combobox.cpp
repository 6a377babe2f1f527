#include "windowing/combobox.h"

#include "platform/windowing/qtsupport.h"

#include <QComboBox>
#include <QWheelEvent>

namespace win {

namespace {

// The wheel turns the page that it stands on, not the box that happens to lie under the mouse.
class Box : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus())
      QComboBox::wheelEvent(event);
    else
      event->ignore();
  }
};

}  // namespace

ComboBox::ComboBox(Container& parent, const char* name)
    : Control(name, new Box(parent.Area())), box_(static_cast<QComboBox*>(Widget())) {
  box_->setFocusPolicy(Qt::StrongFocus);
  box_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);  // never asks all rows for their width
  QObject::connect(box_, &QComboBox::activated, box_, [this](int index) {
    listIndex_ = index;
    Raise(Click);
  });
}

void ComboBox::AddItem(const std::string& text) {
  if (!Widget()) return;
  rows_.push_back({text});
  box_->addItem(Readable(text));
  // Qt selects the first row by itself.
  if (box_->currentIndex() != listIndex_) box_->setCurrentIndex(listIndex_);
}

int ComboBox::NewIndex() const { return ListCount() - 1; }

void ComboBox::Clear() {
  rows_.clear();
  listIndex_ = -1;
  if (Widget()) box_->clear();
}

int ComboBox::ListCount() const { return static_cast<int>(rows_.size()); }

std::string ComboBox::List(int index) const { return Holds(index) ? rows_[index].text : std::string(); }

std::string ComboBox::Text() const { return List(listIndex_); }

int ComboBox::ListIndex() const { return listIndex_; }

bool ComboBox::SetListIndex(int index) {
  if (!Widget() || (index != -1 && !Holds(index))) return false;
  if (index == listIndex_) return true;
  listIndex_ = index;
  box_->setCurrentIndex(index);
  Raise(Click);
  return true;
}

std::int32_t ComboBox::ItemData(int index) const { return Holds(index) ? rows_[index].data : 0; }

void ComboBox::SetItemData(int index, std::int32_t data) {
  if (Holds(index)) rows_[index].data = data;
}

}  // namespace win
