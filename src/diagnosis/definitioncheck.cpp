#include "diagnosis/definitioncheck.h"

#include "definition/bzonecfg.h"
#include "definition/directivecatalogue.h"
#include "definition/includes.h"
#include "diagnosis/linecheck.h"
#include "diagnosis/pathcheck.h"
#include "diagnosis/undoorder.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/definitionreader.h"
#include "platform/system/files/files.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "support/install.h"
#include "support/modfileexists.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace varnik {

namespace {

// The version lines of one file together are one test.
struct VersionTest {
  std::optional<Place> first;
  bool matched = false;
};

// A line number is 0 as long as there was no such line.
struct Walk {
  Place place;
  InstallCheck* install;
  LineBudget budget = {};
  ReadBounds bounds = {};
  std::vector<std::string> openFiles = {};                       // from the definition inwards, as native paths
  std::unordered_map<std::string, std::size_t> readFiles = {};   // the line that brought each
  VersionTest version = {};                                      // of the innermost open file
  bool undoReadsFile = true;                                     // the deactivation finds the file, too
  std::unordered_map<std::string, std::size_t> firstLines = {};  // of what counts once
  std::size_t actionLine = 0;                                    // the first, which ends the time for `activated`
  std::size_t activatedLine = 0;
  std::size_t activeTestLine = 0;
  std::size_t exeLine = 0;
  std::size_t sessionLine = 0;
  std::size_t movedConfigLine = 0;
  std::size_t generatedConfigLine = 0;
  bool configurationsMeet = false;
  UndoOrder undo = {};
  std::vector<std::pair<Place, std::string>> missing = {};  // may come into being by a later line

