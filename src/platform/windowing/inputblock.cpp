#include "platform/windowing/formwindow.h"

#include <QApplication>
#include <QEvent>
#include <QSet>
#include <QWidget>

namespace win {

namespace {

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
      return true;
    default:
      return false;
  }
}

QSet<const QObject*> blocked;

bool IsDialog(const QObject* object) {
  const auto* widget = qobject_cast<const QWidget*>(object);
  return widget && widget->windowType() == Qt::Dialog;
}

// A box in front of a blocked window still has to be answered.
bool HangsOnBlocked(const QObject* object) {
  for (; object; object = object->parent()) {
    if (blocked.contains(object)) return true;
    if (IsDialog(object)) return false;
  }
  return false;
}

}  // namespace

void BlockInput(QWidget* window, bool block) {
  if (!block) {
    blocked.remove(window);
    return;
  }
  blocked.insert(window);
  QWidget* menu = QApplication::activePopupWidget();
  if (menu && HangsOnBlocked(menu)) menu->close();
}

bool InputIsBlocked(const QObject* receiver, QEvent::Type type) {
  return !blocked.isEmpty() && IsInput(type) && HangsOnBlocked(receiver);
}

}  // namespace win
