#include "platform/windowing/rowmark.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace win {

namespace {

class RowMarkEngine : public QIconEngine {
 public:
  explicit RowMarkEngine(RowMark mark) : mark_(mark) {}

  QIconEngine* clone() const override { return new RowMarkEngine(mark_); }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::Text;
    const QColor color = QGuiApplication::palette().color(role);
    const double side = std::min(rect.width(), rect.height()) * 0.5;
    QRectF shape(0, 0, side, side);
    shape.moveCenter(QRectF(rect).center());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(color, side / 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(mark_ == RowMark::kOn ? QBrush(color) : QBrush(Qt::NoBrush));
    if (mark_ == RowMark::kPlain)
      painter->drawPolygon(QPolygonF({shape.topLeft(), {shape.right(), shape.center().y()}, shape.bottomLeft()}));
    else
      painter->drawEllipse(shape);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect({0, 0}, size), mode, state);
    return pixmap;
  }

 private:
  RowMark mark_;
};

}  // namespace

QIcon RowMarkIcon(RowMark mark) { return QIcon(new RowMarkEngine(mark)); }

}  // namespace win
