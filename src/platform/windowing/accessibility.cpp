#include "platform/windowing/accessibility.h"

#include "platform/windowing/formwindow.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace win {

namespace {

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  auto* window = dynamic_cast<FormWindow*>(object);
  if (!window) return nullptr;
  const bool isDialog = (window->windowFlags() & Qt::WindowType_Mask) == Qt::Dialog;
  return new QAccessibleWidget(window, isDialog ? QAccessible::Dialog : QAccessible::Window);
}

}  // namespace

void InstallAccessibility() { QAccessible::installFactory(MakeInterface); }

}  // namespace win
