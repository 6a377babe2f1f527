#include "windowing/control.h"

#include "platform/system/text/text.h"
#include "platform/windowing/qtsupport.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QPointer>
#include <QWidget>

#include <cmath>
#include <optional>

namespace win {

namespace {

// Raises GotFocus and LostFocus once per move of the focus within a window: Qt also takes the focus away for a menu or
// for another window and gives it back later, which is no move.
class FocusTracker : public QObject {
 public:
  static FocusTracker& Get() {
    static QPointer<FocusTracker> tracker;
    if (!tracker) tracker = new FocusTracker;
    return *tracker;
  }

  void Add(QWidget* widget, Control* control) { controls_.insert(widget, control); }
  void Remove(const QWidget* widget) { controls_.remove(widget); }

 private:
  FocusTracker() : QObject(qApp) {
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
      if (now) MoveTo(now);
    });
  }

  void MoveTo(QWidget* now) {
    if (!controls_.contains(now)) return;  // the menu bar, for one
    Forget();
    QPointer<QWidget>& current = focus_[now->window()];
    if (current == now) return;
    const QPointer<QWidget> before = current;
    current = now;
    if (const Control* control = controls_.value(before)) Raise(control->LostFocus);
    if (focus_.value(now->window()) != now) return;
    if (const Control* control = controls_.value(now)) Raise(control->GotFocus);
  }

  void Forget() {
    focus_.removeIf([](const auto& entry) { return entry.value().isNull(); });
  }

  QHash<const QWidget*, Control*> controls_;
  QHash<QWidget*, QPointer<QWidget>> focus_;  // window: its widget with the focus
};

QString SpokenName(const QString& name) {
  static const QStringList kPrefixes = {"lst", "txt", "cmb", "sld", "img", "pic"};
  QString words = kPrefixes.contains(name.left(3)) ? name.mid(3) : name;
  for (qsizetype i = words.size() - 1; i > 0; --i)
    if (words[i].isUpper() && words[i - 1].isLower()) words.insert(i, ' ');
  return words;
}

bool SpeaksItsCaption(const QWidget* widget) {
  return qobject_cast<const QLabel*>(widget) || qobject_cast<const QAbstractButton*>(widget) ||
         qobject_cast<const QGroupBox*>(widget);
}

// A combo box speaks its chosen row as its name; only a label says what it is for. This one is never seen.
void NameByLabel(QComboBox& box, const QString& name) {
  auto* label = new QLabel(name, box.parentWidget());
  label->setBuddy(&box);
  label->hide();
}

struct Place {
  double left = 0, top = 0, width = 0, height = 0;

  QRect Pixels() const {
    return QRect(QPoint(ToPixels(left), ToPixels(top)), QSize(ToPixels(width), ToPixels(height)));
  }
};

int Share(double part, int gained) { return static_cast<int>(std::lround(part * gained)); }

}  // namespace

class ControlWatcher : public QObject {
 public:
  explicit ControlWatcher(Control& control) : control_(control) {}

  // Of the control and of the container that it stands in.
  bool eventFilter(QObject* object, QEvent* event) override {
    const QWidget* widget = control_.Widget();
    if (widget && object == widget->parentWidget()) {
      if (event->type() == QEvent::Resize) control_.PlaceWidget();
      return false;
    }
    if (event->type() == QEvent::MouseMove) Raise(control_.MouseMove);
    // By now the neighbours stand where they belong.
    if (event->type() == QEvent::Show) control_.FitText();
    return false;
  }

 private:
  Control& control_;
};

struct Control::Impl {
  explicit Impl(Control& control, QWidget* itsWidget) : widget(itsWidget), watcher(control) {}

  QPointer<QWidget> widget;
  ControlWatcher watcher;
  std::string name, tag, toolTip;
  Place asked;
  Anchors anchors;

  QRect Placed() const {
    const QSize gained = GainedSize(widget->parentWidget());
    return asked.Pixels().adjusted(Share(anchors.left, gained.width()), Share(anchors.top, gained.height()),
                                   Share(anchors.right, gained.width()), Share(anchors.bottom, gained.height()));
  }

  // What was asked for, as long as it is where the widget is: a length read back is the length that was set.
  double Length(double Place::*part, int pixels) const {
    return ToPixels(asked.*part) == pixels ? asked.*part : ToTwips(pixels);
  }
};

