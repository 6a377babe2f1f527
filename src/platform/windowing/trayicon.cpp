#include "windowing/trayicon.h"

#include "platform/windowing/qtsupport.h"
#include "platform/windowing/traysearch.h"
#include "windowing/menu.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QSystemTrayIcon>

namespace win {

namespace {

constexpr int kSearchPause = 100;  // milliseconds

}  // namespace

struct TrayIcon::Impl {
  // Most trays of today report each click of a double click, and no double click.
  bool CompletesDoubleClick() {
    if (lastClick.isValid() && !lastClick.hasExpired(QApplication::doubleClickInterval())) return true;
    lastClick.start();
    return false;
  }

  std::unique_ptr<QSystemTrayIcon> icon;  // while it is in the tray
  QElapsedTimer lastClick;
};

TrayIcon::TrayIcon() : impl_(std::make_unique<Impl>()) {}

TrayIcon::~TrayIcon() = default;

bool TrayIcon::Add(const std::string& tip, const Picture& image, Menu& menu, int patience) {
  QElapsedTimer waited;
  waited.start();
  while (!DesktopHasTray() && !waited.hasExpired(patience))
    RunEventsFor(kSearchPause);
  // Qt looks for a tray once and keeps the answer, so it is asked last.
  if (!DesktopHasTray() || !QSystemTrayIcon::isSystemTrayAvailable()) return false;
  impl_->icon = std::make_unique<QSystemTrayIcon>();
  const auto activated = [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger && impl_->CompletesDoubleClick()) reason = QSystemTrayIcon::DoubleClick;
    if (reason == QSystemTrayIcon::Trigger) return;
    impl_->lastClick.invalidate();
    if (reason == QSystemTrayIcon::DoubleClick) Raise(DoubleClick);
    if (reason == QSystemTrayIcon::Context) Raise(RightUp);
  };
  // Queued, since the tray waits for the end of its call, which a menu would put off until it closes.
  QObject::connect(impl_->icon.get(), &QSystemTrayIcon::activated, impl_->icon.get(), activated, Qt::QueuedConnection);
  // Elsewhere Qt would open it beside ours.
  if (BusHasTray()) impl_->icon->setContextMenu(menu.Native());
  SetImage(image);
  SetTip(tip);
  impl_->icon->show();
  return true;
}

bool TrayIcon::Active() const { return impl_->icon != nullptr; }

void TrayIcon::SetImage(const Picture& image) {
  if (impl_->icon) impl_->icon->setIcon(QIcon(QPixmap::fromImage(image.Image())));
}

void TrayIcon::SetTip(const std::string& tip) {
  if (impl_->icon) impl_->icon->setToolTip(Readable(tip));
}

void TrayIcon::Remove() {
  if (!impl_->icon) return;
  // Its own click may be what removes it.
  impl_->icon->hide();
  impl_->icon->blockSignals(true);
  impl_->icon.release()->deleteLater();
}

}  // namespace win
