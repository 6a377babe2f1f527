#include "platform/windowing/formimpl.h"

#include "platform/windowing/qtsupport.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>
#include <vector>

namespace win {

namespace {

std::vector<Form*> openForms;
std::function<void()> noFormLeft;

QList<QRect> Screens() {
  QList<QRect> screens;
  for (const QScreen* screen : QGuiApplication::screens())
    screens.append(screen->availableGeometry());
  return screens;
}

constexpr int kMaxAwait = 200;  // milliseconds
constexpr int kAwaitPause = 5;  // milliseconds

bool OnScreen(const FormImpl& form) {
  const QWindow* window = form.window ? form.window->windowHandle() : nullptr;
  return !window || !window->isVisible() || window->isExposed() || form.state == WindowState::kMinimized ||
         form.shownSince.hasExpired(kMaxAwait);
}

}  // namespace

void RememberForm(Form* form) { openForms.push_back(form); }

void ForgetForm(Form* form) {
  if (std::erase(openForms, form) && openForms.empty() && noFormLeft) noFormLeft();
}

const std::vector<Form*>& LoadedForms() { return openForms; }

FormImpl& FormImpl::Of(const Form& form) { return *form.impl_; }

std::shared_ptr<FormImpl> FormImpl::Share(const Form& form) { return form.impl_; }

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

void SetNoFormLeft(std::function<void()> handler) { noFormLeft = std::move(handler); }

bool IsLoading(const Form& form) { return FormImpl::Of(form).loading; }

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

}  // namespace win
