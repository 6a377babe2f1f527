#include "windowing/form.h"

#include "platform/windowing/formwindow.h"
#include "platform/windowing/qtsupport.h"
#include "windowing/button.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <optional>
#include <utility>

namespace win {

namespace {

constexpr int kMaxAwait = 200;  // milliseconds
constexpr int kAwaitPause = 5;  // milliseconds

std::vector<Form*> openForms;
std::function<void()> noFormLeft;

void Forget(Form* form) {
  if (std::erase(openForms, form) && openForms.empty() && noFormLeft) noFormLeft();
}

QList<QRect> Screens() {
  QList<QRect> screens;
  for (const QScreen* screen : QGuiApplication::screens())
    screens.append(screen->availableGeometry());
  return screens;
}

Qt::WindowFlags Flags(bool owned, bool titleBar, bool sizable) {
  Qt::WindowFlags flags = owned ? Qt::Dialog : Qt::Window;
  if (!titleBar) return flags | Qt::FramelessWindowHint;
  flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
  flags.setFlag(Qt::WindowMinimizeButtonHint, !owned);
  flags.setFlag(Qt::WindowMaximizeButtonHint, sizable);
  return flags;
}

void SetDefault(FormWindow& window, QPushButton* button) {
  if (auto* earlier = qobject_cast<QPushButton*>(window.defaultButton)) earlier->setDefault(false);
  if (button) button->setDefault(true);  // its look
  window.defaultButton = button;
}

Qt::WindowStates Native(WindowState state) {
  switch (state) {
    case WindowState::kMinimized:
      return Qt::WindowMinimized;
    case WindowState::kMaximized:
      return Qt::WindowMaximized;
    case WindowState::kNormal:
      break;
  }
  return Qt::WindowNoState;
}

}  // namespace

// What a form holds. It outlives the form as long as one of its events is under way.
struct Form::Impl {
  bool Usable() const { return alive && window; }
  void Place();  // moves the window to where it opens
  bool IsOnScreen() const;
  void EndModal();

