#pragma once

#include <string>
#include <string_view>
#include <vector>

// The text that starts a Windows program, and the argument lists that this system starts programs with.
namespace win {

struct ProgramAndTail {
  std::string program;  // without its double quotes
  std::string tail;     // all that follows, from the blank behind the program on
};

// Skips blanks and tabs in front of the program, which ends at its closing quote, or at the first blank or tab.
ProgramAndTail SplitProgram(std::string_view commandLine);

// By the rules of Windows' C runtime: blanks and tabs separate outside double quotes; a backslash counts as one unless
// a double quote follows the run of them, which halves it, an odd one making the quote a character of the argument; a
// doubled quote within quotes is one such character.
std::vector<std::string> SplitArguments(std::string_view tail);

}  // namespace win
