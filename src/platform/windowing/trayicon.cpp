#include "platform/windowing/trayicon.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QSystemTrayIcon>

#include "platform/windowing/qt/qtsupport.h"

namespace win {

struct TrayIcon::Impl {
  QSystemTrayIcon icon;
  bool active = false;
  QElapsedTimer lastTrigger;
};

TrayIcon::TrayIcon() : impl_(std::make_unique<Impl>()) {
  QObject::connect(
      &impl_->icon, &QSystemTrayIcon::activated, &impl_->icon, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
          // Most trays of today report each click of a double click, and no double click.
          const bool second =
              impl_->lastTrigger.isValid() && !impl_->lastTrigger.hasExpired(QApplication::doubleClickInterval());
          if (!second) {
            impl_->lastTrigger.start();
            return;
          }
          reason = QSystemTrayIcon::DoubleClick;
        }
        impl_->lastTrigger.invalidate();
        if (reason == QSystemTrayIcon::DoubleClick)
          Raise(DoubleClick);
        else if (reason == QSystemTrayIcon::Context)
          Raise(RightUp);
      });
}

TrayIcon::~TrayIcon() = default;

bool TrayIcon::Add(const std::string& tip, const Picture& image, int patience) {
  QElapsedTimer waited;
  waited.start();
  while (!QSystemTrayIcon::isSystemTrayAvailable() && !waited.hasExpired(patience))
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
  if (!QSystemTrayIcon::isSystemTrayAvailable()) return false;
  SetImage(image);
  SetTip(tip);
  impl_->icon.show();
  impl_->active = true;
  return true;
}

bool TrayIcon::Active() const {
  return impl_->active;
}

void TrayIcon::SetImage(const Picture& image) {
  impl_->icon.setIcon(QIcon(QPixmap::fromImage(image.Image())));
}

void TrayIcon::SetTip(const std::string& tip) {
  impl_->icon.setToolTip(FromBytes(tip));
}

void TrayIcon::Remove() {
  impl_->icon.hide();
  impl_->active = false;
}

}  // namespace win
