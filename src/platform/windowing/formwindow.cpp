#include "platform/windowing/formwindow.h"

#include "platform/windowing/qtsupport.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDropEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QStyle>
#include <QWindow>

#include <algorithm>

namespace win {

namespace {

constexpr int kTitleHeight = 32;  // room for the title bar, whose height the window manager decides
constexpr int kSettleTime = 300;  // milliseconds
constexpr QSize kSmallest{320, 240};

// Of the frame's title bar, within the screen.
QRect Grip(const QRect& frame, const QRect& screen) {
  return QRect(frame.left(), frame.top(), frame.width(), kTitleHeight) & screen;
}

}  // namespace

FormWindow::FormWindow() : scroll_(new QScrollArea(this)), client_(new QFrame) {
  scroll_->setWidget(client_);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  settle_.setSingleShot(true);
  settle_.setInterval(kSettleTime);
  connect(&settle_, &QTimer::timeout, this, [this] {
    if (!isVisible() || isMaximized() || isMinimized()) return;
    settledCorner_ = pos();
    settledSize_ = clientSize_;
  });
}

QMenuBar* FormWindow::Bar() {
  if (!bar_) {
    bar_ = new QMenuBar(this);
    bar_->setNativeMenuBar(false);  // the desktop's own bar would change the height of the window
    bar_->show();
  }
  return bar_;
}

int FormWindow::BarHeight() const { return bar_ ? bar_->heightForWidth(client_->width()) : 0; }

QSize FormWindow::FullSize() const { return {clientSize_.width(), clientSize_.height() + BarHeight()}; }

void FormWindow::SetSizes(QSize design, QSize client) {
  design_ = design;
  SetDesignSize(client_, design);
  SetClientSize(client);
  // Controls go to their places also when the client area keeps its size.
  QResizeEvent place(client_->size(), client_->size());
  QCoreApplication::sendEvent(client_, &place);
}

void FormWindow::SetClientSize(QSize size) {
  clientSize_ = settledSize_ = size;
  if (!sizable_) client_->resize(size);
  FitToScreen();
}

void FormWindow::SetSizable() {
  sizable_ = true;
  scroll_->setWidgetResizable(true);
  FitToScreen();
}

void FormWindow::SetEdge(bool drawn) { client_->setFrameStyle(drawn ? QFrame::Box | QFrame::Plain : QFrame::NoFrame); }

void FormWindow::FitToScreen() {
  const QSize full = FullSize();
  const QSize room = screen()->availableSize() - QSize(0, kTitleHeight);
  QSize fitted = full.boundedTo(room);
  if (!sizable_ && fitted.height() < full.height())
    fitted.rwidth() += scroll_->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  LimitSizes(fitted.boundedTo(room), room);
  if (!isMaximized()) resize(fitted.boundedTo(room));
  Arrange();
}

void FormWindow::LimitSizes(QSize fitted, QSize room) {
  if (sizable_) {
    const QSize smallest = design_ + QSize(0, BarHeight());
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    setMinimumSize(smallest == smallest.boundedTo(room) ? smallest : kSmallest.boundedTo(room));
    return;
  }
  const QSize full = FullSize();
  setMinimumSize(fitted == full ? full : kSmallest.boundedTo(fitted));
  setMaximumSize(full.expandedTo(fitted));
}

void FormWindow::Arrange() {
  const int barHeight = BarHeight();
  if (bar_) bar_->setGeometry(0, 0, width(), barHeight);
  scroll_->setGeometry(0, barHeight, width(), height() - barHeight);
  if (sizable_) client_->setMinimumSize(LeastClientSize(QSize(width(), height() - barHeight)));
}

// Smaller than designed by as much as a scroll bar takes: one alone then never brings the other, nor hides what stands
// at the edge. Where there is not even that room, the whole client area scrolls.
QSize FormWindow::LeastClientSize(QSize room) const {
  const int bar = scroll_->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  const QSize least = design_ - QSize(bar, bar);
  return {room.width() < least.width() ? design_.width() : least.width(),
          room.height() < least.height() ? design_.height() : least.height()};
}

void FormWindow::BlockInput(bool block) {
  inputIsBlocked_ = block;
  if (!block) return;
  winId();  // makes the native window
  windowHandle()->installEventFilter(this);
  QWidget* popup = QApplication::activePopupWidget();
  if (popup && isAncestorOf(popup)) popup->close();
}

// Input reaches the native window first: ahead of the widgets, the focus and the shortcuts.
bool FormWindow::eventFilter(QObject*, QEvent* event) {
  const bool isInput = event->isInputEvent() || dynamic_cast<QDropEvent*>(event) != nullptr;
  if (!inputIsBlocked_ || !isInput) return false;
  const auto* const key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr;
  if (key && key->key() == Qt::Key_Escape && closeRefused) closeRefused();
  event->setAccepted(event->type() == QEvent::ShortcutOverride);  // taken as a key, so that no shortcut acts
  return true;
}

void FormWindow::MoveTo(QPoint corner) {
  move(corner);
  settledCorner_ = corner;
}

void FormWindow::moveEvent(QMoveEvent*) { settle_.start(); }

void FormWindow::resizeEvent(QResizeEvent*) {
  Arrange();
  if (!sizable_ || !isVisible() || isMaximized()) return;
  clientSize_ = size() - QSize(0, BarHeight());
  settle_.start();
}

void FormWindow::closeEvent(QCloseEvent* event) {
  // Whether the window goes is the form's decision, and Close hides it.
  event->ignore();
  const std::function<void()>& asked = inputIsBlocked_ ? closeRefused : closeAsked;
  if (asked) asked();
}

void FormWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange && isMaximized()) clientSize_ = settledSize_;
  if (stateChanged && isVisible() && event->type() == QEvent::WindowStateChange) stateChanged();
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  QAbstractButton* button = nullptr;
  if (event->key() == Qt::Key_Escape) {
    button = cancelButton;
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    button = qobject_cast<QAbstractButton*>(focusWidget());
    if (!button) button = defaultButton;
  }
  if (button && button->isVisible())
    button->click();
  else if (event->key() == Qt::Key_Escape && escapeCloses)
    close();
  else
    QWidget::keyPressEvent(event);
}

QPoint PlaceOnScreen(const QRect& frame, const QList<QRect>& screens) {
  const auto area = [&frame](const QRect& screen) {
    const QRect grip = Grip(frame, screen);
    return grip.width() * grip.height();
  };
  const auto best = std::max_element(screens.begin(), screens.end(),
                                     [&area](const QRect& a, const QRect& b) { return area(a) < area(b); });
  if (best == screens.end()) return frame.topLeft();
  const int lastLeft = std::max(best->left(), best->right() + 1 - frame.width());
  const int lastTop = std::max(best->top(), best->bottom() + 1 - frame.height() - kTitleHeight);
  return {std::clamp(frame.left(), best->left(), lastLeft), std::clamp(frame.top(), best->top(), lastTop)};
}

}  // namespace win
