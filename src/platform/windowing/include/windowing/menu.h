#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QMenu;

namespace win {

class Form;

// One row of a menu, or a menu's own entry. `&` in a caption marks its key.
class MenuEntry {
 public:
  virtual ~MenuEntry();
  MenuEntry(const MenuEntry&) = delete;
  MenuEntry& operator=(const MenuEntry&) = delete;

  std::string Name() const;
  std::string Caption() const;
  void SetCaption(const std::string& caption);
  bool Enabled() const;
  void SetEnabled(bool enabled);
  bool Visible() const;
  void SetVisible(bool visible);
  bool Checked() const;
  void SetChecked(bool checked);  // the mark only; a click does not change it
  std::string Tag() const;
  void SetTag(const std::string& tag);

  QAction* Action() const;  // for this layer and its tests

 protected:
  MenuEntry(const std::string& name, const std::string& caption, QAction* action);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// A menu of a form's bar, a submenu, or a menu that only pops up. It must outlive its rows.
class Menu : public MenuEntry {
 public:
  Menu(Form& form, const char* name, const std::string& caption);
  Menu(Menu& parent, const char* name, const std::string& caption);
  explicit Menu(const char* name, const std::string& caption = "");  // pops up only

  // Opens the menu at the cursor and returns when it has been closed; the clicked row's Click has then been raised.
  void PopupAtCursor();

  QMenu* Native() const;  // for this layer and its tests

 private:
  Menu(const char* name, const std::string& caption, QMenu* menu);
  friend class TrayIcon;
  QMenu* menu_;
};

// A row that does something.
class MenuItem : public MenuEntry {
 public:
  MenuItem(Menu& parent, const char* name, const std::string& caption);

  void SetShortcut(const std::string& keys);  // as in "F5", "Ctrl+S"

  std::function<void()> Click;

 private:
  friend class MenuArray;
  MenuItem(Menu& parent, const std::string& name, const std::string& caption, QAction* before);
};

// A line between rows that can be hidden.
class MenuSeparator : public MenuEntry {
 public:
  MenuSeparator(Menu& parent, const char* name);
};

// Rows of one menu reached by index. Row 0 exists from the start and is never unloaded; the others come and go, each
// behind the row of the next lower index.
class MenuArray {
 public:
  MenuArray(Menu& parent, const char* name, const std::string& caption);
  ~MenuArray();
  MenuArray(const MenuArray&) = delete;
  MenuArray& operator=(const MenuArray&) = delete;

  // A new row looks like row 0: caption, enabled and check mark are copied, it is visible when row 0 is. False when the
  // index is loaded already or below 0.
  bool Load(int index);
  bool Unload(int index);  // false for row 0 and for one that is not loaded
  void UnloadAll();        // all but row 0
  int UBound() const;      // highest loaded index
  bool IsLoaded(int index) const;

  MenuItem& operator[](int index);  // must be loaded

  std::function<void(int index)> Click;

 private:
  QAction* RowBehind(int index) const;
  std::unique_ptr<MenuItem> NewRow(int index, const std::string& caption);

  Menu& parent_;
  std::string name_;
  std::vector<std::unique_ptr<MenuItem>> rows_;
  QAction* end_;  // stays hidden behind the last row
};

}  // namespace win
