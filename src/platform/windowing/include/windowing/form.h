#pragma once

#include "windowing/control.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QMenuBar;

// How a page or dialog is written:
//
//   class frmOptions : public win::Form {
//    public:
//     frmOptions() : Form("frmOptions", 5400, 3600) {      // size of its inside, in twips
//       SetCaption("Options");
//       cmdOk.Move(4200, 3120, 1095, 375);
//       cmdOk.Click = [this] { cmdOk_Click(); };
//       SetDefaultButton(cmdOk);
//       Load = [this] { Form_Load(); };
//     }
//     win::CheckBox chkHighPriority{*this, "chkHighPriority", "Run as High Priority"};
//     win::Button cmdOk{*this, "cmdOk", "&Ok"};
//   };
//
//   frmOptions options;
//   options.ShowModal(&mainForm);   // raises Load, returns when the form has been closed
//
// Members are made in the order in which they stand, which is the Tab order; a control follows the frame that it stands
// in.
namespace win {

class Button;

enum class UnloadMode { kControlMenu = 0, kFormCode = 1, kAppWindows = 2 };  // close box; Close(); the session ends
enum class WindowState { kNormal = 0, kMinimized = 1, kMaximized = 2 };

// A window. It is loaded from the first Show, ShowModal or EnsureLoaded until it is closed; the program's event loop
// runs as long as a form is loaded. A form that is destroyed is unloaded without an event. Its size is fixed unless it
// is made sizable; on a screen that is too small for it, it is as large as the screen allows and its inside scrolls.
class Form : public Container {
 public:
  // Size of the inside without title and menu bar, in twips.
  Form(const char* name, double clientWidth, double clientHeight);
  ~Form() override;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  std::string Name() const;
  std::string Caption() const;
  void SetCaption(const std::string& caption);

  // Raises Load if the form is not loaded.
  void EnsureLoaded();
  bool Loaded() const;

  // Shows the form beside the others. With an owner it stays in front of it.
  void Show(Form* owner = nullptr);

  // Shows the form and takes all input; returns once it has been closed or hidden.
  void ShowModal(Form* owner = nullptr);
  void Hide();
  bool Visible() const;
  void SetVisible(bool visible);

  // Raises QueryUnload, and unless that cancels, Unload; then the form is hidden and no longer loaded. False when
  // cancelled. Closing a form that is not loaded does nothing and is true.
  bool Close(UnloadMode mode = UnloadMode::kFormCode);

  // A disabled form takes no input and cannot be closed by its close box; it looks as before.
  bool Enabled() const;
  void SetEnabled(bool enabled);

  WindowState State() const;
  void SetState(WindowState state);  // takes effect at the next Show when the form is hidden

  // Outer place and size of the window, in twips, of a maximised one as they will be again. Whatever is asked for, the
  // form opens on one screen; without a Move in the middle of its owner or of the screen.
  double Left() const;
  double Top() const;
  double Width() const;
  double Height() const;
  void Move(double left, double top);
  void SetHeight(double height);  // the controls stay where they are: the room below them changes
  void SetClientSize(double width, double height);

  // A person may make the form larger than it was designed, and maximise it. Its controls follow by their anchors.
  void SetSizable();
  void SetSize(double width, double height);  // outer size of a sizable form
  double ScreenWidth() const;                 // of the screen that it stands on
  double ScreenHeight() const;

  void SetFocus();  // makes it the active window
  void BringToFront();
  void Refresh();  // paints the form at once, without running other events

  void SetDefaultButton(Button& button);  // pressed by Enter
  void SetNoDefaultButton();
  void SetCancelButton(Button& button);  // pressed by Escape
  void SetEscapeCloses();                // Escape is the close box
  void SetTitleBar(bool shown);          // false for a busy window

  std::function<void()> Load;
  std::function<void(bool& cancel, UnloadMode mode)> QueryUnload;
  std::function<void()> Unload;
  std::function<void()> CloseRefused;  // the close box or Escape was used while the form is disabled

  QWidget* Area() const override;
  QWidget* Window() const;    // the window itself; for this layer and its tests
  QMenuBar* MenuBar() const;  // made when first asked for; for this layer

  // For Application.
  bool IsLoading() const;                                    // its Load event is under way
  static void SetNoFormLeft(std::function<void()> handler);  // called when the last loaded form has gone

  // Waits until the forms shown last are on the screen, at most a short while: a display server draws no window before
  // that.
  static void AwaitShownForms();

 private:
  struct Impl;
  std::shared_ptr<Impl> impl_;
};

// The loaded forms, the one loaded first at index 0.
std::vector<Form*> OpenForms();

}  // namespace win
