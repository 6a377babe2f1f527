#include "windowing/form.h"

#include "platform/windowing/formimpl.h"
#include "platform/windowing/qtsupport.h"
#include "windowing/button.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace win {

namespace {

std::vector<Form*> openForms;
std::function<void()> noFormLeft;

void Forget(Form* form) {
  if (std::erase(openForms, form) && openForms.empty() && noFormLeft) noFormLeft();
}

Qt::WindowFlags Flags(bool owned, bool titleBar) {
  const Qt::WindowFlags kind = owned ? Qt::Dialog : Qt::Window;
  if (!titleBar) return kind | Qt::FramelessWindowHint;
  return kind | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
         (owned ? Qt::WindowFlags() : Qt::WindowMinimizeButtonHint);
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

QList<QRect> Screens() {
  QList<QRect> screens;
  for (const QScreen* screen : QGuiApplication::screens())
    screens.append(screen->availableGeometry());
  return screens;
}

constexpr int kLongestAwait = 200;  // milliseconds
constexpr int kAwaitPause = 5;      // milliseconds

bool OnScreen(const FormImpl& form) {
  const QWindow* window = form.window ? form.window->windowHandle() : nullptr;
  return !window || !window->isVisible() || window->isExposed() || form.state == WindowState::kMinimized ||
         form.shownSince.hasExpired(kLongestAwait);
}

}  // namespace

FormImpl& FormImpl::Of(const Form& form) {
  return *form.impl_;
}

std::shared_ptr<FormImpl> FormImpl::Share(const Form& form) {
  return form.impl_;
}

void FormImpl::Place() {
  QRect frame(window->pos(), window->size());
  if (place)
    frame.moveTopLeft(*place);
  else if (owner && owner->isVisible())
    frame.moveCenter(owner->frameGeometry().center());
  else
    frame.moveCenter(window->screen()->availableGeometry().center());
  QPoint at = ReachablePlace(frame, Screens());
  if (window->size() != window->FullSize()) {
    // Cut to the height of the screen, it has its last row of controls there only when it hangs out nowhere.
    const QRect screen = window->screen()->availableGeometry();
    at = {std::clamp(at.x(), screen.left(), std::max(screen.left(), screen.right() + 1 - frame.width())), screen.top()};
  }
  window->move(at);
}

void FormImpl::StateChanged() {
  if (window->isMinimized())
    state = WindowState::kMinimized;
  else
    state = window->isMaximized() ? WindowState::kMaximized : WindowState::kNormal;
}

void FormImpl::EndModal() {
  if (modalLoop) modalLoop->quit();
}

void SetNoFormLeft(std::function<void()> handler) {
  noFormLeft = std::move(handler);
}

bool IsLoading(const Form& form) {
  return FormImpl::Of(form).loading;
}

void AwaitShownForms() {
  std::vector<std::shared_ptr<FormImpl>> shown;
  for (const Form* form : openForms)
    shown.push_back(FormImpl::Share(*form));
  for (const auto& form : shown) {
    if (!std::exchange(form->awaited, false)) continue;
    while (form->alive && !OnScreen(*form))
      RunEventsFor(kAwaitPause);
  }
}

Form::Form(const char* name, double clientWidth, double clientHeight) : impl_(std::make_shared<FormImpl>(*this)) {
  impl_->name = name;
  impl_->window->setObjectName(QString::fromUtf8(name));
  SetClientSize(clientWidth, clientHeight);
}

Form::~Form() {
  impl_->alive = false;
  impl_->EndModal();
  Forget(this);
  if (!impl_->window) return;
  BlockInput(impl_->window, false);
  impl_->window->Detach();
  impl_->window->hide();
  impl_->window->deleteLater();
}

std::string Form::Name() const {
  return impl_->name;
}
std::string Form::Caption() const {
  return impl_->caption;
}

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

bool Form::Loaded() const {
  return impl_->loaded;
}

void Form::Show(Form* owner) {
  const auto impl = impl_;
  EnsureLoaded();
  if (!impl->alive || !impl->loaded) return;
  FormWindow& window = *impl->window;
  if (!window.isVisible()) {
    impl->owner = owner ? owner->Window() : nullptr;
    window.setWindowFlags(Flags(owner != nullptr, impl->titleBar));
    window.FitToScreen();
    if (!impl->placed) impl->Place();
    impl->placed = true;
    window.setWindowState(Native(impl->state));
    window.winId();  // makes the window, so that it can be given its owner before it shows
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

bool Form::Visible() const {
  return impl_->window && impl_->window->isVisible();
}

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

bool Form::Enabled() const {
  return impl_->enabled;
}

void Form::SetEnabled(bool enabled) {
  impl_->enabled = enabled;
  BlockInput(impl_->window, !enabled);
}

WindowState Form::State() const {
  return impl_->state;
}

void Form::SetState(WindowState state) {
  impl_->state = state;
  if (Visible()) impl_->window->setWindowState(Native(state));
}

double Form::Left() const {
  return ToTwips(impl_->window->x());
}
double Form::Top() const {
  return ToTwips(impl_->window->y());
}
double Form::Width() const {
  return ToTwips(impl_->window->FullSize().width());
}
double Form::Height() const {
  return ToTwips(impl_->window->FullSize().height());
}

void Form::Move(double left, double top) {
  impl_->place = QPoint(ToPixels(left), ToPixels(top));
  impl_->Place();
}

void Form::SetHeight(double height) {
  const QSize full = impl_->window->FullSize();
  const QSize client = impl_->window->Client()->size();
  impl_->window->SetClientSize({client.width(), client.height() + ToPixels(height) - full.height()});
}

void Form::SetClientSize(double width, double height) {
  impl_->window->SetClientSize({ToPixels(width), ToPixels(height)});
}

void Form::SetFocus() {
  impl_->window->activateWindow();
}

void Form::BringToFront() {
  impl_->window->raise();
  impl_->window->activateWindow();
}

void Form::Refresh() {
  impl_->window->repaint();
}

void Form::SetDefaultButton(Button& button) {
  impl_->defaultButton = qobject_cast<QAbstractButton*>(button.Widget());
}

void Form::SetCancelButton(Button& button) {
  impl_->cancelButton = qobject_cast<QAbstractButton*>(button.Widget());
}

void Form::SetTitleBar(bool shown) {
  impl_->titleBar = shown;
  impl_->window->SetEdge(!shown);
}

QWidget* Form::Area() const {
  return impl_->window->Client();
}
QWidget* Form::Window() const {
  return impl_->window;
}
QMenuBar* Form::MenuBar() const {
  return impl_->window->Bar();
}

std::vector<Form*> OpenForms() {
  return openForms;
}

}  // namespace win
