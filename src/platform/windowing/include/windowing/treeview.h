#pragma once

#include "windowing/control.h"

#include <functional>
#include <string>
#include <unordered_map>

class QTreeWidget;
class QTreeWidgetItem;

namespace win {

enum class TreeRelation { kChild, kNext };  // last child of the other node; the sibling right behind it

// A tree of nodes, each reached by its unique key. A text that does not fit in width ends in dots, and is the tool tip.
// Calls with a key that is not in the tree change nothing and give false or an empty text.
class TreeView : public Control {
 public:
  TreeView(Container& parent, const char* name);

  bool AddRoot(const std::string& key, const std::string& text);  // behind the other roots; false when the key exists
  bool Add(const std::string& relative, TreeRelation relation, const std::string& key, const std::string& text);
  bool Remove(const std::string& key);  // with all nodes below it; raises no NodeClick
  bool Exists(const std::string& key) const;

  std::string Text(const std::string& key) const;
  bool SetText(const std::string& key, const std::string& text);
  bool SetKey(const std::string& key, const std::string& newKey);  // false when the new key belongs to another node
  bool Bold(const std::string& key) const;
  bool SetBold(const std::string& key, bool bold);

  // The texts from the root down to the node, joined by the path separator.
  std::string FullPath(const std::string& key) const;
  void SetPathSeparator(const std::string& separator);  // "\" unless set

  std::string SelectedItem() const;              // its key; empty with none
  bool SetSelectedItem(const std::string& key);  // raises no NodeClick

  // A person clicked a node, or moved the selection to it by key.
  std::function<void(const std::string& key)> NodeClick;

 private:
  QTreeWidgetItem* Find(const std::string& key) const;
  QTreeWidgetItem* NewItem(const std::string& key, const std::string& text);
  void Forget(QTreeWidgetItem* item);

  QTreeWidget* tree_;
  std::unordered_map<std::string, QTreeWidgetItem*> items_;
  std::string separator_ = "\\";
};

}  // namespace win