  QPointer<FormWindow> window = new FormWindow;
  QPointer<QWidget> owner;
  QEventLoop* modalLoop = nullptr;
  std::string name, caption;
  std::optional<QPoint> place;  // asked for by Move
  WindowState state = WindowState::kNormal;
  QElapsedTimer shownSince;
  bool alive = true;
  bool loaded = false, loading = false, unloading = false;
  bool enabled = true;
  bool titleBar = true;
  bool sizable = false;
  bool placed = false;   // since it was loaded; afterwards it shows where it was
  bool awaited = false;  // shown, not yet seen on the screen
};

void Form::Impl::Place() {
  QRect frame(window->pos(), window->size());
  if (place)
    frame.moveTopLeft(*place);
  else if (owner && owner->isVisible())
    frame.moveCenter(owner->frameGeometry().center());
  else
    frame.moveCenter(window->screen()->availableGeometry().center());
  window->MoveTo(PlaceOnScreen(frame, Screens()));
}

bool Form::Impl::IsOnScreen() const {
  const QWindow* shown = window ? window->windowHandle() : nullptr;
  return !shown || !shown->isVisible() || shown->isExposed() || state == WindowState::kMinimized ||
         shownSince.hasExpired(kMaxAwait);
}

void Form::Impl::EndModal() {
  if (modalLoop) modalLoop->quit();
}

Form::Form(const char* name, double clientWidth, double clientHeight) : impl_(std::make_shared<Impl>()) {
  impl_->name = name;
  impl_->window->closeAsked = [this] { Close(UnloadMode::kControlMenu); };
  impl_->window->closeRefused = [this] {
    if (CloseRefused) CloseRefused();
  };
  impl_->window->stateChanged = [impl = impl_.get()] {
    const FormWindow& window = *impl->window;
    impl->state = window.isMinimized()   ? WindowState::kMinimized
                  : window.isMaximized() ? WindowState::kMaximized
                                         : WindowState::kNormal;
  };
  impl_->window->setObjectName(QString::fromUtf8(name));
  SetClientSize(clientWidth, clientHeight);
}

Form::~Form() {
  impl_->alive = false;
  impl_->EndModal();
  Forget(this);
  if (!impl_->window) return;
  impl_->window->closeAsked = impl_->window->closeRefused = impl_->window->stateChanged = {};
  impl_->window->hide();
  impl_->window->deleteLater();
}

std::string Form::Name() const { return impl_->name; }

std::string Form::Caption() const { return impl_->caption; }

void Form::SetCaption(const std::string& caption) {
  impl_->caption = caption;
  impl_->window->setWindowTitle(Readable(caption));
}

void Form::EnsureLoaded() {
  if (impl_->loaded) return;
  const auto impl = impl_;
  impl->loaded = impl->loading = true;
  openForms.push_back(this);
  Raise(Load);
  impl->loading = false;
}

bool Form::Loaded() const { return impl_->loaded; }

void Form::Show(Form* owner) {
  const auto impl = impl_;
  EnsureLoaded();
  if (!impl->alive || !impl->loaded) return;
  FormWindow& window = *impl->window;
  if (!window.isVisible()) {
    impl->owner = owner ? owner->Window() : nullptr;
    window.setWindowFlags(Flags(owner != nullptr, impl->titleBar, impl->sizable));
    window.FitToScreen();
    if (!impl->placed) impl->Place();
    impl->placed = true;
    window.setWindowState(Native(impl->state));
    window.BlockInput(!impl->enabled);  // in the native window that the flags may have made anew
    window.winId();                     // makes the window, so that it can be given its owner before it shows
    // Window managers may hide a window along with an owner that is hidden itself.
    const bool ownerShows = owner && owner->Visible() && owner->State() != WindowState::kMinimized;
    window.windowHandle()->setTransientParent(ownerShows ? owner->Window()->windowHandle() : nullptr);
    impl->shownSince.start();
    impl->awaited = true;
  }
  window.show();
}

void Form::ShowModal(Form* owner) {
  const auto impl = impl_;
  if (Visible() || impl->modalLoop) return;
  impl->window->setWindowModality(Qt::ApplicationModal);
  QEventLoop loop;
  impl->modalLoop = &loop;
  Show(owner);
  if (impl->Usable() && impl->window->isVisible()) loop.exec();
  impl->modalLoop = nullptr;
  if (impl->Usable()) impl->window->setWindowModality(Qt::NonModal);
}

void Form::Hide() {
  impl_->window->hide();
  impl_->EndModal();
}

bool Form::Visible() const { return impl_->window && impl_->window->isVisible(); }

void Form::SetVisible(bool visible) {
  if (!visible)
    Hide();
  else if (!Visible())
    Show();
}

bool Form::Close(UnloadMode mode) {
  const auto impl = impl_;
  if (!impl->loaded || impl->unloading) return true;
  bool cancel = false;
  Raise(QueryUnload, cancel, mode);
  if (cancel) return false;
  if (!impl->alive || !impl->loaded || impl->unloading) return true;
  impl->unloading = true;
  Raise(Unload);
  impl->unloading = false;
  if (!impl->alive) return true;
  impl->loaded = impl->placed = false;
  Hide();
  if (impl->alive) Forget(this);
  return true;
}

bool Form::Enabled() const { return impl_->enabled; }

void Form::SetEnabled(bool enabled) {
  impl_->enabled = enabled;
  impl_->window->BlockInput(!enabled);
}

WindowState Form::State() const { return impl_->state; }

void Form::SetState(WindowState state) {
  impl_->state = state;
  if (Visible()) impl_->window->setWindowState(Native(state));
}

double Form::Left() const { return ToTwips(impl_->window->Corner().x()); }
double Form::Top() const { return ToTwips(impl_->window->Corner().y()); }
double Form::Width() const { return ToTwips(impl_->window->FullSize().width()); }
double Form::Height() const { return ToTwips(impl_->window->FullSize().height()); }

void Form::Move(double left, double top) {
  impl_->place = QPoint(ToPixels(left), ToPixels(top));
  impl_->Place();
}

void Form::SetHeight(double height) {
  FormWindow& window = *impl_->window;
  const int more = ToPixels(height) - window.FullSize().height();
  const QSize room(0, more);
  window.SetSizes(window.DesignSize() + room, window.ClientSize() + room);
}

void Form::SetClientSize(double width, double height) {
  const QSize size(ToPixels(width), ToPixels(height));
  impl_->window->SetSizes(size, size);
}

void Form::SetSizable() {
  impl_->sizable = true;
  impl_->window->SetSizable();
}

void Form::SetSize(double width, double height) {
  const QSize frame = impl_->window->FullSize() - impl_->window->ClientSize();
  const QSize client = QSize(ToPixels(width), ToPixels(height)) - frame;
  impl_->window->SetClientSize(client.expandedTo(impl_->window->DesignSize()));
}

double Form::ScreenWidth() const { return ToTwips(impl_->window->screen()->size().width()); }
double Form::ScreenHeight() const { return ToTwips(impl_->window->screen()->size().height()); }

void Form::SetFocus() { impl_->window->activateWindow(); }

void Form::BringToFront() {
  impl_->window->raise();
  impl_->window->activateWindow();
  // Qt forgets its active window when that is hidden. A platform that has not noticed reports no activation again.
  if (QGuiApplication::focusWindow() == impl_->window->windowHandle()) QApplication::setActiveWindow(impl_->window);
}

void Form::Refresh() { impl_->window->repaint(); }

void Form::SetDefaultButton(Button& button) { SetDefault(*impl_->window, qobject_cast<QPushButton*>(button.Widget())); }

void Form::SetNoDefaultButton() { SetDefault(*impl_->window, nullptr); }

void Form::SetCancelButton(Button& button) {
  impl_->window->cancelButton = qobject_cast<QAbstractButton*>(button.Widget());
}

void Form::SetEscapeCloses() { impl_->window->escapeCloses = true; }

void Form::SetTitleBar(bool shown) {
  impl_->titleBar = shown;
  impl_->window->SetEdge(!shown);
}

QWidget* Form::Area() const { return impl_->window->Client(); }
QWidget* Form::Window() const { return impl_->window; }
QMenuBar* Form::MenuBar() const { return impl_->window->Bar(); }

std::vector<Form*> OpenForms() { return openForms; }

bool Form::IsLoading() const { return impl_->loading; }

void Form::SetNoFormLeft(std::function<void()> handler) { noFormLeft = std::move(handler); }

void Form::AwaitShownForms() {
  std::vector<std::shared_ptr<Impl>> shown;
  for (const Form* form : openForms)
    shown.push_back(form->impl_);
  for (const auto& form : shown) {
    if (!std::exchange(form->awaited, false)) continue;
    while (form->alive && !form->IsOnScreen())
      RunEventsFor(kAwaitPause);
  }
}

}  // namespace win
