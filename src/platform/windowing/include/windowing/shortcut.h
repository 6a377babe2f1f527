#pragma once

#include <functional>
#include <string>

namespace win {

class Control;
class Form;

// A key that acts while the control has the focus, or anywhere in the form. It lives as long as the control or form
// does.
void AddShortcut(Control& control, const std::string& keys, std::function<void()> act);  // as in "Del", "Ctrl+S"
void AddShortcut(Form& form, const std::string& keys, std::function<void()> act);

}  // namespace win
