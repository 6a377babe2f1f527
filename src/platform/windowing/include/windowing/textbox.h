#pragma once

#include "windowing/control.h"

#include <functional>
#include <string>

class QLineEdit;
class QPlainTextEdit;

namespace win {

enum class TextBoxStyle { kSingleLine, kMultiLine };  // kMultiLine wraps and scrolls

// A box for text. The text comes back to the byte as it was set until a person changes it; a changed text stays in
// Windows-1252 when it was set in that and has room for all its characters, and its lines end in CRLF.
// A text too long to be shown whole, or with lines of thousands of characters, is shown in part and cannot be edited.
class TextBox : public Control {
 public:
  TextBox(Container& parent, const char* name, TextBoxStyle style = TextBoxStyle::kSingleLine);

  std::string Text() const;
  void SetText(const std::string& text);  // raises Change when the text is another
  void SetLocked(bool locked);            // can be read and copied, not changed

  void SetHeading();  // flat and bold, as a title
  void SetMonospace();
  void SetHint(const std::string& text);  // shown while an only line is empty

  std::function<void()> Change;

  // A key that types a character, before it has its effect; Enter is 13. Set to 0 the key has none. With a handler
  // Enter does not reach the form's default button.
  std::function<void(int& key)> KeyPress;

 private:
  void TextChanged();
  bool TakesKey(int key);
  void ApplyLock();

  QLineEdit* line_ = nullptr;
  QPlainTextEdit* page_ = nullptr;
  std::string text_;     // as it was set
  bool edited_ = false;  // since
  bool setting_ = false;
  bool locked_ = false;
  bool partly_ = false;  // not all of the text is shown as it is
};

}  // namespace win
