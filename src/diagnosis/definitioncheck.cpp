#include "diagnosis/definitioncheck.h"

#include "definition/bzonecfg.h"
#include "definition/directivecatalogue.h"
#include "definition/includes.h"
#include "definition/passdirective.h"
#include "definition/recylist.h"
#include "diagnosis/activetest.h"
#include "diagnosis/linecheck.h"
#include "diagnosis/pathcheck.h"
#include "diagnosis/undoorder.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/definitionreader.h"
#include "platform/system/files/lines.h"
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

using enum Problem;

// The version lines of one file together are one test.
struct VersionTest {
  std::optional<Place> first;
  bool matched = false;
};

// What `pak` or `fold` adds to the generated configuration.
struct ConfigurationEntry {
  Place place;
  std::string name;
  bool isPack = false;
};

// A line number is 0 as long as there was no such line.
struct CheckState {
  Place place;
  InstallCheck* install;
  LineBudget budget = {};
  ReadBounds bounds = {};
  std::vector<std::string> openFiles = {};                       // from the definition inwards, as native paths
  std::unordered_map<std::string, std::size_t> readFiles = {};   // the line that brought each
  bool lineIsCut = false;                                        // by a comment, inside an argument
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
  ActiveTests activeTests = {};
  std::vector<ConfigurationEntry> entries = {};

  void Report(Problem problem, const std::string& message) const { place.Report(problem, message); }
  bool IsIncluded() const { return openFiles.size() > 1; }
  bool IsDone() const { return place.findings->IsFull() || budget.IsSpent(); }
};

// True for the line that counts. Lines with the same `key` mean the same.
bool CountOnce(CheckState& state, const std::string& what, const std::string& key) {
  const auto [first, isFirst] = state.firstLines.try_emplace(key, state.place.line);
  if (!isFirst) state.Report(kCountsOnce, what + " is set by " + NameOfLine(first->second) + " already");
  return isFirst;
}
bool CountOnce(CheckState& state, const std::string& what) { return CountOnce(state, what, what); }

// False for a name that the install cannot have, for one with which nothing is done, and for what a comment leaves of
// one.
bool CheckPath(CheckState& state, const std::string& name, PathUse use = PathUse::kRead) {
  if (state.lineIsCut) return false;
  if (!CheckInstallPath(state.place, name) || !CheckWindowsName(state.place, name)) return false;
  if (!CheckConfined(state.place, name, PathBase::kInstall, use, state.install)) return false;
  if (state.install) state.install->Spelling(state.place, name);
  return true;
}

void CheckFile(CheckState& state, const std::string& path);

constexpr char kName[] = "the name";
constexpr char kDescription[] = "the description";
constexpr char kPicture[] = "the picture";
constexpr char kSplash[] = "the splash picture";

template <const char* kWhat>
void ShownText(CheckState& state, const Args& args) {
  if (!args[1].empty()) CountOnce(state, kWhat);
}

template <const char* kWhat, void (InstallCheck::*kCheck)(const Place&, const std::string&)>
void ShownFile(CheckState& state, const Args& args) {
  if (args[1].empty() || !CountOnce(state, kWhat)) return;
  if (CheckPath(state, args[1]) && state.install) (state.install->*kCheck)(state.place, args[1]);
}

void Require(CheckState& state, const Args& args) {
  if (CheckPath(state, args[1]) && state.install) state.install->Requirement(state.place, args[1]);
}

void RequireExe(CheckState& state, const Args& args) {
  if (state.actionLine != 0) {
    state.Report(kExeTooLate, "the EXE is not run, since " + NameOfLine(state.actionLine) + " is an action already");
    return;
  }
  if (!CheckPath(state, args[1], PathUse::kWrite)) return;
  if (state.install) {
    state.install->Requirement(state.place, args[1]);
    state.install->Program(state.place, args[1]);
  }
  state.actionLine = state.exeLine = state.place.line;
  if (args.size() <= 2) state.Report(kNotUndone, "without a second argument the EXE is not called to undo its work");
}

void BeginAction(CheckState& state) {
  if (state.actionLine == 0) state.actionLine = state.place.line;
}

// Below a line that moves bzone.cfg the undo loses the game's own; above one the mod's own is not used.
void CheckConfigurations(CheckState& state) {
  if (state.movedConfigLine == 0 || state.generatedConfigLine == 0 || state.configurationsMeet) return;
  state.configurationsMeet = true;
  state.Report(kTwoConfigurations, NameOfLine(state.movedConfigLine) + " moves bzone.cfg, and " +
                                       NameOfLine(state.generatedConfigLine) +
                                       " has one generated: only one of them can be used");
}

