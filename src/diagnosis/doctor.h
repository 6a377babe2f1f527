#pragma once

#include <functional>
#include <string>
#include <vector>

// What an interrupted or failed run left behind: in the selected install, and in what the program stores.
namespace varnik {

struct Leaving {
  std::string item;     // a name inside the install, or a section of the settings store
  std::string meaning;  // one sentence each
  std::string remedy;
  std::function<void()> mend;  // does what `remedy` says; empty where a person has to decide
};

// In the order in which they are to be mended. What the deactivation of a mod that is in force would put back is none.
// Reloads the catalogue; changes nothing.
std::vector<Leaving> FindLeavings();

// Keeps a copy, `<name>.kept-1` or the next free number, of every file that gets another content, then mends. True when
// the item is gone; nothing is mended when a copy cannot be kept.
bool Mend(const Leaving& leaving);

}  // namespace varnik
