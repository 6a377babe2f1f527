#include "support/ui/listfinder.h"

#include "platform/system/text/compare.h"
#include "windowing/shortcut.h"

#include <utility>

namespace varnik {

namespace {

constexpr double kBoxHeight = 315;
constexpr double kGap = 30;
constexpr int kEnter = 13;
constexpr int kEscape = 27;

}  // namespace

ListFinder::ListFinder(win::Container& parent, const char* name, win::ListBox& list,
                       std::function<std::string(int row)> textOf)
    : box(parent, name), list_(list), textOf_(std::move(textOf)) {
  box.SetVisible(false);
  box.SetAccessibleName("Find");
  box.SetHint("Find");
  box.Change = [this] { Narrow(); };
  box.KeyPress = [this](int& key) {
    if (key == kEnter) GoToList();
    if (key == kEscape) Close();
  };
  win::AddShortcut(box, "Down", [this] { GoToList(); });
}

void ListFinder::Place(double left, double top, double width, double height, const win::Anchors& anchors) {
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
  list_.SetAnchors(anchors);
  box.SetAnchors({anchors.left, anchors.top, anchors.right, anchors.top});
  box.Move(left, top, width, kBoxHeight);
  Arrange();
}

void ListFinder::Arrange() {
  const double taken = box.Visible() ? kBoxHeight + kGap : 0;
  list_.Move(left_, top_ + taken, width_, height_ - taken);
}

void ListFinder::Open() {
  box.SetVisible(true);
  Arrange();
  box.SetFocus();
}

void ListFinder::Close() {
  list_.SetFocus();
  box.SetText("");
  box.SetVisible(false);
  Arrange();
}

void ListFinder::Filled() {
  keys_.clear();
  if (!box.Text().empty()) Narrow();
}

void ListFinder::Narrow() {
  const std::string wanted = win::SearchKey(box.Text());
  if (wanted.empty()) return list_.SetFilter({});
  for (int row = static_cast<int>(keys_.size()); row < list_.ListCount(); ++row)
    keys_.push_back(win::SearchKey(textOf_(row)));
  list_.SetFilter([&](int row) { return keys_[row].empty() || keys_[row].find(wanted) != std::string::npos; });
}

// To the selected row, or when that is out of sight to the first one that was found.
void ListFinder::GoToList() {
  list_.SetFocus();
  if (list_.IsShown(list_.ListIndex())) return;
  for (int row = 0; row < list_.ListCount(); ++row)
    if (list_.IsShown(row) && !keys_[row].empty()) return list_.SetListIndex(row);
}

}  // namespace varnik
