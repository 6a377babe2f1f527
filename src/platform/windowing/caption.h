#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

namespace win {

// A widget whose caption wraps.
class WrappingCaption {
 public:
  virtual ~WrappingCaption() = default;
  virtual int NeededHeight(int width) const = 0;
};

// Gives a widget whose caption wraps the height that it needs at the width `asked`: more than asked when there is free
// room below it, a smaller font when there is not. Never lower than `asked`. Leaves any other widget as it is.
void FitCaption(QWidget* widget, QSize asked);

// Labels and buttons whose captions wrap; text without a blank breaks anywhere.
class LabelWidget : public QLabel, public WrappingCaption {
 public:
  explicit LabelWidget(QWidget* parent);
  int NeededHeight(int width) const override;

  // A text that is too long for one line is cut with dots instead of wrapped.
  void SetOneLine() { oneLine_ = true; }

  // Each line is cut in its middle instead of wrapped.
  void SetElided() { elided_ = true; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  QString CutText() const;  // as an elided label shows it

  bool oneLine_ = false, elided_ = false;
};

class ButtonWidget : public QPushButton, public WrappingCaption {
 public:
  explicit ButtonWidget(QWidget* parent);
  int NeededHeight(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

class CheckBoxWidget : public QCheckBox, public WrappingCaption {
 public:
  explicit CheckBoxWidget(QWidget* parent);
  int NeededHeight(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& place) const override;  // its whole place, not the caption alone

 private:
  QRect TextRect(const QRect& whole) const;
};

}  // namespace win
