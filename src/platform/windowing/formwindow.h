#pragma once

#include <QAbstractButton>
#include <QEvent>
#include <QFrame>
#include <QMenuBar>
#include <QPointer>
#include <QScrollArea>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace win {

// The window of a form: a menu bar, if it has one, over a client area that scrolls when the window has to be smaller.
class FormWindow : public QWidget {
 public:
  FormWindow();

  QWidget* Client() const { return client_; }
  QMenuBar* Bar();
  QSize FullSize() const;  // of client area and menu bar together, while the window is neither maximised nor cut
  QSize ClientSize() const { return clientSize_; }  // of the client area, likewise

  void MoveTo(QPoint corner);
  QPoint Corner() const { return isMaximized() ? settledCorner_ : pos(); }

  // The size that the controls are placed for, and the one that the client area gets.
  void SetSizes(QSize design, QSize client);

  // A sizable window can be made larger than it was designed, and by a scroll bar's width smaller.
  void SetSizable();
  void SetClientSize(QSize size);
  QSize DesignSize() const { return design_; }
  void SetEdge(bool drawn);  // where no window manager draws one

  // Gives the window its full size, or what of it the screen has room for.
  void FitToScreen();

  // Keeps a person's input from the window, its menus and their shortcuts included. Unlike a disabled widget it looks
  // as before and keeps its focus.
  void BlockInput(bool block);

  std::function<void()> closeAsked;    // by a person, while input is not blocked
  std::function<void()> closeRefused;  // the same while it is, and Escape
  std::function<void()> stateChanged;  // a person minimised it or brought it back
  QPointer<QAbstractButton> defaultButton, cancelButton;
  bool escapeCloses = false;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* window, QEvent* event) override;

 private:
  int BarHeight() const;
  void Arrange();
  QSize LeastClientSize(QSize room) const;
  void LimitSizes(QSize fitted, QSize room);

  QScrollArea* scroll_;
  QFrame* client_;
  QSize design_, clientSize_;
  // As the window has been for a moment. What it gets when it is maximised comes ahead of the word that it is.
  QTimer settle_;
  QPoint settledCorner_;
  QSize settledSize_;  // of the client area
  bool sizable_ = false;
  QMenuBar* bar_ = nullptr;
  bool inputIsBlocked_ = false;
};

// The place nearest to `frame` at which the window lies on one screen, its title bar included; of a window larger than
// the screen the top left corner.
QPoint PlaceOnScreen(const QRect& frame, const QList<QRect>& screens);

}  // namespace win
