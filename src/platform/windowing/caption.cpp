#include "platform/windowing/caption.h"

#include "platform/windowing/qtsupport.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace win {

namespace {

constexpr double kSmallestFont = 0.75;  // of the usual size
constexpr double kFontStep = 0.05;
constexpr int kButtonMargin = 3;

// Free pixels between the bottom of `place` and the next visible control below it, or its container's end.
int RoomBelow(const QWidget* widget, const QRect& place) {
  int end = widget->parentWidget() ? widget->parentWidget()->height() : place.bottom() + 1;
  for (const QWidget* other : widget->parentWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    const QRect at = other->geometry();
    const bool below = at.top() > place.bottom() && at.right() >= place.left() && at.left() <= place.right();
    if (other != widget && below && !other->isHidden()) end = std::min(end, at.top());
  }
  return std::max(0, end - place.bottom() - 1);
}

QFont Scaled(QFont font, double scale) {
  if (font.pointSizeF() > 0)
    font.setPointSizeF(font.pointSizeF() * scale);
  else
    font.setPixelSize(std::max(1, static_cast<int>(font.pixelSize() * scale)));
  return font;
}

int WrapFlags(const QWidget* widget, Qt::Alignment alignment) {
  const bool underline = widget->style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, widget);
  return static_cast<int>(alignment) | Qt::TextWordWrap | (underline ? Qt::TextShowMnemonic : Qt::TextHideMnemonic);
}

int WrappedHeight(const QWidget* widget, const QString& text, int width) {
  return widget->fontMetrics()
      .boundingRect(QRect(0, 0, width, 1 << 20), Qt::TextWordWrap | Qt::TextHideMnemonic, text)
      .height();
}

}  // namespace

void FitCaption(QWidget* widget, QSize asked) {
  const auto* caption = dynamic_cast<const WrappingCaption*>(widget);
  if (!caption || asked.isEmpty()) return;
  QFont usual = widget->parentWidget()->font();
  usual.setBold(widget->font().bold());
  if (widget->font() != usual) widget->setFont(usual);
  int needed = caption->NeededHeight(asked.width());
  if (needed > asked.height()) {
    const int available = asked.height() + RoomBelow(widget, QRect(widget->pos(), asked));
    for (double scale = 1 - kFontStep; needed > available && scale >= kSmallestFont; scale -= kFontStep) {
      widget->setFont(Scaled(usual, scale));
      needed = caption->NeededHeight(asked.width());
    }
  }
  widget->resize(asked.width(), std::max(asked.height(), needed));
}

LabelWidget::LabelWidget(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

QString LabelWidget::CutText() const {
  QStringList lines = text().split('\n');
  for (QString& line : lines)
    line = fontMetrics().elidedText(line, Qt::ElideMiddle, contentsRect().width());
  return lines.join('\n');
}

bool LabelWidget::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && elided_ && toolTip().isEmpty() && CutText() != text()) {
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), PlainToolTip(text()), this);
    return true;
  }
  return QLabel::event(event);
}

int LabelWidget::NeededHeight(int width) const {
  if (elided_) return fontMetrics().lineSpacing() * static_cast<int>(text().count('\n') + 1);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  double height = 0;
  for (const QString& paragraph : text().split('\n')) {
    QTextLayout layout(paragraph, font());
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
      line.setLineWidth(width);
      height += line.height();
    }
    layout.endLayout();
  }
  return static_cast<int>(std::ceil(height));
}

void LabelWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
  if (oneLine_) {
    drawFrame(&painter);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    painter.drawText(contentsRect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
    return;
  }
  if (buddy()) {
    painter.drawText(contentsRect(), WrapFlags(this, alignment()), text());
    return;
  }
  QTextOption option(alignment());
  option.setWrapMode(elided_ ? QTextOption::NoWrap : QTextOption::WrapAtWordBoundaryOrAnywhere);
  painter.drawText(QRectF(contentsRect()), elided_ ? CutText() : text(), option);
}

ButtonWidget::ButtonWidget(QWidget* parent) : QPushButton(parent) {
  setAutoDefault(false);
  setFocusPolicy(Qt::StrongFocus);
}

int ButtonWidget::NeededHeight(int width) const {
  return WrappedHeight(this, text(), width - 2 * kButtonMargin) + 2 * kButtonMargin;
}

void ButtonWidget::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  option.text.clear();
  painter.drawControl(QStyle::CE_PushButton, option);
  const QRect room = rect().adjusted(kButtonMargin, kButtonMargin, -kButtonMargin, -kButtonMargin);
  painter.drawItemText(room, WrapFlags(this, Qt::AlignCenter), palette(), isEnabled(), text(), QPalette::ButtonText);
}

CheckBoxWidget::CheckBoxWidget(QWidget* parent) : QCheckBox(parent) { setFocusPolicy(Qt::StrongFocus); }

bool CheckBoxWidget::hitButton(const QPoint& place) const { return rect().contains(place); }

QRect CheckBoxWidget::TextRect(const QRect& whole) const {
  QStyleOptionButton option;
  initStyleOption(&option);
  option.rect = whole;
  return style()->subElementRect(QStyle::SE_CheckBoxContents, &option, this);
}

int CheckBoxWidget::NeededHeight(int width) const {
  return WrappedHeight(this, text(), TextRect(QRect(0, 0, width, 1000)).width());
}

void CheckBoxWidget::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  option.text.clear();
  option.state &= ~QStyle::State_HasFocus;
  painter.drawControl(QStyle::CE_CheckBox, option);
  const QRect room = TextRect(rect());
  painter.drawItemText(room, WrapFlags(this, Qt::AlignLeft | Qt::AlignVCenter), palette(), isEnabled(), text(),
                       QPalette::WindowText);
  if (!hasFocus()) return;
  QStyleOptionFocusRect focus;
  focus.initFrom(this);
  focus.rect = room;
  painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

}  // namespace win
