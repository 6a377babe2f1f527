#pragma once

#include <memory>

namespace win {

class Form;
class Instance;
class Picture;

// The status of a program that ends because no display can be reached.
constexpr int kNoDisplayStatus = 69;

// The program's connection to the screen. Made once, before any form, control or timer, and destroyed after them. It
// puts DoEvents, MsgBox and InputBox into services.h.
class Application {
 public:
  // Ends the program, with a line on standard error, when no display can be reached.
  Application();
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // The icon of all windows, message boxes included.
  void SetIcon(const Picture& picture);

  // The form that requests to close the program are for: from another instance as from its close box, from a signal
  // (TERM, INT, HUP) and at the end of the session as kAppWindows. A request that finds it disabled waits until it
  // is enabled. Before a main form is set, a request waits for it.
  void SetMainForm(Form* form);

  // Answers requests of other instances to close.
  void Serve(Instance& instance);

  // Runs events until no form is loaded; returns at once when none is.
  void Run();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace win
