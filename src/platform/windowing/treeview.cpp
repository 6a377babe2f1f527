#include "windowing/treeview.h"

#include "platform/windowing/qtsupport.h"
#include "platform/windowing/rowview.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTreeWidget>

namespace win {

namespace {

constexpr int kIndentation = 165;  // twips
constexpr int kKeyRole = Qt::UserRole;

QString KeyData(const std::string& key) { return QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size())); }
std::string KeyOf(const QTreeWidgetItem* item) { return item->data(0, kKeyRole).toString().toLatin1().toStdString(); }

// Tells which node a person clicked or moved to, behind the view's own handling: a handler may remove the node.
class Tree : public RowView<QTreeWidget> {
 public:
  using RowView::RowView;
  std::function<void(const std::string& key)> chosen;

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    if (itemAt(event->pos())) RowView::mousePressEvent(event);
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    const QTreeWidgetItem* under = itemAt(event->pos());
    RowView::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && under && under == currentItem() &&
        visualItemRect(under).contains(event->pos()))
      Report(under);
  }

  void keyPressEvent(QKeyEvent* event) override {
    const QTreeWidgetItem* before = currentItem();
    RowView::keyPressEvent(event);
    if (currentItem() && currentItem() != before) Report(currentItem());
  }

  void focusInEvent(QFocusEvent* event) override {
    const bool none = !currentItem();
    RowView::focusInEvent(event);
    if (none) selectionModel()->clear();
  }

 private:
  void Report(const QTreeWidgetItem* item) {
    const auto handler = chosen;
    if (handler) handler(KeyOf(item));
  }
};

}  // namespace

TreeView::TreeView(Container& parent, const char* name)
    : Control(name, new Tree(parent.Area())), tree_(static_cast<QTreeWidget*>(Widget())) {
  tree_->setHeaderHidden(true);
  tree_->setIndentation(ToPixels(kIndentation));
  tree_->setUniformRowHeights(true);
  static_cast<Tree*>(tree_)->chosen = [this](const std::string& key) { Raise(NodeClick, key); };
}

QTreeWidgetItem* TreeView::Find(const std::string& key) const {
  const auto found = items_.find(key);
  return found == items_.end() || !Widget() ? nullptr : found->second;
}

QTreeWidgetItem* TreeView::NewItem(const std::string& key, const std::string& text) {
  if (!Widget() || Exists(key)) return nullptr;
  auto* item = new QTreeWidgetItem({FromBytes(text)});
  item->setData(0, kKeyRole, KeyData(key));
  items_[key] = item;
  return item;
}

bool TreeView::AddRoot(const std::string& key, const std::string& text) {
  QTreeWidgetItem* item = NewItem(key, text);
  if (item) tree_->addTopLevelItem(item);
  return item != nullptr;
}

bool TreeView::Add(const std::string& relative, TreeRelation relation, const std::string& key,
                   const std::string& text) {
  QTreeWidgetItem* other = Find(relative);
  QTreeWidgetItem* item = other ? NewItem(key, text) : nullptr;
  if (!item) return false;
  QTreeWidgetItem* parent = relation == TreeRelation::kChild ? other : other->parent();
  if (relation == TreeRelation::kChild)
    parent->addChild(item);
  else if (parent)
    parent->insertChild(parent->indexOfChild(other) + 1, item);
  else
    tree_->insertTopLevelItem(tree_->indexOfTopLevelItem(other) + 1, item);
  return true;
}

void TreeView::Forget(QTreeWidgetItem* item) {
  for (int child = 0; child < item->childCount(); ++child)
    Forget(item->child(child));
  items_.erase(KeyOf(item));
}

bool TreeView::Remove(const std::string& key) {
  QTreeWidgetItem* item = Find(key);
  if (!item) return false;
  Forget(item);
  delete item;
  return true;
}

bool TreeView::Exists(const std::string& key) const { return Find(key) != nullptr; }

std::string TreeView::Text(const std::string& key) const {
  const QTreeWidgetItem* item = Find(key);
  return item ? item->text(0).toStdString() : std::string();
}

bool TreeView::SetText(const std::string& key, const std::string& text) {
  QTreeWidgetItem* item = Find(key);
  if (item) item->setText(0, FromBytes(text));
  return item != nullptr;
}

bool TreeView::SetKey(const std::string& key, const std::string& newKey) {
  QTreeWidgetItem* item = Find(key);
  if (!item || (newKey != key && Exists(newKey))) return false;
  items_.erase(key);
  items_[newKey] = item;
  item->setData(0, kKeyRole, KeyData(newKey));
  return true;
}

bool TreeView::Bold(const std::string& key) const {
  const QTreeWidgetItem* item = Find(key);
  return item && item->font(0).bold();
}

bool TreeView::SetBold(const std::string& key, bool bold) {
  QTreeWidgetItem* item = Find(key);
  if (!item) return false;
  QFont font = tree_->font();
  font.setBold(bold);
  item->setFont(0, font);
  return true;
}

std::string TreeView::FullPath(const std::string& key) const {
  const QTreeWidgetItem* item = Find(key);
  if (!item) return "";
  std::string path = item->text(0).toStdString();
  while ((item = item->parent()))
    path = item->text(0).toStdString() + separator_ + path;
  return path;
}

void TreeView::SetPathSeparator(const std::string& separator) { separator_ = separator; }

std::string TreeView::SelectedItem() const {
  const QTreeWidgetItem* item = Widget() ? tree_->currentItem() : nullptr;
  return item ? KeyOf(item) : std::string();
}

bool TreeView::SetSelectedItem(const std::string& key) {
  QTreeWidgetItem* item = Find(key);
  if (item) tree_->setCurrentItem(item);
  return item != nullptr;
}

}  // namespace win
