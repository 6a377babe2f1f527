#include "diagnosis/legacycheck.h"

#include "diagnosis/pathcheck.h"
#include "diagnosis/spelling.h"
#include "diagnosis/undoorder.h"
#include "legacy/legacyactivation.h"
#include "legacy/legacyformat.h"
#include "modengine/activation.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace varnik {

namespace {

// A line number is 0 as long as there was no such line.
struct Walk {
  Place place;
  InstallCheck* install;
  LineBudget budget = {};
  LegacyConfig config = LegacyConfig::kUndecided;
  std::size_t configLine = 0;
  std::size_t loaderActionLine = 0;      // ends the time for `exec` in the catalogue
  std::size_t activationActionLine = 0;  // the same in the activation, which counts other lines
  std::size_t exeLine = 0;
  std::unordered_map<std::string, std::size_t> firstLines = {};  // of what counts once
  LegacyArguments arguments = {};
  UndoOrder undo = {};
};

void SetFirst(std::size_t& first, std::size_t line) {
  if (first == 0) first = line;
}

// Below the root; a path that starts elsewhere stands as it is.
std::string BelowRoot(const std::string& path) {
  return HasRootDir(path) ? path.substr(kRootDirLength) : path;
}

bool IsComplete(const std::string& path) {
  return win::IsSeparator(path[0]) || (path.size() > 1 && path[1] == ':');
}

// False, having said why, for a path that leads to no file of the install.
bool CheckPath(Walk& walk, const std::string& path) {
  const Place& place = walk.place;
  if (path.empty()) place.Say(Problem::kEmptyArgument, "a path is empty");
  if (path.find('"') != std::string::npos)
    place.Say(Problem::kQuotesKept, Quoted(path) + ": quotes are taken for part of the name");
  if (!path.empty() && IsComplete(path)) {
    place.Say(Problem::kOutsideInstall, Quoted(path) + " does not begin with `@rootdir`: it fits one machine only");
    return false;
  }
  if (path.empty() || !CheckInstallPath(place, BelowRoot(path)) || !CheckSingleName(place, path)) return false;
  if (HasRootDir(path)) {
    if (walk.install) walk.install->Spelling(place, BelowRoot(path));
    return true;
  }
  place.Say(Problem::kRelativePath,
            Quoted(path) + " has no `@rootdir\\` in front: it is looked for in the folder in which the program runs");
  return false;
}

void CheckThere(Walk& walk, const std::string& path) {
  if (CheckPath(walk, path) && walk.install) walk.install->Needed(walk.place, BelowRoot(path));
}

// Where the activation puts the install's own meanwhile.
void KeepUnder(Walk& walk, const std::string& name) {
  if (walk.install) walk.install->Moved(walk.place, {name, NameUse::kGives});
}

void Exec(Walk& walk, const LegacyLine& line) {
  CheckPath(walk, line.Value());
  const std::size_t listed = walk.loaderActionLine;
  const std::size_t done = walk.activationActionLine;
  if (listed != 0 && done != 0)
    walk.place.Say(Problem::kExeTooLate,
                   "the EXE is not run, since " + NameOfLine(std::min(listed, done)) + " is an action already");
  else if (done != 0)
    walk.place.Say(Problem::kExeTooLate,
                   "the EXE is not run, since " + NameOfLine(done) +
                       " is an action already, though the list takes the mod for one with an EXE");
  else if (listed != 0)
    walk.place.Say(Problem::kExeTooLate,
                   "the EXE is run in the game's place, and what " + NameOfLine(listed) + " has done is never undone");
  if (done == 0) walk.exeLine = walk.place.line;
}

bool Decide(Walk& walk, LegacyConfig config) {
  if (walk.config != LegacyConfig::kUndecided) {
    walk.place.Say(Problem::kModeTaken,
                   NameOfLine(walk.configLine) + " says already where the game configuration comes from");
    return false;
  }
  walk.config = config;
  walk.configLine = walk.place.line;
  SetFirst(walk.loaderActionLine, walk.place.line);
  SetFirst(walk.activationActionLine, walk.place.line);
  return true;
}

// The keyword has no blank of its own, so it ends where the text goes on.
bool DecideAlone(Walk& walk, const LegacyLine& line, LegacyConfig config) {
  if (!line.Value().empty())
    walk.place.Say(Problem::kGluedKeyword,
                   Quoted(line.text) + " is taken for " + Quoted(line.text.substr(0, line.keywordLength)) + " alone");
  return Decide(walk, config);
}
void Dynamic(Walk& walk, const LegacyLine& line) {
  if (DecideAlone(walk, line, LegacyConfig::kGenerated)) KeepUnder(walk, kLegacyConfigBackup);
}
void NoBzoneCfg(Walk& walk, const LegacyLine& line) {
  DecideAlone(walk, line, LegacyConfig::kUntouched);
}

void Predefined(Walk& walk, const LegacyLine& line) {
  if (!Decide(walk, LegacyConfig::kPredefined)) return;
  CheckThere(walk, line.Value());
  KeepUnder(walk, kLegacyConfigBackup);
}

void SwapFolder(Walk& walk, const LegacyLine& line) {
  const std::string keyword = win::LowerCase(line.text.substr(0, line.keywordLength - 1));
  const auto [first, isFirst] = walk.firstLines.try_emplace(keyword, walk.place.line);
  if (!isFirst) {
    walk.place.Say(Problem::kCountsOnce, "only " + Quoted(keyword) + " in " + NameOfLine(first->second) + " counts");
    return;
  }
  SetFirst(walk.activationActionLine, walk.place.line);
  CheckThere(walk, line.Value());
  KeepUnder(walk, keyword + kLegacyFolderBackup);
}

// The game resolves `@rootdir`; other paths are its own matter.
void AddToConfig(Walk& walk, const std::string& path) {
  if (walk.config != LegacyConfig::kGenerated)
    walk.place.Say(Problem::kNeedsDynamic, "the line has no effect without `dynamic` above it");
  else if (HasRootDir(path))
    CheckThere(walk, path);
}

void Pak(Walk& walk, const LegacyLine& line) {
  const std::string name = win::Trim(line.Value());
  AddToConfig(walk, win::LowerCase(name).ends_with(".pak") ? name : name + ".pak");
}

void Fold(Walk& walk, const LegacyLine& line) {
  AddToConfig(walk, win::Trim(line.Value()));
}

void MovePaths(Walk& walk, std::vector<MovedName> names) {
  SetFirst(walk.loaderActionLine, walk.place.line);
  for (MovedName& moved : names) {
    if (!CheckPath(walk, moved.name)) return;
    moved.name = BelowRoot(moved.name);
  }
  for (const MovedName& moved : names)
    if (walk.install && !walk.undo.Touches(moved.name)) walk.install->Moved(walk.place, moved);
  walk.undo.Add(walk.place, names);
}

void MoveTwo(Walk& walk, const LegacyLine& line, NameUse first, NameUse second) {
  if (line.text.find(',') == std::string::npos) {
    walk.place.Say(Problem::kTooFewArguments,
                   "without a comma the first path is that of an earlier line, and the second is the whole line");
    return;
  }
  walk.arguments.Split(line);
  if (walk.arguments.second.find(',') != std::string::npos)
    walk.place.Say(Problem::kSurplusArguments,
                   "the second path is " + Quoted(walk.arguments.second) + ", comma included");
  MovePaths(walk, {{walk.arguments.first, first}, {walk.arguments.second, second}});
}

// The one change that leaves a later `exec` in force.
void Replace(Walk& walk, const LegacyLine& line) {
  MoveTwo(walk, line, NameUse::kReplaces, NameUse::kMoves);
}

void Move(Walk& walk, const LegacyLine& line) {
  MoveTwo(walk, line, NameUse::kMoves, NameUse::kGives);
  SetFirst(walk.activationActionLine, walk.place.line);
}

void Remove(Walk& walk, const LegacyLine& line) {
  MovePaths(walk, {{win::Trim(line.Value())}});
  SetFirst(walk.activationActionLine, walk.place.line);
}

constexpr LegacyDirective<Walk> kDirectives[] = {
    {"exec ", Exec},
    {"dynamic", Dynamic},
    {"predefined ", Predefined},
    {"nobzonecfg", NoBzoneCfg},
    {"pilots ", SwapFolder},
    {"saved ", SwapFolder},
    {"pak ", Pak},
    {"fold ", Fold},
    {"replace ", Replace},
    {"move ", Move},
    {"remove ", Remove},
};

struct HeaderLine {
  std::size_t number;
  const char* keyword;
};
constexpr HeaderLine kHeader[] = {{2, kLegacyName}, {3, kLegacyDescription}, {5, kLegacySplash}};
constexpr std::size_t kHeaderLines = 5;

void CheckName(const Place& place, const std::string& text) {
  if (!win::StartsWithNoCase(text, kLegacyName))
    place.Say(Problem::kNoDescLine,
              "line 2 does not begin with `desc ` and a name: the catalogue looks for the rest of the file in the "
              "folder in which the program runs");
}

void CheckDescription(Walk& walk, const std::string& text) {
  const std::size_t length = std::string_view(kLegacyDescription).size();
  if (!win::StartsWithNoCase(text, kLegacyDescription)) {
    if (!text.empty()) walk.place.Say(Problem::kHeaderLine, "line 3 counts when it begins with `dfile ` only");
    return;
  }
  const std::string path = win::Trim(text.substr(length));
  if (CheckPath(walk, path) && walk.install) walk.install->Extra(walk.place, BelowRoot(path));
}

void CheckHeader(Walk& walk, const std::string& text) {
  switch (walk.place.line) {
    case 2:
      return CheckName(walk.place, text);
    case 3:
      return CheckDescription(walk, text);
    case 5:
      if (win::StartsWithNoCase(text, kLegacySplash))
        walk.place.Say(Problem::kHeaderLine, "a splash picture of the older format is never found");
      return;
    default:
      return;
  }
}

// What a line may have meant that no pass acts on.
void CheckUnknown(const Place& place, const std::string& text) {
  std::vector<std::string_view> keywords = LegacyKeywords();
  for (std::string_view& keyword : keywords)
    keyword = keyword.substr(0, keyword.find(' '));
  const std::string word = win::LowerCase(std::string_view(text).substr(0, text.find_first_of(" \t(")));
  const auto isWord = [&](const auto& form) { return form.name == word; };
  const std::vector<DirectiveForm> current = ActivationDirectives();
  if (std::find(keywords.begin(), keywords.end(), word) != keywords.end()) {
    const bool isTab = text[std::min(word.size(), text.size() - 1)] == '\t';
    place.Say(isTab ? Problem::kTab : Problem::kTooFewArguments,
              Quoted(word) + " needs a blank behind it, and what it is about");
    return;
  }
  for (const HeaderLine& header : kHeader)
    if (word + " " == header.keyword)
      return place.Say(Problem::kHeaderLine, Quoted(word) + " counts in " + NameOfLine(header.number) + " only");
  if (std::any_of(current.begin(), current.end(), isWord))
    return place.Say(Problem::kUnknownDirective, Quoted(word) + " belongs to the current format");
  if (const std::string_view likely = LikelyName(word, keywords); !likely.empty())
    return place.Say(Problem::kUnknownDirective,
                     "no reader knows " + Quoted(word) + "; did you mean " + Quoted(likely) + "?");
  place.Say(Problem::kNoDirective, Quoted(text) + " is no directive, and comments begin with `//` or `;`");
}

void CheckLine(Walk& walk, const LegacyLine& line) {
  const bool isHeader = walk.place.line <= kHeaderLines;
  if (isHeader) CheckHeader(walk, line.text);
  if (line.text.empty() || line.text[0] == ';') return;
  if (walk.exeLine != 0 && !isHeader) {
    walk.place.Say(Problem::kAfterExe,
                   "the activation ends at " + NameOfLine(walk.exeLine) + ", where an EXE takes over");
    return;
  }
  if (!ActOnLegacyLine(kDirectives, walk, line) && !isHeader) CheckUnknown(walk.place, line.text);
}

}  // namespace

bool CheckLegacyDefinition(const std::string& path, Findings& findings, InstallCheck* install) {
  Walk walk{{&findings, 1, ""}, install};
  win::LineReader file(path);
  file.ReadLine();
  if (file.AtEnd()) CheckName({&findings, 1, ""}, "");
  while (!file.AtEnd() && !findings.IsFull() && !walk.budget.IsSpent()) {
    ++walk.place.line;
    const LegacyLine line = ReadLegacyLine(file);
    walk.budget.Take(line.text);
    CheckLine(walk, line);
  }
  if (walk.budget.IsSpent()) walk.budget.Tell(walk.place);
  return !findings.IsFull() && !walk.budget.IsSpent();
}

}  // namespace varnik
