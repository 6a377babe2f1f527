#pragma once

#include "platform/system/process/services.h"

#include <functional>
#include <string>

// Boxes that ask a person something. Message and input boxes are reached through services.h; Application puts them in.
namespace win {

class Form;

// Message box and input box on the screen, or answered by what AnswerBoxesWith has set.
WindowServices BoxServices();

// A folder chosen by a person, as a Windows path without a separator added; empty when the box was cancelled.
std::string BrowseForFolder(Form* owner, const std::string& title);

enum class BoxKind { kMessage, kInput, kFolder };

// A box as it would be shown.
struct Box {
  BoxKind kind = BoxKind::kMessage;
  std::string text;
  std::string title;
  int style = kOkOnly;  // of a message box
  std::string initial;  // of an input box
};

struct BoxAnswer {
  Answer answer = Answer::kOk;  // to a message box
  std::string text;             // to the others; empty: cancelled
};

// While set, every box goes to this function instead of the screen. An empty function ends that. For tests.
void AnswerBoxesWith(std::function<BoxAnswer(const Box&)> answerer);

}  // namespace win