Control::Control(const char* name, QWidget* widget) : impl_(std::make_unique<Impl>(*this, widget)) {
  impl_->name = name;
  const QString objectName = QString::fromUtf8(name);
  widget->setObjectName(objectName);
  if (!SpeaksItsCaption(widget)) widget->setAccessibleName(SpokenName(objectName));
  QWidget* surface = widget;
  if (const auto* area = qobject_cast<QAbstractScrollArea*>(widget)) surface = area->viewport();
  surface->setMouseTracking(true);
  surface->installEventFilter(&impl_->watcher);
  if (widget->parentWidget()) widget->parentWidget()->installEventFilter(&impl_->watcher);
  FocusTracker::Get().Add(widget, this);
  // A widget made after its window is on screen does not show by itself.
  widget->show();
}

Control::~Control() {
  if (!impl_->widget) return;
  FocusTracker::Get().Remove(impl_->widget);
  impl_->widget->blockSignals(true);
  // The control may be destroyed by its own event: the widget is still at work below us on the stack.
  impl_->widget->deleteLater();
}

std::string Control::Name() const { return impl_->name; }
QWidget* Control::Widget() const { return impl_->widget; }

bool Control::Visible() const { return impl_->widget && !impl_->widget->isHidden(); }

void Control::SetVisible(bool visible) {
  if (impl_->widget) impl_->widget->setVisible(visible);
}

bool Control::Enabled() const { return impl_->widget && impl_->widget->testAttribute(Qt::WA_ForceDisabled) == false; }

void Control::SetEnabled(bool enabled) {
  if (impl_->widget) impl_->widget->setEnabled(enabled);
}

double Control::Left() const { return impl_->widget ? impl_->Length(&Place::left, impl_->widget->x()) : 0; }
double Control::Top() const { return impl_->widget ? impl_->Length(&Place::top, impl_->widget->y()) : 0; }
double Control::Width() const { return impl_->widget ? impl_->Length(&Place::width, impl_->widget->width()) : 0; }
double Control::Height() const { return impl_->widget ? impl_->Length(&Place::height, impl_->widget->height()) : 0; }

void Control::Move(double left, double top) { Move(left, top, impl_->asked.width, impl_->asked.height); }

void Control::Move(double left, double top, double width, double height) {
  if (!impl_->widget) return;
  impl_->asked = {left, top, width, height};
  SetDesignSize(impl_->widget, impl_->asked.Pixels().size());
  PlaceWidget();
}

void Control::SetAnchors(const Anchors& anchors) {
  impl_->anchors = anchors;
  if (impl_->widget) PlaceWidget();
}

void Control::PlaceWidget() {
  impl_->widget->setGeometry(impl_->Placed());
  FitText();
}

void Control::SetHeight(double height) {
  const Place& asked = impl_->asked;
  Move(asked.left, asked.top, asked.width, height);
}

QSize Control::PlacedSize() const { return impl_->widget ? impl_->Placed().size() : QSize(); }

std::string Control::Tag() const { return impl_->tag; }
void Control::SetTag(const std::string& tag) { impl_->tag = tag; }
std::string Control::ToolTipText() const { return impl_->toolTip; }

void Control::SetToolTipText(const std::string& text) {
  impl_->toolTip = text;
  if (impl_->widget) impl_->widget->setToolTip(PlainToolTip(Readable(text)));
}

void Control::SetAccessibleName(const std::string& name) {
  if (impl_->widget) impl_->widget->setAccessibleName(FromBytes(name));
  if (auto* box = qobject_cast<QComboBox*>(impl_->widget)) NameByLabel(*box, FromBytes(name));
}

void Control::SetFocus() {
  if (impl_->widget) impl_->widget->setFocus(Qt::OtherFocusReason);
}

bool Control::HasFocus() const { return impl_->widget && impl_->widget->hasFocus(); }

void Control::SetTabStop(bool stop) {
  if (impl_->widget) impl_->widget->setFocusPolicy(stop ? Qt::StrongFocus : Qt::ClickFocus);
}

void Control::Refresh() {
  if (impl_->widget) impl_->widget->repaint();
}

}  // namespace win