// A name that an earlier action moved is not looked for, since the install still has it in its old place.
void MovePaths(CheckState& state, const std::vector<MovedName>& names) {
  for (const MovedName& moved : names)
    if (!CheckPath(state, moved.name, PathUse::kMove) || !CheckSingleName(state.place, moved.name)) return;
  for (const MovedName& moved : names) {
    if (win::EqualNoCase(moved.name, kGameConfig)) state.movedConfigLine = state.place.line;
    if (state.install && !state.undo.Touches(moved.name)) state.install->Moved(state.place, moved);
  }
  state.undo.Add(state.place, names);
  CheckConfigurations(state);
}

void Rename(CheckState& state, const Args& args) {
  BeginAction(state);
  if (win::EqualNoCase(args[1], args[2]))
    state.Report(kSameName, Quoted(args[1]) + " is given its own name");
  else
    MovePaths(state, {{args[1], NameUse::kMoves}, {args[2], NameUse::kGives}});
}

void Replace(CheckState& state, const Args& args) {
  BeginAction(state);
  for (const auto& [first, second] : {std::pair{1, 2}, {1, 3}, {2, 3}})
    if (win::EqualNoCase(args[first], args[second]))
      return state.Report(kSameName, "arguments " + std::to_string(first) + " and " + std::to_string(second) +
                                         " are both " + Quoted(args[second]) +
                                         ": they are the file, what takes its place, and a new name to keep it under");
  MovePaths(state, {{args[1], NameUse::kReplaces}, {args[2], NameUse::kMoves}, {args[3], NameUse::kGives}});
  if (win::EqualNoCase(args[1], kGameConfig) && args[1] != kGameConfig)
    state.Report(kLetterCase, "maps and pictures are looked for in the folders that " + Quoted(args[2]) +
                                  " adds only when the first name is spelt " + Quoted(kGameConfig) + ", not " +
                                  Quoted(args[1]));
}

// Whether the file or folder is there is seen at the end, since a later line may still bring it or take it away.
void AddToConfiguration(CheckState& state, const std::string& name, bool isPack) {
  BeginAction(state);
  if (state.generatedConfigLine == 0 && state.install) state.install->ConfigurationBackup(state.place);
  state.generatedConfigLine = state.place.line;
  state.activeTests.AddMade(kGameConfigBackup);
  CheckConfigurations(state);
  if (CheckPath(state, name) && CountOnce(state, "the entry " + Quoted(name), "entry " + win::LowerCase(name)))
    state.entries.push_back({state.place, name, isPack});
}

void CheckEntries(const CheckState& state) {
  for (const auto& [place, name, isPack] : state.entries) {
    if (!state.undo.CheckFound(place, name) || !state.install || state.undo.Touches(name)) continue;
    if (isPack)
      state.install->Pack(place, name);
    else
      state.install->Folder(place, name);
  }
}

void Pak(CheckState& state, const Args& args) {
  const bool hasEnding = args[1].ends_with(".pak");
  if (!hasEnding && win::LowerCase(args[1]).ends_with(".pak"))
    state.Report(kLetterCase, "`.pak` counts in small letters only: the game is told " + Quoted(args[1] + ".pak"));
  AddToConfiguration(state, hasEnding ? args[1] : args[1] + ".pak", true);
}

void Fold(CheckState& state, const Args& args) { AddToConfiguration(state, args[1], false); }

// Session defaults and race names: for the length of a run, and on version 1.3 only.
bool CheckSession(CheckState& state) {
  const bool isFirst = state.sessionLine == 0;
  if (isFirst) state.sessionLine = state.place.line;
  if (!state.install || IsVersion13()) return state.install;
  if (isFirst)
    state.Report(kNeedsVersion13, "the install has version " + Quoted(InstallVersion()) + ", so the value is not set");
  return false;
}

constexpr char kSessionName[] = "DefaultSessionName";
constexpr char kPassword[] = "DefaultPassword";
constexpr char kMessage[] = "DefaultMessage";

template <const char* kKey>
void SessionDefault(CheckState& state, const Args& args) {
  if (args[1].empty() || !CountOnce(state, kKey)) return;
  if (CheckSession(state)) state.install->SessionDefault(state.place, kKey);
}

void RaceName(CheckState& state, const Args& args) {
  const char letter = args[1].empty() ? ' ' : win::UpperCase(args[1])[0];
  if (letter < 'A' || letter > 'Z') {
    state.Report(kRacenameLetter, Quoted(args[1]) + " does not begin with a letter from A to Z");
    return;
  }
  if (args[1].size() > 1) state.Report(kRacenameWord, "of " + Quoted(args[1]) + " only the first letter counts");
  if (args[2].empty() || !CountOnce(state, std::string("the name of race ") + letter)) return;
  if (CheckSession(state)) state.install->RaceName(state.place, letter);
}

