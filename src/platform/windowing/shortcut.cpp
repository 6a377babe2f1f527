#include "windowing/shortcut.h"

#include "windowing/control.h"
#include "windowing/form.h"

#include <QShortcut>
#include <QWidget>

#include <utility>

namespace win {

namespace {

void Add(QWidget* widget, Qt::ShortcutContext context, const std::string& keys, std::function<void()> act) {
  auto* shortcut = new QShortcut(QKeySequence(QString::fromStdString(keys)), widget);
  shortcut->setContext(context);
  QObject::connect(shortcut, &QShortcut::activated, widget, std::move(act));
}

}  // namespace

void AddShortcut(Control& control, const std::string& keys, std::function<void()> act) {
  Add(control.Widget(), Qt::WidgetWithChildrenShortcut, keys, std::move(act));
}

void AddShortcut(Form& form, const std::string& keys, std::function<void()> act) {
  Add(form.Window(), Qt::WindowShortcut, keys, std::move(act));
}

}  // namespace win
