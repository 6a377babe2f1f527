#pragma once

#include "platform/system/files/lines.h"
#include "platform/system/text/text.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// What the three passes over a legacy definition have in common: how a line is read, and what its paths mean.
namespace varnik {

// One line without what follows the first `//`, and without outer blanks.
struct LegacyLine {
  std::string text;
  std::size_t keywordLength = 0;  // of the directive that it was found to be

  std::string Value() const { return text.substr(keywordLength); }
  std::string Keyword() const { return win::Trim(win::LowerCase(text.substr(0, keywordLength))); }
};

LegacyLine ReadLegacyLine(win::LineReader& file);

// What lines 2, 3 and 5 begin with, which are read by position.
constexpr char kLegacyName[] = "desc ";
constexpr char kLegacyDescription[] = "dfile ";
constexpr char kLegacySplash[] = "splashimg ";

// A directive's keyword stands at the front of its line, whatever its case, with its blank where it has one. Empty
// lines and `;` comments begin with no keyword, so they need no test of their own.
template <typename State>
struct LegacyDirective {
  const char* keyword;
  void (*act)(State& state, const LegacyLine& line);
};

// False when the line is no directive of the pass.
template <typename State, std::size_t N>
bool ActOnLegacyLine(const LegacyDirective<State> (&directives)[N], State& state, LegacyLine line) {
  for (const LegacyDirective<State>& directive : directives) {
    if (!win::StartsWithNoCase(line.text, directive.keyword)) continue;
    line.keywordLength = std::string_view(directive.keyword).size();
    directive.act(state, line);
    return true;
  }
  return false;
}

// The two arguments of `replace` and `move`. They live as long as the pass, since a line without a comma keeps the
// first one of the line before, and takes its own whole text, keyword included, as the second.
struct LegacyArguments {
  std::string first;
  std::string second;

  void Split(const LegacyLine& line);
};

// Where the game's core configuration of a mod comes from; the first line that says so counts.
enum class LegacyConfig { kUndecided, kGenerated, kPredefined, kUntouched };

// The install that a pass works on, and the numbers of its parking names.
struct LegacyPlaces {
  std::string root;  // ends in a separator
  std::int16_t LegacyTempCounter = 1;

  // A free name in `tempstuff\`, by count of the lines that take one. The count stands still at the last 16-bit number.
  std::string NextTempName();

  // `@rootdir\` or `@rootdir/` at the front becomes the root; any other path is left relative to the working folder.
  std::string ExpandRootDir(std::string path) const;

  // The next two arguments, both expanded.
  void SplitExpanded(const LegacyLine& line, LegacyArguments& arguments) const;
};

// True when `path` begins with `@rootdir\` or `@rootdir/`, whatever the case.
bool HasRootDir(const std::string& path);
constexpr std::size_t kRootDirLength = 9;

// Names in the install's root.
constexpr char kLegacyGeneratedConfig[] = "newbzone.tmp";  // until it takes the place of bzone.cfg
constexpr char kLegacyConfigBackup[] = "bzone.tmp.old";    // the game's own bzone.cfg while the mod's is in its place
constexpr char kLegacyFolderBackup[] = ".orig";  // behind the name of a player's folder while the mod's is in its place
constexpr char kPilotsFolder[] = "pilots";
constexpr char kSavedGamesFolder[] = "saved";
constexpr char kParkingFolder[] = "tempstuff";

}  // namespace varnik