  bool IsIncluded() const { return openFiles.size() > 1; }
  bool IsDone() const { return place.findings->IsFull() || budget.IsSpent(); }
};

// True for the line that counts.
bool CountOnce(Walk& walk, const std::string& what) {
  const auto [first, isFirst] = walk.firstLines.try_emplace(what, walk.place.line);
  if (!isFirst) walk.place.Say(Problem::kCountsOnce, what + " is set by " + NameOfLine(first->second) + " already");
  return isFirst;
}

// False for a name that the install cannot have.
bool CheckPath(Walk& walk, const std::string& name) {
  if (!CheckInstallPath(walk.place, name)) return false;
  if (walk.install) walk.install->Spelling(walk.place, name);
  return true;
}

void WalkFile(Walk& walk, const std::string& path);

void Description(Walk& walk, const Args& args) {
  if (!args[1].empty()) CountOnce(walk, "the description");
}

void Name(Walk& walk, const Args& args) {
  if (!args[1].empty()) CountOnce(walk, "the name");
}

void ShownFile(Walk& walk, const Args& args, const std::string& what) {
  if (args[1].empty() || !CountOnce(walk, what)) return;
  if (CheckPath(walk, args[1]) && walk.install) walk.install->Extra(walk.place, args[1]);
}
void DescriptionFile(Walk& walk, const Args& args) {
  ShownFile(walk, args, "the description");
}
void Image(Walk& walk, const Args& args) {
  ShownFile(walk, args, "the picture");
}
void Splash(Walk& walk, const Args& args) {
  ShownFile(walk, args, "the splash picture");
}

void Require(Walk& walk, const Args& args) {
  if (CheckPath(walk, args[1]) && walk.install) walk.install->Requirement(walk.place, args[1]);
}

void RequireExe(Walk& walk, const Args& args) {
  if (walk.actionLine != 0) {
    walk.place.Say(Problem::kExeTooLate,
                   "the EXE is not run, since " + NameOfLine(walk.actionLine) + " is an action already");
    return;
  }
  Require(walk, args);
  walk.actionLine = walk.exeLine = walk.place.line;
  if (args.size() <= 2)
    walk.place.Say(Problem::kNotUndone, "without a second argument the EXE is not called to undo its work");
}

void BeginAction(Walk& walk) {
  if (walk.actionLine == 0) walk.actionLine = walk.place.line;
}

// Below a line that moves bzone.cfg the undo loses the game's own; above one the mod's own is not in force.
void CheckConfigurations(Walk& walk) {
  if (walk.movedConfigLine == 0 || walk.generatedConfigLine == 0 || walk.configurationsMeet) return;
  walk.configurationsMeet = true;
  walk.place.Say(Problem::kTwoConfigurations, NameOfLine(walk.movedConfigLine) + " moves bzone.cfg, and " +
                                                  NameOfLine(walk.generatedConfigLine) +
                                                  " has one generated: only one of them can be in force");
}

// What an earlier action has moved lies where it cannot be seen here.
void MovePaths(Walk& walk, const std::vector<MovedName>& names) {
  BeginAction(walk);
  for (const MovedName& moved : names)
    if (!CheckPath(walk, moved.name) || !CheckSingleName(walk.place, moved.name)) return;
  for (const MovedName& moved : names) {
    if (win::EqualNoCase(moved.name, kGameConfig)) walk.movedConfigLine = walk.place.line;
    if (walk.install && !walk.undo.Touches(moved.name)) walk.install->Moved(walk.place, moved);
  }
  walk.undo.Add(walk.place, names);
  CheckConfigurations(walk);
}

void Rename(Walk& walk, const Args& args) {
  if (win::EqualNoCase(args[1], args[2]))
    walk.place.Say(Problem::kSameName, Quoted(args[1]) + " is given its own name");
  else
    MovePaths(walk, {{args[1], NameUse::kMoves}, {args[2], NameUse::kGives}});
}

void Replace(Walk& walk, const Args& args) {
  MovePaths(walk, {{args[1], NameUse::kReplaces}, {args[2], NameUse::kMoves}, {args[3], NameUse::kGives}});
  if (win::EqualNoCase(args[1], kGameConfig) && args[1] != kGameConfig)
    walk.place.Say(Problem::kLetterCase,
                   "the folders in " + Quoted(args[2]) + " count for `bzone.cfg` in small letters only");
}

void GenerateConfig(Walk& walk) {
  BeginAction(walk);
  if (walk.generatedConfigLine == 0 && walk.install) walk.install->ConfigurationBackup(walk.place);
  walk.generatedConfigLine = walk.place.line;
  CheckConfigurations(walk);
}

// A later line may still bring it.
void NeedForGame(Walk& walk, const std::string& name) {
  GenerateConfig(walk);
  if (CheckPath(walk, name) && walk.install && !walk.install->Has(name)) walk.missing.emplace_back(walk.place, name);
}

void Pak(Walk& walk, const Args& args) {
  const bool hasEnding = args[1].ends_with(".pak");
  if (!hasEnding && win::LowerCase(args[1]).ends_with(".pak"))
    walk.place.Say(Problem::kLetterCase,
                   "`.pak` counts in small letters only: the game is told " + Quoted(args[1] + ".pak"));
  NeedForGame(walk, hasEnding ? args[1] : args[1] + ".pak");
}

void Fold(Walk& walk, const Args& args) {
  NeedForGame(walk, args[1]);
}

// Session defaults and race names: for the length of a run, and on version 1.3 only.
bool CheckSession(Walk& walk) {
  const bool isFirst = walk.sessionLine == 0;
  if (isFirst) walk.sessionLine = walk.place.line;
  if (!walk.install || IsVersion13()) return walk.install;
  if (isFirst)
    walk.place.Say(Problem::kNeedsVersion13,
                   "the install has version " + Quoted(InstallVersion()) + ", so the value is not set");
  return false;
}

void SessionDefault(Walk& walk, const Args& args, const std::string& key) {
  if (args[1].empty() || !CountOnce(walk, key)) return;
  if (CheckSession(walk)) walk.install->SessionDefault(walk.place, key);
}
void DefaultName(Walk& walk, const Args& args) {
  SessionDefault(walk, args, "DefaultSessionName");
}
void DefaultPassword(Walk& walk, const Args& args) {
  SessionDefault(walk, args, "DefaultPassword");
}
void DefaultMessage(Walk& walk, const Args& args) {
  SessionDefault(walk, args, "DefaultMessage");
}

void RaceName(Walk& walk, const Args& args) {
  const char letter = args[1].empty() ? ' ' : win::UpperCase(args[1])[0];
  if (letter < 'A' || letter > 'Z') {
    walk.place.Say(Problem::kRacenameLetter, Quoted(args[1]) + " does not begin with a letter from A to Z");
    return;
  }
  if (args[1].size() > 1)
    walk.place.Say(Problem::kRacenameWord, "of " + Quoted(args[1]) + " only the first letter counts");
  if (args[2].empty() || !CountOnce(walk, std::string("the name of race ") + letter)) return;
  if (CheckSession(walk)) walk.install->RaceName(walk.place, letter);
}

void Activated(Walk& walk, const Args&) {
  if (walk.activatedLine != 0) {
    walk.place.Say(Problem::kCountsOnce, NameOfLine(walk.activatedLine) + " says so already");
    return;
  }
  if (walk.actionLine != 0) {
    walk.place.Say(Problem::kActivatedTooLate,
                   "`activated` has no effect, since " + NameOfLine(walk.actionLine) + " is an action already");
    return;
  }
  walk.activatedLine = walk.actionLine = walk.place.line;
  if (walk.IsIncluded())
    walk.place.Say(Problem::kActivatedInInclude,
                   "in an included file the activation does not see that the mod is persistent, and leaves the marker "
                   "of an interrupted run");
}

void TestActive(Walk& walk) {
  walk.activeTestLine = walk.place.line;
  if (walk.activatedLine == 0)
    walk.place.Say(Problem::kActiveTestTooEarly, "without `activated` above it the line has no effect");
}

void ActivatedPath(Walk& walk, const Args& args) {
  TestActive(walk);
  CheckPath(walk, args[1]);
}

void ActivatedRecy(Walk& walk, const Args& args) {
  TestActive(walk);
  if (args.size() > 2) CheckPath(walk, args[2]);
}

void WriteId(Walk& walk, const Args& args) {
  if (!CheckPath(walk, args[1]) || !CheckSingleName(walk.place, args[1])) return;
  if (!CountOnce(walk, Quoted(args[1]))) return;
  if (walk.install && !walk.undo.Touches(args[1])) walk.install->IdFile(walk.place, args[1]);
  walk.undo.Add(walk.place, {{args[1], NameUse::kGives}});
}

void AddRecy(Walk& walk, const Args& args) {
  if (args.size() > 3 && !(CheckPath(walk, args[3]) && CheckSingleName(walk.place, args[3]))) return;
  if (walk.install) walk.install->AddRecy(walk.place, args);
}

void CheckDescent(Walk& walk, const std::string& name, const std::string& path) {
  const std::string native = win::NativePath(path);
  const auto& open = walk.openFiles;
  const auto [read, isNew] = walk.readFiles.try_emplace(native, walk.place.line);
  const IncludeScope further(walk.bounds);
  if (std::find(open.begin(), open.end(), native) != open.end())
    walk.place.Say(Problem::kIncludeCircular, Quoted(name) + " includes itself");
  else if (!isNew)
    walk.place.Say(Problem::kIncludeAgain,
                   Quoted(name) + " is carried out a second time; " + NameOfLine(read->second) + " includes it too");
  else if (!further.IsAllowed())
    walk.place.Say(Problem::kIncludeTooDeep, Quoted(name) + " is passed over: readers follow " +
                                                 std::to_string(ReadBounds::kMaxFiles) + " files, and " +
                                                 std::to_string(ReadBounds::kMaxDepth) + " one in another");
  else if (!win::LineReader(path).IsOpen())
    walk.place.Say(Problem::kIncludeUnreadable,
                   Quoted(name) + " cannot be read, which ends the reading of the definition");
  else
    WalkFile(walk, path);
}

// Findings in the included file stand at the line that includes it.
void Include(Walk& walk, const Args& args) {
  if (!CheckPath(walk, args[1])) return;
  const std::string path = FindModFile(args[1]);
  if (path.empty()) {
    if (walk.install)
      walk.place.Say(Problem::kIncludeMissing,
                     Quoted(args[1]) + " is neither in the install nor in the program's folder of mods");
    return;
  }
  const Place place = walk.place;
  const bool undoReadsFile = walk.undoReadsFile;
  if (walk.install && !walk.install->Has(args[1])) walk.undoReadsFile = false;
  CheckDescent(walk, args[1], path);
  walk.undoReadsFile = undoReadsFile;
  walk.place.within = place.within;
}

void Version(Walk& walk, const Args& args) {
  if (!walk.version.first) walk.version.first = walk.place;
  walk.version.matched |= NamesVersion(args, InstallVersion());
}

void TellVersion(const Walk& walk) {
  if (walk.install && walk.version.first && !walk.version.matched)
    walk.version.first->Say(Problem::kDoesNotFit,
                            "the install has version " + Quoted(InstallVersion()) + ", so the mod is not listed");
}

// Every directive that a reader knows, with the arguments that are looked at here.
constexpr PassDirective<Walk> kDirectives[] = {
    {"include", 1, Include},
    {"dname", 1, Name},
    {"description", 1, Description},
    {"descriptionf", 1, DescriptionFile},
    {"image", 1, Image},
    {"splash", 1, Splash},
    {"version", 1, Version},
    {"requirefile", 1, Require},
    {"requirefolder", 1, Require},
    {"requireexe", 1, RequireExe},
    {"rename", 2, Rename},
    {"renameex", 3, Replace},
    {"replace", 3, Replace},
    {"pak", 1, Pak},
    {"fold", 1, Fold},
    {"defaultname", 1, DefaultName},
    {"defaultpass", 1, DefaultPassword},
    {"defaultsmsg", 1, DefaultMessage},
    {"racename", 2, RaceName},
    {"activated", 0, Activated},
    {"activatedfile", 1, ActivatedPath},
    {"activatedfold", 1, ActivatedPath},
    {"activatedrecy", 1, ActivatedRecy},
    {"writeid", 1, WriteId},
    {"addrecy", 2, AddRecy},
};

struct Use {
  std::optional<std::size_t> needed;  // nothing: no reader knows the name
  bool inActivation = false;
  bool inDeactivation = false;
};

Use UseOf(const std::string& name) {
  static const std::vector<DirectiveForm> catalogue = CatalogueDirectives();
  static const std::vector<DirectiveForm> activation = ActivationDirectives();
  static const std::vector<DirectiveForm> deactivation = DeactivationDirectives();
  Use use;
  const auto look = [&](const std::vector<DirectiveForm>& forms) {
    const auto form = std::find_if(forms.begin(), forms.end(), [&](const DirectiveForm& f) { return f.name == name; });
    if (form == forms.end()) return false;
    use.needed = std::min(use.needed.value_or(form->arguments), form->arguments);
    return true;
  };
  look(catalogue);
  use.inActivation = look(activation);
  use.inDeactivation = look(deactivation);
  return use;
}

// How many arguments a reader looks at: those that it needs, and those that the editor offers besides.
std::size_t UsefulArguments(const std::string& name, std::size_t needed) {
  if (name == "version") return std::numeric_limits<std::size_t>::max() - 1;
  return std::max<std::size_t>(needed, Directives[FindDirective(name)].ParamCount);
}

void CheckPlaceOfAction(const Walk& walk, const Args& args, const Use& use) {
  if (!use.inActivation || args[0] == "include") return;
  if (walk.exeLine != 0 && args[0] != "requireexe" && args[0] != "activated")
    walk.place.Say(Problem::kAfterExe,
                   "the activation ends at " + NameOfLine(walk.exeLine) + ", where an EXE takes over");
  if (!walk.undoReadsFile && use.inDeactivation)
    walk.place.Say(Problem::kNotUndone, "the deactivation looks for included files in the install only, so " +
                                            Quoted(args[0]) + " is not taken back");
}

void CheckLine(Walk& walk, const std::string& line) {
  Args args;
  ParseDirective(line, args);
  if (args[0].empty()) return CheckPlainText(walk.place, line);
  const Use use = UseOf(args[0]);
  if (!use.needed) return CheckUnknownName(walk.place, args[0]);
  CheckForm(walk.place, line, args, *use.needed, UsefulArguments(args[0], *use.needed));
  if (args.size() <= *use.needed) {
    walk.place.Say(Problem::kTooFewArguments, Quoted(args[0]) + " needs " + std::to_string(*use.needed) +
                                                  " arguments and has " + std::to_string(args.size() - 1) +
                                                  ", so the line is passed over");
    return;
  }
  CheckPlaceOfAction(walk, args, use);
  ActOnDirective(kDirectives, walk, args);
}

void WalkFile(Walk& walk, const std::string& path) {
  walk.openFiles.push_back(win::NativePath(path));
  win::LineReader file(path);
  const VersionTest outerVersion = std::exchange(walk.version, {});
  const std::string outer = walk.place.within;
  for (std::size_t number = 1; !file.AtEnd() && !walk.IsDone(); ++number) {
    const std::string line = file.ReadLine();
    walk.budget.Take(line);
    if (walk.IsIncluded())
      walk.place.within = outer + "in " + Quoted(win::FileNameOf(path)) + ", " + NameOfLine(number) + ": ";
    else
      walk.place.line = number;
    double marked = 0;
    if (number > 1 || !ReadMarker(line, marked)) CheckLine(walk, line);
  }
  TellVersion(walk);
  walk.version = outerVersion;
  walk.openFiles.pop_back();
}

void CheckWhole(Walk& walk) {
  walk.place = {walk.place.findings, 1, ""};
  if (!walk.firstLines.contains("the name"))
    walk.place.Say(Problem::kNoName, "there is no `dname`, so the list shows an empty row");
  walk.place.line = walk.activatedLine;
  if (walk.activatedLine == 0) return;
  if (walk.activeTestLine == 0)
    walk.place.Say(
        Problem::kNoActiveTest,
        "no `activatedfile` or its like below: the mod always counts as in force and is never put into force");
  if (walk.sessionLine == 0) return;
  walk.place.line = walk.sessionLine;
  walk.place.Say(Problem::kPersistentSession, "the mod is persistent by " + NameOfLine(walk.activatedLine) +
                                                  ", so session defaults and race names are not set");
}

void TellMissing(const Walk& walk) {
  for (const auto& [place, name] : walk.missing)
    if (!walk.undo.Touches(name)) walk.install->Needed(place, name);
}

}  // namespace

bool CheckCurrentDefinition(const std::string& path, Findings& findings, InstallCheck* install) {
  Walk walk{{&findings, 1, ""}, install};
  walk.readFiles.emplace(win::NativePath(path), 1);
  WalkFile(walk, path);
  TellMissing(walk);
  if (walk.budget.IsSpent())
    walk.budget.Tell(walk.place);
  else
    CheckWhole(walk);
  return !walk.IsDone();
}

}  // namespace varnik
