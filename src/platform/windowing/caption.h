#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include <functional>

namespace win {

// Gives `widget` the height that its text needs at the width `asked`: more than asked when there is free room below it,
// a smaller font when there is not. Less than `asked` it never is.
void FitCaption(QWidget* widget, QSize asked, const std::function<int(int width)>& neededHeight);

// Labels and buttons whose captions wrap; text without a blank breaks anywhere.
class LabelWidget : public QLabel {
 public:
  explicit LabelWidget(QWidget* parent);
  int NeededHeight(int width) const;

  // A text that is too long for one line is cut with dots instead of wrapped.
  void SetOneLine() { oneLine_ = true; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool oneLine_ = false;
};

class ButtonWidget : public QPushButton {
 public:
  explicit ButtonWidget(QWidget* parent);
  int NeededHeight(int width) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

class CheckBoxWidget : public QCheckBox {
 public:
  explicit CheckBoxWidget(QWidget* parent);
  int NeededHeight(int width) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& place) const override;  // its whole place, not the caption alone

 private:
  QRect TextRect(const QRect& whole) const;
};

}  // namespace win
