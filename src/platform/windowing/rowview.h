#pragma once

#include "platform/windowing/qtsupport.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>

namespace win {

// Height of a row: enough for a finger on a trackpad, and for the font.
int RowHeightOf(const QWidget* view);

// Rows of one height whose texts end in dots where they are too wide.
class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  int FullWidth(const QStyleOptionViewItem& option, const QModelIndex& index) const;  // of the whole text
};

// The text of a row that is shown cut, for its tool tip; else empty.
QString CutText(const QAbstractItemView& view, const QModelIndex& index);

// A list or tree that shows whole rows only and never scrolls sideways.
template <class View>
class RowView : public View {
 public:
  explicit RowView(QWidget* parent) : View(parent) {
    View::setItemDelegate(new RowDelegate(this));
    View::setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    View::setEditTriggers(QAbstractItemView::NoEditTriggers);
    // What is left below the last whole row looks like the rows.
    View::setBackgroundRole(QPalette::Base);
    View::setAutoFillBackground(true);
  }

 protected:
  bool event(QEvent* event) override {
    const bool taken = View::event(event);
    if (event->type() == QEvent::Paint) DrawEdge(this);
    return taken;
  }

  void resizeEvent(QResizeEvent* event) override {
    View::resizeEvent(event);
    FitRows();
  }

  void changeEvent(QEvent* event) override {
    View::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitRows();
  }

  bool viewportEvent(QEvent* event) override {
    if (event->type() != QEvent::ToolTip) return View::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString text = CutText(*this, View::indexAt(help->pos()));
    if (text.isEmpty()) return View::viewportEvent(event);
    QToolTip::showText(help->globalPos(), PlainToolTip(text), this);
    return true;
  }

 private:
  void FitRows() {
    const int room = View::height() - 2 * View::frameWidth();
    const int row = RowHeightOf(this);
    View::setViewportMargins(0, 0, 0, room > row ? room % row : 0);
  }
};

}  // namespace win
