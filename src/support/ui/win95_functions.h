#pragma once

#include <string>

namespace win {
class Form;
}

namespace varnik {

// The folder that the player chose, with a separator behind it; empty when the box was cancelled.
std::string BrowseForFolder(win::Form* owner, const std::string& title);

}  // namespace varnik
