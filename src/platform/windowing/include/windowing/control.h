#pragma once

#include <functional>
#include <memory>
#include <string>

class QSize;
class QWidget;

namespace win {

// What controls stand in: a form or a frame.
class Container {
 public:
  virtual ~Container() = default;

  // The widget that takes the controls; for this layer only.
  virtual QWidget* Area() const = 0;
};

// The share, from 0 to 1, of what a container has gained over its size by design that each edge of a control moves by.
// An edge with 0 keeps its distance to the left or top of the container, one with 1 to its right or bottom.
struct Anchors {
  double left = 0, top = 0, right = 0, bottom = 0;
};
constexpr Anchors kAcross{0, 0, 1, 0};
constexpr Anchors kFill{0, 0, 1, 1};
constexpr Anchors kTopRight{1, 0, 1, 0};
constexpr Anchors kBottomLeft{0, 1, 0, 1};
constexpr Anchors kBottomAcross{0, 1, 1, 1};
constexpr Anchors kBottomRight{1, 1, 1, 1};

// What all controls have in common. A control stands in the container that it was made in and must not outlive it;
// declared behind its container as a member of the same page, it never does. The order in which the controls of a form
// are made is its Tab order.
//
// Positions and sizes are twips, 1440 to the inch of the screen's logical resolution, counted from the top left corner
// of the container. They are set for the container's size by design, and read as they are; anchors say where the
// control goes when the container is larger. Texts are bytes: UTF-8 if valid, else Windows-1252; what was set comes
// back to the byte.
//
// Events are the function members. An event may change, empty or destroy the control that raised it.
class Control {
 public:
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  std::string Name() const;  // also the object name of its widget

  bool Visible() const;  // the control's own mark, whether or not its container shows
  void SetVisible(bool visible);
  bool Enabled() const;
  void SetEnabled(bool enabled);

  double Left() const;
  double Top() const;
  double Width() const;
  double Height() const;
  void Move(double left, double top);
  void Move(double left, double top, double width, double height);
  void SetHeight(double height);
  void SetAnchors(const Anchors& anchors);

  std::string Tag() const;
  void SetTag(const std::string& tag);
  std::string ToolTipText() const;
  void SetToolTipText(const std::string& text);

  // What a screen reader says. Unless set: the caption, else the words of the name without its type prefix.
  void SetAccessibleName(const std::string& name);

  void SetFocus();  // nothing happens while the control is disabled or hidden
  bool HasFocus() const;
  void SetTabStop(bool stop);  // false: Tab passes it by

  // Paints the control at once, without running other events.
  void Refresh();

  // When the focus moves between the controls of a form; not when another window or a menu takes it for a while.
  std::function<void()> GotFocus;
  std::function<void()> LostFocus;
  std::function<void()> MouseMove;

  // The widget itself, null once its form is gone; for this layer and its tests.
  QWidget* Widget() const;

 protected:
  Control(const char* name, QWidget* widget);
  QSize PlacedSize() const;  // in pixels, as it was last set, with what the anchors add

  // Makes room for the control's text. Called when the control has been moved and when it shows.
  virtual void FitText() {}

 private:
  void PlaceWidget();

  friend class ControlWatcher;
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace win
