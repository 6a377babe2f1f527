#include "platform/windowing/colorscheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>

namespace win {

namespace {

constexpr unsigned kPrefersDark = 1;

QPalette DarkPalette() {
  QPalette palette(QColor(0x454545), QColor(0x323232));
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText, QPalette::BrightText})
    palette.setColor(role, QColor(0xeeeeee));
  palette.setColor(QPalette::Base, QColor(0x1b1b1b));
  palette.setColor(QPalette::AlternateBase, QColor(0x242424));
  palette.setColor(QPalette::ToolTipBase, QColor(0x3a3a3a));
  palette.setColor(QPalette::PlaceholderText, QColor(0xa8a8a8));
  palette.setColor(QPalette::Highlight, QColor(0x2a6db0));
  palette.setColor(QPalette::HighlightedText, QColor(0xffffff));
  palette.setColor(QPalette::Link, QColor(0x7ab8ff));
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(0x9a9a9a));
  return palette;
}

// The style draws the edges of boxes darker than what they lie on, which nobody sees on dark.
class DarkStyle : public QProxyStyle {
 public:
  DarkStyle() : QProxyStyle("fusion") {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox && element != PE_IndicatorItemViewItemCheck && element != PE_FrameLineEdit)
      return;
    painter->save();
    painter->setPen(QColor(0x8a8a8a));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
  }
};

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
  QApplication::setStyle(dark ? new DarkStyle : QStyleFactory::create("fusion"));
  QApplication::setPalette(dark ? DarkPalette() : light_);
}

}  // namespace win
