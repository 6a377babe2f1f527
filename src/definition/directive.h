#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The language of definition files, as every reader of it sees a line.
namespace varnik {

// Index 0 is the directive's name, empty for a line that is no directive; arguments from 1.
using Args = std::vector<std::string>;

// A line ahead of the split of its arguments.
struct LineParts {
  std::string_view text;                    // without the comment and the closing pair
  std::optional<std::string_view> comment;  // what follows the first `//`, inside quotes too
  bool isClosed = false;                    // the closing pair `);` stood where the readers look for it
};

LineParts CutLine(std::string_view line);

// Takes one line apart. `comment` receives what follows the first `//`, and is left alone when there is none. A line
// with an empty list, and one whose last argument is ended by a comma before a cut-off comment or closing pair, has one
// further empty argument.
void ParseDirective(std::string_view line, Args& args, std::string& comment);

// For readers, which have no use for the comment: the name comes in lower case. A pass keeps one `args` for all its
// lines.
void ParseDirective(std::string_view line, Args& args);

// Judges line 1 of a definition file. `version` is set only for a good marker; 0 when no number follows.
[[nodiscard]] bool ReadMarker(std::string_view firstLine, double& version);

// The version of the current format; 3 and below is the legacy format, every other value is not usable.
constexpr double kCurrentFormat = 5;
constexpr double kLastLegacyFormat = 3;

// As a run takes the version: rounded, and below 1 it is none, though the catalogue lists such a mod as legacy.
enum class RunFormat { kNone, kLegacy, kCurrent };
RunFormat RunFormatOf(double version);

}  // namespace varnik
