#pragma once

#include "platform/windowing/formwindow.h"
#include "windowing/form.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

namespace win {

// What a form holds. It outlives the form as long as one of its events is under way.
struct FormImpl {
  explicit FormImpl(Form& form) : window(new FormWindow(form)) {}

  static FormImpl& Of(const Form& form);
  static std::shared_ptr<FormImpl> Share(const Form& form);

  bool Usable() const { return alive && window; }
  void Place();         // moves the window to where it opens
  void StateChanged();  // a person minimised it or brought it back
  void EndModal();

  QPointer<FormWindow> window;
  QPointer<QAbstractButton> defaultButton, cancelButton;
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
  bool placed = false;   // since it was loaded; afterwards it shows where it was
  bool awaited = false;  // shown, not yet seen on the screen
};

// The loaded forms, the one loaded first at index 0.
const std::vector<Form*>& LoadedForms();
void RememberForm(Form* form);
void ForgetForm(Form* form);

// Waits until the forms shown last are on the screen, at most a short while: a display server draws no window before
// that.
void AwaitShownForms();

// Called when the last loaded form has gone.
void SetNoFormLeft(std::function<void()> handler);

bool IsLoading(const Form& form);  // its Load event is under way

}  // namespace win
