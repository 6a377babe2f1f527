#include "platform/windowing/listmodel.h"

#include "platform/system/text/compare.h"
#include "platform/windowing/qtsupport.h"
#include "platform/windowing/rowmark.h"

#include <algorithm>

namespace win {

namespace {

constexpr int kMaxShown = 1000;  // characters; laying out a text of millions takes minutes

QString OneLine(QString text) {
  text.truncate(kMaxShown);
  for (QChar& c : text)
    if (c < u' ') c = u' ';
  return text;
}

}  // namespace

int ListModel::IndexOf(const ListRow* row) const {
  const auto found = std::find_if(rows_.begin(), rows_.end(), [row](const auto& held) { return held.get() == row; });
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

int ListModel::PlaceOf(const ListRow& row, int asked) const {
  if (style_ != ListStyle::kSorted) return asked >= 0 && asked <= Count() ? asked : Count();
  if (Updating()) return Count();
  const auto behind = std::upper_bound(rows_.begin(), rows_.end(), row.sortKey,
                                       [](const std::string& key, const auto& held) { return key < held->sortKey; });
  return static_cast<int>(behind - rows_.begin());
}

int ListModel::Add(const std::string& text, int index) {
  auto row = std::make_unique<ListRow>();
  row->text = text;
  if (style_ == ListStyle::kSorted) row->sortKey = ListSortKey(text);
  const int place = PlaceOf(*row, index);
  if (!Updating()) beginInsertRows({}, place, place);
  rows_.insert(rows_.begin() + place, std::move(row));
  if (!Updating()) endInsertRows();
  return place;
}

void ListModel::Remove(int index) {
  if (!Updating()) beginRemoveRows({}, index, index);
  rows_.erase(rows_.begin() + index);
  if (!Updating()) endRemoveRows();
}

void ListModel::Clear() {
  if (!Updating()) beginResetModel();
  rows_.clear();
  if (!Updating()) endResetModel();
}

void ListModel::SetText(int index, const std::string& text) {
  rows_[index]->text = text;
  if (!Updating()) Q_EMIT dataChanged(this->index(index), this->index(index));
}

bool ListModel::SetTicked(int index, bool ticked) {
  if (rows_[index]->ticked == ticked) return false;
  rows_[index]->ticked = ticked;
  if (!Updating()) Q_EMIT dataChanged(this->index(index), this->index(index));
  return true;
}

void ListModel::SetMark(int index, RowMark mark) {
  rows_[index]->mark = mark;
  if (!Updating()) Q_EMIT dataChanged(this->index(index), this->index(index));
}

void ListModel::BeginUpdate() {
  if (updates_++ == 0) beginResetModel();
}

bool ListModel::EndUpdate() {
  if (updates_ == 0 || --updates_ > 0) return false;
  if (style_ == ListStyle::kSorted)
    std::stable_sort(rows_.begin(), rows_.end(), [](const auto& a, const auto& b) { return a->sortKey < b->sortKey; });
  endResetModel();
  return true;
}

int ListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() || Updating() ? 0 : Count(); }

QVariant ListModel::data(const QModelIndex& index, int role) const {
  if (!Holds(index.row()) || Updating()) return {};
  const ListRow& row = *rows_[index.row()];
  if (role == Qt::DisplayRole) return OneLine(Readable(row.text));
  if (role == Qt::DecorationRole && row.mark != RowMark::kNone) return RowMarkIcon(row.mark);
  if (role == Qt::CheckStateRole && style_ == ListStyle::kCheckBoxes) return row.ticked ? Qt::Checked : Qt::Unchecked;
  return {};
}

bool ListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !Holds(index.row()) || Updating()) return false;
  if (SetTicked(index.row(), value.toInt() == Qt::Checked) && tickedByPerson) tickedByPerson(index.row());
  return true;
}

Qt::ItemFlags ListModel::flags(const QModelIndex&) const {
  const Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  return style_ == ListStyle::kCheckBoxes ? plain | Qt::ItemIsUserCheckable : plain;
}

}  // namespace win
