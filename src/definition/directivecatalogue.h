#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// What the editor knows of the directives that it can build. It knows nothing of what they do, and a directive that is
// not here cannot be built.
namespace varnik {

// Parameters beyond ParamCount have no name and no note.
struct DirectiveInfo {
  std::string_view Keyword;  // in the spelling that is written
  std::string_view HelpText;
  std::int16_t ParamCount = 0;
  std::string_view Param1Name = "", Param1Note = "";
  std::string_view Param2Name = "", Param2Note = "";
  std::string_view Param3Name = "", Param3Note = "";

  // `number` from 1 to 3; empty for any other.
  std::string_view ParamName(int number) const;
  std::string_view ParamNote(int number) const;
};

// Row 0 stands for a line that is blank or holds only a comment.
extern const std::array<DirectiveInfo, 27> Directives;

// Row of the keyword, whatever its case; 0 for none.
int FindDirective(std::string_view keyword);

}  // namespace varnik
