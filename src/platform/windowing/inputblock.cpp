#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QSet>
#include <QWidget>

#include "platform/windowing/qt/formwindow.h"

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

class InputBlocker : public QObject {
 public:
  static InputBlocker& Get() {
    static QPointer<InputBlocker> blocker;
    if (!blocker) blocker = new InputBlocker;
    return *blocker;
  }

  void Add(QWidget* window) {
    if (windows_.isEmpty()) qApp->installEventFilter(this);
    windows_.insert(window);
    if (QWidget* popup = QApplication::activePopupWidget(); popup && Holds(popup)) popup->close();
  }

  void Remove(QWidget* window) {
    windows_.remove(window);
    if (windows_.isEmpty()) qApp->removeEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override { return IsInput(event->type()) && Holds(watched); }

 private:
  InputBlocker() : QObject(qApp) {}

  bool Holds(const QObject* object) const {
    for (; object; object = object->parent())
      if (windows_.contains(object)) return true;
    return false;
  }

  QSet<const QObject*> windows_;
};

}  // namespace

void BlockInput(QWidget* window, bool block) {
  if (block)
    InputBlocker::Get().Add(window);
  else
    InputBlocker::Get().Remove(window);
}

}  // namespace win
