#pragma once

#include "windowing/liststyle.h"

#include <QAbstractListModel>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace win {

struct ListRow {
  std::string text;
  std::string sortKey;  // of a sorted list
  std::int32_t data = 0;
  bool ticked = false;
  RowMark mark = RowMark::kNone;
};

// The rows of a list box. While an update is open, rows are added behind the others and sorted when it ends.
class ListModel : public QAbstractListModel {
 public:
  explicit ListModel(ListStyle style) : style_(style) {}

  int Count() const { return static_cast<int>(rows_.size()); }
  bool Holds(int index) const { return index >= 0 && index < Count(); }
  const ListRow& Row(int index) const { return *rows_[index]; }
  int IndexOf(const ListRow* row) const;  // -1 when it has gone

  int Add(const std::string& text, int index);
  void Remove(int index);
  void Clear();
  void SetText(int index, const std::string& text);
  void SetData(int index, std::int32_t data) { rows_[index]->data = data; }
  void SetMark(int index, RowMark mark);
  bool SetTicked(int index, bool ticked);  // true when that changed it

  void BeginUpdate();
  bool EndUpdate();  // true when it was the outermost
  bool Updating() const { return updates_ > 0; }

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

  std::function<void(int index)> tickedByPerson;

 private:
  int PlaceOf(const ListRow& row, int asked) const;

  ListStyle style_;
  std::vector<std::unique_ptr<ListRow>> rows_;
  int updates_ = 0;
};

}  // namespace win
