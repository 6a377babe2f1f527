#include "platform/windowing/colorscheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QStyle>

namespace win {

namespace {

constexpr unsigned kPrefersDark = 1;

QPalette DarkPalette() {
  QPalette palette(QColor(0x3a3a3a), QColor(0x2d2d2d));
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText, QPalette::BrightText})
    palette.setColor(role, QColor(0xeeeeee));
  palette.setColor(QPalette::Base, QColor(0x1f1f1f));
  palette.setColor(QPalette::AlternateBase, QColor(0x272727));
  palette.setColor(QPalette::ToolTipBase, QColor(0x3a3a3a));
  palette.setColor(QPalette::PlaceholderText, QColor(0xa8a8a8));
  palette.setColor(QPalette::Highlight, QColor(0x2a6db0));
  palette.setColor(QPalette::HighlightedText, QColor(0xffffff));
  palette.setColor(QPalette::Link, QColor(0x7ab8ff));
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(0x9a9a9a));
  return palette;
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

}  // namespace

ColorScheme::ColorScheme() : light_(QApplication::palette()) {
  if (IsDark(light_) || QApplication::style()->name() != "fusion") return;
  connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
    if (state == Qt::ApplicationActive) Ask();
  });
  Ask();
}

void ColorScheme::Ask() {
  QDBusMessage question = QDBusMessage::createMethodCall(
      "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "Read");
  question.setArguments({"org.freedesktop.appearance", "color-scheme"});
  auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
    const QDBusMessage answer = QDBusPendingReply<QDBusVariant>(*call).reply();
    call->deleteLater();
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return;
    QVariant value = answer.arguments().first();
    while (value.canConvert<QDBusVariant>())
      value = value.value<QDBusVariant>().variant();
    Apply(value.toUInt() == kPrefersDark);
  });
}

void ColorScheme::Apply(bool dark) {
  if (dark == dark_) return;
  dark_ = dark;
  QApplication::setPalette(dark ? DarkPalette() : light_);
}

}  // namespace win
