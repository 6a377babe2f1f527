#include "platform/windowing/rowview.h"

#include <QListView>

namespace win {

namespace {

constexpr double kRowHeight = 300;  // twips

}  // namespace

int RowHeightOf(const QWidget* view) { return std::max(ToPixels(kRowHeight), view->fontMetrics().height() + 2); }

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  // A list makes its rows as wide as itself when they ask for nothing.
  const bool inList = qobject_cast<const QListView*>(option.widget) != nullptr;
  return {inList ? 0 : FullWidth(option, index), RowHeightOf(option.widget)};
}

int RowDelegate::FullWidth(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  return QStyledItemDelegate::sizeHint(option, index).width();
}

QString CutText(const QAbstractItemView& view, const QModelIndex& index) {
  if (!index.isValid()) return "";
  QStyleOptionViewItem option;
  option.initFrom(&view);
  option.font = view.font();
  const int width = static_cast<const RowDelegate*>(view.itemDelegate())->FullWidth(option, index);
  const QRect shown = view.visualRect(index) & view.viewport()->rect();
  return width > shown.width() ? index.data().toString() : QString();
}

}  // namespace win
