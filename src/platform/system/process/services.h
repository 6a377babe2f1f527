#pragma once

#include <functional>
#include <string>

// The three services that only a window can offer, for code that knows of none. A window installs its own functions.
// Without one there are no events, a message goes to standard error and a question gets its safe answer.
namespace win {

// Runs pending events, handlers inside handlers included. Cheap enough to be called in every turn of a long loop. Does
// nothing in a rehearsal.
void DoEvents();

// Style values of a message box, added up.
constexpr int kOkOnly = 0;
constexpr int kYesNoCancel = 3;
constexpr int kYesNo = 4;
constexpr int kCritical = 16;
constexpr int kDefaultNo = 256;  // of a question after which something is gone; kCritical implies it

// The part of a style that names the buttons: kOkOnly, kYesNoCancel or kYesNo.
constexpr int ButtonsOfStyle(int style) { return style & 0x0F; }

enum class Answer { kOk = 1, kCancel = 2, kYes = 6, kNo = 7 };

// `title` empty: the program's title. Without a window: Ok, or No to a question.
Answer MsgBox(const std::string& text, int style = kOkOnly, const std::string& title = "");

// The text typed by the user, empty when the box was cancelled. Without a window: empty.
std::string InputBox(const std::string& prompt, const std::string& title, const std::string& initial);

struct WindowServices {
  std::function<void()> doEvents;
  std::function<Answer(const std::string& text, int style, const std::string& title)> msgBox;
  std::function<std::string(const std::string& prompt, const std::string& title, const std::string& initial)> inputBox;
};

// An empty function leaves the service as it is without a window.
void SetWindowServices(WindowServices services);

}  // namespace win
