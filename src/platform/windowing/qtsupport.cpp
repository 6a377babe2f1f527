#include "platform/windowing/qtsupport.h"

#include "platform/system/text/text.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTextDocument>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <cmath>

namespace win {

namespace {

constexpr double kTwipsToTheInch = 1440;
constexpr char kDesignSize[] = "designSize";
constexpr std::size_t kMaxReadable = 4096;  // bytes

double DotsPerInch() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen ? screen->logicalDotsPerInchX() : 96;
}

}  // namespace

QString FromBytes(std::string_view bytes) { return QString::fromStdString(Utf8FromBytes(bytes)); }

QString Readable(std::string_view bytes) {
  if (bytes.size() <= kMaxReadable) return FromBytes(bytes);
  bytes = bytes.substr(0, kMaxReadable);
  // Not in the middle of a character of several bytes, which would make all of them Windows-1252.
  while (!bytes.empty() && (bytes.back() & 0xC0) == 0x80)
    bytes.remove_suffix(1);
  if (!bytes.empty() && (bytes.back() & 0x80)) bytes.remove_suffix(1);
  return FromBytes(bytes) + QChar(0x2026);
}

std::string BytesOfEdited(const QString& edited, std::string_view original) {
  if (edited == FromBytes(original)) return std::string(original);
  const std::string utf8 = edited.toStdString();
  if (IsValidUtf8(original)) return utf8;
  return Windows1252FromUtf8(utf8).value_or(utf8);
}

QString PlainToolTip(const QString& text) {
  return Qt::mightBeRichText(text) ? "<qt>" + text.toHtmlEscaped() + "</qt>" : text;
}

void RunEventsFor(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

void SetDesignSize(QWidget* container, QSize size) { container->setProperty(kDesignSize, size); }

QSize GainedSize(const QWidget* container) {
  const QVariant design = container ? container->property(kDesignSize) : QVariant();
  return design.isValid() ? container->size() - design.toSize() : QSize(0, 0);
}

void DrawEdge(QWidget* widget) {
  const QPalette& palette = widget->palette();
  QColor line = palette.color(QPalette::WindowText);
  line.setAlphaF(0.35F);
  QPainter painter(widget);
  painter.setPen(line);
  painter.drawRect(widget->rect().adjusted(0, 0, -1, -1));
}

int ToPixels(double twips) { return static_cast<int>(std::lround(twips * DotsPerInch() / kTwipsToTheInch)); }

double ToTwips(int pixels) { return pixels * kTwipsToTheInch / DotsPerInch(); }

}  // namespace win