void Activated(CheckState& state, const Args&) {
  if (state.activatedLine != 0) {
    state.Report(kCountsOnce, NameOfLine(state.activatedLine) + " says so already");
    return;
  }
  if (state.actionLine != 0) {
    state.Report(kActivatedTooLate,
                 "`activated` has no effect, since " + NameOfLine(state.actionLine) + " is an action already");
    return;
  }
  state.activatedLine = state.actionLine = state.place.line;
  if (state.IsIncluded())
    state.Report(kActivatedInInclude,
                 "in an included file the activation does not see that the mod is persistent, and leaves the marker "
                 "of an interrupted run");
}

void TestActive(CheckState& state) {
  state.activeTestLine = state.place.line;
  if (state.activatedLine == 0)
    state.Report(kActiveTestTooEarly, "without `activated` above it the line has no effect");
}

void ActivatedPath(CheckState& state, const Args& args) {
  TestActive(state);
  if (CheckPath(state, args[1]) && state.activatedLine != 0) state.activeTests.AddPath(state.place, args[1]);
}

void ActivatedRecy(CheckState& state, const Args& args) {
  TestActive(state);
  state.activeTests.AddList();
  if (args.size() > 2) CheckPath(state, args[2]);
}

void WriteId(CheckState& state, const Args& args) {
  if (!CheckPath(state, args[1], PathUse::kWrite) || !CheckSingleName(state.place, args[1])) return;
  if (!CountOnce(state, Quoted(args[1]), "file " + args[1])) return;
  if (state.install && !state.undo.Touches(args[1])) state.install->IdFile(state.place, args[1]);
  state.undo.Add(state.place, {{args[1], NameUse::kGives}});
}

void AddRecy(CheckState& state, const Args& args) {
  if (args.size() > 3 && !(CheckPath(state, args[3], PathUse::kWrite) && CheckSingleName(state.place, args[3]))) return;
  state.activeTests.AddMade(args.size() > 3 ? args[3] : kRecyList);
  if (state.install) state.install->AddRecy(state.place, args);
}

void CheckIncluded(CheckState& state, const std::string& name, const std::string& path) {
  const std::string native = win::NativePath(path);
  const auto& open = state.openFiles;
  const auto [read, isNew] = state.readFiles.try_emplace(native, state.place.line);
  const IncludeScope scope(state.bounds);
  if (std::find(open.begin(), open.end(), native) != open.end())
    state.Report(kIncludeCircular, Quoted(name) + " includes itself");
  else if (!isNew)
    state.Report(kIncludeAgain,
                 Quoted(name) + " is carried out a second time; " + NameOfLine(read->second) + " includes it too");
  else if (!scope.IsAllowed())
    state.Report(kIncludeTooDeep, Quoted(name) + " is passed over: readers follow " +
                                      std::to_string(ReadBounds::kMaxFiles) + " files, and " +
                                      std::to_string(ReadBounds::kMaxDepth) + " one in another");
  else if (!win::LineReader(path).IsOpen())
    state.Report(kIncludeUnreadable, Quoted(name) + " cannot be read, which ends the reading of the definition");
  else
    CheckFile(state, path);
}

// Findings in the included file stand at the line that includes it.
void Include(CheckState& state, const Args& args) {
  if (!CheckPath(state, args[1])) return;
  const std::string path = FindModFile(args[1]);
  if (path.empty()) {
    if (state.install)
      state.Report(kIncludeMissing, Quoted(args[1]) + " is neither in the install nor in the program's folder of mods");
    return;
  }
  const Place place = state.place;
  const bool undoReadsFile = state.undoReadsFile;
  if (state.install && !state.install->Has(args[1])) state.undoReadsFile = false;
  CheckIncluded(state, args[1], path);
  state.undoReadsFile = undoReadsFile;
  state.place.within = place.within;
}

void Version(CheckState& state, const Args& args) {
  if (!state.version.first) state.version.first = state.place;
  state.version.matched |= NamesVersion(args, InstallVersion());
  for (std::size_t i = 1; i < args.size(); ++i)
    if (!win::EqualNoCase(args[i], win::Trim(InstallVersion()))) CheckGameVersion(state.place, args[i]);
}

