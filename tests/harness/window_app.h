#pragma once

#include "windowing/dialogs.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>

namespace win {
class Application;
class ComboBox;
class Control;
class Form;
class ListBox;
class MenuItem;
class TreeView;
}  // namespace win

// Tests of forms and controls, on a screen that nobody sees.
namespace test {

// Answers the boxes that a test expects, in this order. Any other box fails the test, and so does one that never comes;
// none is shown.
class BoxScript {
 public:
  BoxScript();
  ~BoxScript();
  BoxScript(const BoxScript&) = delete;
  BoxScript& operator=(const BoxScript&) = delete;

  void ExpectMsgBox(const std::string& text, win::Answer answer = win::Answer::kOk, const std::string& title = "");
  void ExpectInputBox(const std::string& prompt, const std::string& typed, const std::string& title = "",
                      const std::string& initial = "");
  void ExpectFolderDialog(const std::string& title, const std::string& chosen);

  const win::Box& Last() const { return last_; }  // as it came, with style and initial text

 private:
  struct Expected {
    win::Box box;
    win::BoxAnswer answer;
  };
  win::BoxAnswer Reply(const win::Box& box);

  std::deque<Expected> expected_;
  win::Box last_;
};

// The one application that stands for all tests of the program.
win::Application& App();

class WindowTest : public ::testing::Test {
 protected:
  void TearDown() override;  // forms destroyed by the test are gone for good

  BoxScript boxes;
};

// Runs pending events until `condition` holds; false when it does not within `milliseconds`.
bool Await(const std::function<bool()>& condition, int milliseconds = 3000);
void RunEvents();

// Acts on the next form that is shown modally, while it is. A form that stays open for long fails the test and is
// closed.
void DuringModal(std::function<void(win::Form& form)> act);

// What a person does, as real mouse and key events. Rows and nodes must be in sight.
void ClickOn(const win::Control& control);
void ClickRow(const win::ListBox& list, int row);
void ClickTick(const win::ListBox& list, int row);
void ClickNode(const win::TreeView& tree, const std::string& text);
void HoverOver(const win::Control& control);
void Type(const win::Control& control, const std::string& ascii);
void PressKey(const win::Control& control, int qtKey);
void PressKey(const win::Form& form, int qtKey);
void ChooseRow(const win::ComboBox& box, int row);
void ClickMenu(const win::MenuItem& item);  // nothing happens to a row that is disabled or hidden

}  // namespace test
