#include "windowing/menu.h"

#include "platform/windowing/qtsupport.h"
#include "windowing/form.h"

#include <QAction>
#include <QCursor>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

namespace win {

struct MenuEntry::Impl {
  std::string name, caption, tag;
  QPointer<QAction> action;
};

MenuEntry::MenuEntry(const std::string& name, const std::string& caption, QAction* action)
    : impl_(std::make_unique<Impl>()) {
  impl_->name = name;
  impl_->action = action;
  action->setObjectName(FromBytes(name));
  SetCaption(caption);
}

MenuEntry::~MenuEntry() {
  if (!impl_->action) return;
  // A row may be unloaded by its own click.
  impl_->action->blockSignals(true);
  impl_->action->setVisible(false);
  if (auto* menu = impl_->action->menu())
    menu->deleteLater();
  else
    impl_->action->deleteLater();
}

std::string MenuEntry::Name() const { return impl_->name; }
std::string MenuEntry::Caption() const { return impl_->caption; }

void MenuEntry::SetCaption(const std::string& caption) {
  impl_->caption = caption;
  if (impl_->action) impl_->action->setText(Readable(caption));
}

bool MenuEntry::Enabled() const { return impl_->action && impl_->action->isEnabled(); }

void MenuEntry::SetEnabled(bool enabled) {
  if (impl_->action) impl_->action->setEnabled(enabled);
}

bool MenuEntry::Visible() const { return impl_->action && impl_->action->isVisible(); }

void MenuEntry::SetVisible(bool visible) {
  if (impl_->action) impl_->action->setVisible(visible);
}

bool MenuEntry::Checked() const { return impl_->action && impl_->action->isChecked(); }

void MenuEntry::SetChecked(bool checked) {
  if (!impl_->action) return;
  impl_->action->setCheckable(checked);
  impl_->action->setChecked(checked);
}

std::string MenuEntry::Tag() const { return impl_->tag; }
void MenuEntry::SetTag(const std::string& tag) { impl_->tag = tag; }
QAction* MenuEntry::Action() const { return impl_->action; }

Menu::Menu(const char* name, const std::string& caption, QMenu* menu)
    : MenuEntry(name, caption, menu->menuAction()), menu_(menu) {
  menu->setObjectName(QString::fromUtf8(name));
}

Menu::Menu(Form& form, const char* name, const std::string& caption)
    : Menu(name, caption, form.MenuBar()->addMenu(QString())) {}

Menu::Menu(Menu& parent, const char* name, const std::string& caption)
    : Menu(name, caption, parent.menu_->addMenu(QString())) {}

Menu::Menu(const char* name, const std::string& caption) : Menu(name, caption, new QMenu) {}

void Menu::PopupAtCursor() { menu_->exec(QCursor::pos()); }

QMenu* Menu::Native() const { return menu_; }

MenuItem::MenuItem(Menu& parent, const char* name, const std::string& caption)
    : MenuItem(parent, name, caption, nullptr) {}

MenuItem::MenuItem(Menu& parent, const std::string& name, const std::string& caption, QAction* before)
    : MenuEntry(name, caption, new QAction(parent.Native())) {
  parent.Native()->insertAction(before, Action());
  QObject::connect(Action(), &QAction::triggered, Action(), [this] {
    // Qt has toggled the mark of a marked row.
    if (Action()->isCheckable()) Action()->setChecked(true);
    Raise(Click);
  });
}

void MenuItem::SetShortcut(const std::string& keys) {
  if (Action()) Action()->setShortcut(QKeySequence(FromBytes(keys)));
}

MenuSeparator::MenuSeparator(Menu& parent, const char* name) : MenuEntry(name, "", parent.Native()->addSeparator()) {}

MenuArray::MenuArray(Menu& parent, const char* name, const std::string& caption)
    : parent_(parent), name_(name), end_(parent.Native()->addSeparator()) {
  end_->setVisible(false);
  rows_.push_back(NewRow(0, caption));
}

MenuArray::~MenuArray() = default;

bool MenuArray::Load(int index) {
  if (index < 1 || IsLoaded(index)) return false;
  if (index > UBound()) rows_.resize(index + 1);
  const MenuItem& first = *rows_[0];
  rows_[index] = NewRow(index, first.Caption());
  rows_[index]->SetEnabled(first.Enabled());
  rows_[index]->SetVisible(first.Visible());
  rows_[index]->SetChecked(first.Checked());
  return true;
}

bool MenuArray::Unload(int index) {
  if (index < 1 || !IsLoaded(index)) return false;
  rows_[index].reset();
  while (!rows_.back())
    rows_.pop_back();
  return true;
}

void MenuArray::UnloadAll() { rows_.resize(1); }

int MenuArray::UBound() const { return static_cast<int>(rows_.size()) - 1; }

bool MenuArray::IsLoaded(int index) const { return index >= 0 && index <= UBound() && rows_[index]; }

MenuItem& MenuArray::operator[](int index) { return *rows_[index]; }

QAction* MenuArray::RowBehind(int index) const {
  for (std::size_t next = index + 1; next < rows_.size(); ++next)
    if (rows_[next]) return rows_[next]->Action();
  return end_;
}

std::unique_ptr<MenuItem> MenuArray::NewRow(int index, const std::string& caption) {
  std::unique_ptr<MenuItem> row(new MenuItem(parent_, name_, caption, RowBehind(index)));
  row->Click = [this, index] { Raise(Click, index); };
  return row;
}

}  // namespace win