// Every directive that a reader knows, with the arguments that are looked at here.
constexpr PassDirective<CheckState> kDirectives[] = {
    {"include", 1, Include},
    {"dname", 1, ShownText<kName>},
    {"description", 1, ShownText<kDescription>},
    {"descriptionf", 1, ShownFile<kDescription, &InstallCheck::Description>},
    {"image", 1, ShownFile<kPicture, &InstallCheck::Picture>},
    {"splash", 1, ShownFile<kSplash, &InstallCheck::Picture>},
    {"version", 1, Version},
    {"requirefile", 1, Require},
    {"requirefolder", 1, Require},
    {"requireexe", 1, RequireExe},
    {"rename", 2, Rename},
    {"renameex", 3, Replace},
    {"replace", 3, Replace},
    {"pak", 1, Pak},
    {"fold", 1, Fold},
    {"defaultname", 1, SessionDefault<kSessionName>},
    {"defaultpass", 1, SessionDefault<kPassword>},
    {"defaultsmsg", 1, SessionDefault<kMessage>},
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

void CheckPlaceOfAction(const CheckState& state, const Args& args, const Use& use) {
  if (!use.inActivation || args[0] == "include") return;
  if (state.exeLine != 0 && args[0] != "requireexe" && args[0] != "activated")
    state.Report(kAfterExe, "the activation ends at " + NameOfLine(state.exeLine) + ", where an EXE takes over");
  if (!state.undoReadsFile && use.inDeactivation)
    state.Report(kNotUndone, "the deactivation looks for included files in the install only, so " + Quoted(args[0]) +
                                 " is not taken back");
}

void CheckLine(CheckState& state, const std::string& line) {
  Args args;
  ParseDirective(line, args);
  if (args[0].empty()) return CheckPlainText(state.place, line);
  const Use use = UseOf(args[0]);
  if (!use.needed) return CheckUnknownName(state.place, args[0]);
  // A reader looks at the arguments that it needs, and at those that the editor offers besides.
  const std::size_t useful = args[0] == "version"
                                 ? std::numeric_limits<std::size_t>::max() - 1
                                 : std::max<std::size_t>(*use.needed, Directives[FindDirective(args[0])].ParamCount);
  state.lineIsCut = !CheckForm(state.place, line, args, *use.needed, useful);
  if (args.size() <= *use.needed) {
    state.Report(kTooFewArguments, Quoted(args[0]) + " needs " + std::to_string(*use.needed) + " arguments and has " +
                                       std::to_string(args.size() - 1) + ", so the line is passed over");
    return;
  }
  CheckPlaceOfAction(state, args, use);
  ActOnDirective(kDirectives, state, args);
}

void CheckFile(CheckState& state, const std::string& path) {
  state.openFiles.push_back(win::NativePath(path));
  win::LineReader file(path);
  const VersionTest outerVersion = std::exchange(state.version, {});
  const std::string outer = state.place.within;
  for (std::size_t number = 1; !file.AtEnd() && !state.IsDone(); ++number) {
    const std::string line = file.ReadLine();
    state.budget.Take(line);
    if (state.IsIncluded())
      state.place.within = outer + "in " + Quoted(win::FileNameOf(path)) + ", " + NameOfLine(number) + ": ";
    else
      state.place.line = number;
    if (number == 1 && !CheckEncoding(state.place, line)) break;
    double marked = 0;
    if (number > 1 || !ReadMarker(line, marked)) CheckLine(state, line);
  }
  if (state.install && state.version.first && !state.version.matched)
    state.version.first->Report(kDoesNotFit,
                                "the install has version " + Quoted(InstallVersion()) + ", so the mod is not listed");
  state.version = outerVersion;
  state.openFiles.pop_back();
}

void CheckWhole(CheckState& state) {
  state.place = {state.place.findings, 1, ""};
  if (!state.firstLines.contains(kName)) state.Report(kNoName, "there is no `dname`, so the list shows an empty row");
  state.place.line = state.activatedLine;
  if (state.activatedLine == 0) return;
  if (state.activeTestLine == 0)
    state.Report(kNoActiveTest,
                 "no `activatedfile` or its like below: the mod always counts as active and is never activated");
  state.activeTests.Check(state.undo, state.install);
  if (state.sessionLine == 0) return;
  state.place.line = state.sessionLine;
  state.Report(kPersistentSession, "the mod is persistent by " + NameOfLine(state.activatedLine) +
                                       ", so session defaults and race names are not set");
}

}  // namespace

bool CheckCurrentDefinition(const std::string& path, Findings& findings, InstallCheck* install) {
  CheckState state{{&findings, 1, ""}, install};
  state.readFiles.emplace(win::NativePath(path), 1);
  CheckFile(state, path);
  CheckEntries(state);
  if (state.budget.IsSpent())
    state.budget.Report(state.place);
  else
    CheckWhole(state);
  return !state.IsDone();
}

}  // namespace varnik
