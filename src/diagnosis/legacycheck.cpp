#include "diagnosis/legacycheck.h"

#include "diagnosis/linecheck.h"
#include "diagnosis/pathcheck.h"
#include "diagnosis/spelling.h"
#include "diagnosis/undoorder.h"
#include "legacy/legacyactivation.h"
#include "legacy/legacyformat.h"
#include "modengine/activation.h"
#include "platform/system/files/lines.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

namespace varnik {

namespace {

using enum Problem;

// A line number is 0 as long as there was no such line.
struct CheckState {
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

  void Report(Problem problem, const std::string& message) const { place.Report(problem, message); }
};

void SetFirst(std::size_t& first, std::size_t line) {
  if (first == 0) first = line;
}

// Below the root; a path that starts elsewhere stands as it is.
std::string BelowRoot(const std::string& path) { return HasRootDir(path) ? path.substr(kRootDirLength) : path; }

// A path with neither `@rootdir\` nor a root. The window runs in the program's folder.
void ReportRelative(const Place& place, const std::string& path, PathUse use) {
  const bool isInMods = win::StartsWithNoCase(win::ToNativeSpelling(path), "mods/");
  const bool isDone = isInMods || use == PathUse::kRead;
  place.Report(
      isDone ? kLeadsOut : kRelativePath,
      Quoted(path) + " has no `@rootdir\\` in front: it is looked for in the folder in which the program runs");
}

// Reports a path that leads to no file of the install, and returns false then.
bool CheckPath(CheckState& state, const std::string& path, PathUse use) {
  const Place& place = state.place;
  if (path.empty()) place.Report(kEmptyArgument, "a path is empty");
  if (path.find('"') != std::string::npos)
    place.Report(kQuotesKept, Quoted(path) + ": quotes are taken for part of the name");
  if (win::IsAbsolutePath(path)) {
    CheckConfined(place, path, PathBase::kOwn, use, state.install);
    return false;
  }
  if (path.empty() || !CheckInstallPath(place, BelowRoot(path)) || !CheckWindowsName(place, BelowRoot(path)) ||
      !CheckSingleName(place, path))
    return false;
  if (!HasRootDir(path)) {
    ReportRelative(place, path, use);
    return false;
  }
  if (!CheckConfined(place, BelowRoot(path), PathBase::kInstall, use, state.install)) return false;
  if (state.install) state.install->Spelling(place, BelowRoot(path));
  return true;
}

void CheckThere(CheckState& state, const std::string& path, PathUse use) {
  if (CheckPath(state, path, use) && state.install) state.install->Needed(state.place, BelowRoot(path));
}

// The name under which the activation keeps the install's own.
void KeepUnder(CheckState& state, const std::string& name) {
  if (state.install) state.install->Moved(state.place, {name, NameUse::kGives});
}

void Exec(CheckState& state, const LegacyLine& line) {
  if (!CheckPath(state, line.Value(), PathUse::kWrite)) return;
  if (HasRootDir(line.Value()) && state.install) {
    state.install->Needed(state.place, BelowRoot(line.Value()));
    state.install->Program(state.place, BelowRoot(line.Value()));
  }
  const std::size_t listed = state.loaderActionLine;
  const std::size_t done = state.activationActionLine;
  if (listed != 0 && done != 0)
    state.Report(kExeTooLate,
                 "the EXE is not run, since " + NameOfLine(std::min(listed, done)) + " is an action already");
  else if (done != 0)
    state.Report(kExeTooLate, "the EXE is not run, since " + NameOfLine(done) +
                                  " is an action already, though the list takes the mod for one with an EXE");
  else if (listed != 0)
    state.Report(kExeTooLate,
                 "the EXE is run in the game's place, and what " + NameOfLine(listed) + " has done is never undone");
  if (done == 0) state.exeLine = state.place.line;
}

bool Decide(CheckState& state, LegacyConfig config) {
  if (state.config != LegacyConfig::kUndecided) {
    state.Report(kModeTaken, NameOfLine(state.configLine) + " says already where the game configuration comes from");
    return false;
  }
  state.config = config;
  state.configLine = state.place.line;
  SetFirst(state.loaderActionLine, state.place.line);
  SetFirst(state.activationActionLine, state.place.line);
  return true;
}

// The keyword has no blank of its own, so it ends where the text goes on.
bool DecideAlone(CheckState& state, const LegacyLine& line, LegacyConfig config) {
  if (!line.Value().empty())
    state.Report(kGluedKeyword,
                 Quoted(line.text) + " is taken for " + Quoted(line.text.substr(0, line.keywordLength)) + " alone");
  return Decide(state, config);
}
void Dynamic(CheckState& state, const LegacyLine& line) {
  if (DecideAlone(state, line, LegacyConfig::kGenerated)) KeepUnder(state, kLegacyConfigBackup);
}
void NoBzoneCfg(CheckState& state, const LegacyLine& line) { DecideAlone(state, line, LegacyConfig::kUntouched); }

void Predefined(CheckState& state, const LegacyLine& line) {
  if (!Decide(state, LegacyConfig::kPredefined)) return;
  CheckThere(state, line.Value(), PathUse::kMove);
  KeepUnder(state, kLegacyConfigBackup);
}

void SwapFolder(CheckState& state, const LegacyLine& line) {
  const std::string keyword = line.Keyword();
  const auto [first, isFirst] = state.firstLines.try_emplace(keyword, state.place.line);
  if (!isFirst) {
    state.Report(kCountsOnce, "only " + Quoted(keyword) + " in " + NameOfLine(first->second) + " counts");
    return;
  }
  SetFirst(state.activationActionLine, state.place.line);
  CheckThere(state, line.Value(), PathUse::kMove);
  KeepUnder(state, keyword + kLegacyFolderBackup);
}

// The game resolves `@rootdir`; other paths are its own matter.
void PakOrFold(CheckState& state, const LegacyLine& line) {
  std::string path = win::Trim(line.Value());
  if (line.Keyword() == "pak" && !win::LowerCase(path).ends_with(".pak")) path += ".pak";
  if (state.config != LegacyConfig::kGenerated)
    state.Report(kNeedsDynamic, "the line has no effect without `dynamic` above it");
  else if (HasRootDir(path) && state.undo.CheckFound(state.place, BelowRoot(path)))
    CheckThere(state, path, PathUse::kRead);
}

void MovePaths(CheckState& state, std::vector<MovedName> names) {
  SetFirst(state.loaderActionLine, state.place.line);
  for (MovedName& moved : names) {
    if (!CheckPath(state, moved.name, PathUse::kMove)) return;
    moved.name = BelowRoot(moved.name);
  }
  for (const MovedName& moved : names)
    if (state.install && !state.undo.Touches(moved.name)) state.install->Moved(state.place, moved);
  state.undo.Add(state.place, names);
}

template <NameUse kFirst, NameUse kSecond>
void MoveTwo(CheckState& state, const LegacyLine& line) {
  if (line.text.find(',') == std::string::npos) {
    state.Report(kTooFewArguments,
                 "without a comma the first path is that of an earlier line, and the second is the whole line");
    return;
  }
  state.arguments.Split(line);
  if (state.arguments.second.find(',') != std::string::npos)
    state.Report(kSurplusArguments, "the second path is " + Quoted(state.arguments.second) + ", comma included");
  MovePaths(state, {{state.arguments.first, kFirst}, {state.arguments.second, kSecond}});
}

void Move(CheckState& state, const LegacyLine& line) {
  MoveTwo<NameUse::kMoves, NameUse::kGives>(state, line);
  SetFirst(state.activationActionLine, state.place.line);
}

void Remove(CheckState& state, const LegacyLine& line) {
  MovePaths(state, {{win::Trim(line.Value())}});
  SetFirst(state.activationActionLine, state.place.line);
}

constexpr LegacyDirective<CheckState> kDirectives[] = {
    {"exec ", Exec},
    {"dynamic", Dynamic},
    {"predefined ", Predefined},
    {"nobzonecfg", NoBzoneCfg},
    {"pilots ", SwapFolder},
    {"saved ", SwapFolder},
    {"pak ", PakOrFold},
    {"fold ", PakOrFold},
    {"replace ", MoveTwo<NameUse::kReplaces, NameUse::kMoves>},  // leaves a later `exec` as it is
    {"move ", Move},
    {"remove ", Remove},
};

constexpr std::pair<std::size_t, std::string_view> kHeader[] = {
    {2, kLegacyName}, {3, kLegacyDescription}, {5, kLegacySplash}};
constexpr std::size_t kHeaderLines = 5;

void CheckName(const Place& place, const std::string& text) {
  if (!win::StartsWithNoCase(text, kLegacyName))
    place.Report(kNoDescLine,
                 "line 2 does not begin with `desc ` and a name: the catalogue looks for the rest of the file in the "
                 "folder in which the program runs");
}

void CheckDescription(CheckState& state, const std::string& text) {
  if (!win::StartsWithNoCase(text, kLegacyDescription)) {
    if (!text.empty()) state.Report(kHeaderLine, "line 3 counts when it begins with `dfile ` only");
    return;
  }
  const std::string path = win::Trim(text.substr(std::string_view(kLegacyDescription).size()));
  if (CheckPath(state, path, PathUse::kRead) && state.install) state.install->Description(state.place, BelowRoot(path));
}

void CheckHeader(CheckState& state, const std::string& text) {
  if (state.place.line == 2) CheckName(state.place, text);
  if (state.place.line == 3) CheckDescription(state, text);
  if (state.place.line == 5 && win::StartsWithNoCase(text, kLegacySplash))
    state.Report(kHeaderLine, "a splash picture of the older format is never found");
}

// What a line may have meant that no pass acts on.
void CheckUnknown(const Place& place, const std::string& text) {
  std::vector<std::string_view> keywords = LegacyKeywords();
  for (std::string_view& keyword : keywords)
    keyword = keyword.substr(0, keyword.find(' '));
  const std::string word = win::LowerCase(std::string_view(text).substr(0, text.find_first_of(" \t(")));
  if (std::find(keywords.begin(), keywords.end(), word) != keywords.end()) {
    const bool isTab = text[std::min(word.size(), text.size() - 1)] == '\t';
    place.Report(isTab ? kTab : kTooFewArguments, Quoted(word) + " needs a blank behind it, and what it is about");
    return;
  }
  for (const auto& [number, keyword] : kHeader)
    if (word + " " == keyword)
      return place.Report(kHeaderLine, Quoted(word) + " counts in " + NameOfLine(number) + " only");
  for (const DirectiveForm& form : ActivationDirectives())
    if (form.name == word) return place.Report(kUnknownDirective, Quoted(word) + " belongs to the current format");
  if (const std::string_view likely = LikelyName(word, keywords); !likely.empty())
    return place.Report(kUnknownDirective,
                        "no reader knows " + Quoted(word) + "; did you mean " + Quoted(likely) + "?");
  place.Report(kNoDirective, Quoted(text) + " is no directive, and comments begin with `//` or `;`");
}

void CheckLine(CheckState& state, const LegacyLine& line) {
  const bool isHeader = state.place.line <= kHeaderLines;
  if (isHeader) CheckHeader(state, line.text);
  if (line.text.empty() || line.text[0] == ';') return;
  if (state.exeLine != 0 && !isHeader) {
    state.Report(kAfterExe, "the activation ends at " + NameOfLine(state.exeLine) + ", where an EXE takes over");
    return;
  }
  if (!ActOnLegacyLine(kDirectives, state, line) && !isHeader) CheckUnknown(state.place, line.text);
}

}  // namespace

bool CheckLegacyDefinition(const std::string& path, Findings& findings, InstallCheck* install) {
  CheckState state{{&findings, 1, ""}, install};
  win::LineReader file(path);
  file.ReadLine();
  if (file.AtEnd()) CheckName({&findings, 1, ""}, "");
  while (!file.AtEnd() && !findings.IsFull() && !state.budget.IsSpent()) {
    ++state.place.line;
    const LegacyLine line = ReadLegacyLine(file);
    state.budget.Take(line.text);
    CheckLine(state, line);
  }
  if (state.budget.IsSpent()) state.budget.Report(state.place);
  return !findings.IsFull() && !state.budget.IsSpent();
}

}  // namespace varnik
