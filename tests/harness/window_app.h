#pragma once

#include "windowing/combobox.h"
#include "windowing/dialogs.h"
#include "windowing/form.h"
#include "windowing/listbox.h"
#include "windowing/menu.h"
#include "windowing/treeview.h"

#include <QAction>
#include <QTest>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>

namespace win {
class Application;
}

// Tests of forms and controls, on a screen that nobody sees.
namespace test {

constexpr int kLongestWait = 10000;  // milliseconds

win::Application& App();  // the one of all tests

// Answers the boxes that a test expects, in this order, and shows none. Any other box fails the test, and so does one
// that never comes.
class WindowTest : public ::testing::Test {
 protected:
  WindowTest();
  ~WindowTest() override;  // forms destroyed by the test are gone for good

  // The texts of the box must begin with those of `box`, and its style be that of `box` unless this is 0.
  void Expect(const win::Box& box, const win::BoxAnswer& answer) { expected_.push_back({box, answer}); }
  void ExpectMsgBox(const std::string& text, win::Answer answer = win::Answer::kOk, const std::string& title = "") {
    Expect({win::BoxKind::kMessage, text, title, 0, ""}, {answer, ""});
  }

 private:
  win::BoxAnswer Reply(const win::Box& box);

  std::deque<std::pair<win::Box, win::BoxAnswer>> expected_;
};

inline void RunEvents(int milliseconds = 1) { QTest::qWait(milliseconds); }

// Runs events until `condition` holds; false when it does not in time.
inline bool Await(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, kLongestWait); }

void ShowActive(win::Form& form);

// Acts on the next form that is shown modally, while it is.
void DuringModal(std::function<void(win::Form& form)> act);

// Input as real mouse and key events. Rows and nodes must be in sight.
void ClickOn(const win::Control& control);
void ClickRow(const win::ListBox& list, int row);
void ClickTick(const win::ListBox& list, int row);
void ClickNode(const win::TreeView& tree, const std::string& text);
void HoverOver(const win::Control& control);
void ChooseRow(const win::ComboBox& box, int row);
void PressKey(const win::Control& control, Qt::Key key, Qt::KeyboardModifiers modifiers = {}, int times = 1);

inline void Type(const win::Control& control, const std::string& ascii) {
  QTest::keyClicks(control.Widget(), QString::fromStdString(ascii));
}

// Nothing happens to a row that is disabled or hidden.
inline void ClickMenu(const win::MenuItem& item) {
  if (item.Visible()) item.Action()->trigger();
}

}  // namespace test
