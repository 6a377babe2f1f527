#include "modengine/activation.h"

#include "definition/bzonecfg.h"
#include "definition/crashmarker.h"
#include "definition/currentline.h"
#include "definition/includes.h"
#include "definition/passdirective.h"
#include "installs/installlist.h"
#include "modengine/sessiondefaults.h"
#include "platform/system/files/files.h"
#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "platform/system/text/text.h"
#include "platform/system/text/wildcards.h"
#include "support/modfileexists.h"

namespace varnik {

namespace {

std::array<std::string, 26> raceNames;

// One file of the pass.
struct Walk {
  ActivationWalk& state;
  const std::string& root;
  ReadBounds& bounds;
  bool goOn = true;

  std::string Below(const std::string& name) const { return root + name; }
};

bool ActivateFile(win::LineReader& file, Walk walk);

void Include(Walk& walk, const Args& args) {
  const std::string path = FindModFile(args[1]);
  if (path.empty()) return;
  const FurtherFile further(walk.bounds);
  if (!further.IsAllowed()) return;
  const bool persistent = walk.state.persistent;
  win::LineReader file(path);
  walk.goOn = ActivateFile(file, walk);
  walk.state.persistent = persistent;
}

void RequireExe(Walk& walk, const Args& args) {
  if (!walk.state.noActionYet || !FileExists(walk.Below(args[1]))) return;
  walk.state.noActionYet = false;
  walk.goOn = false;
  win::ShellExecute(walk.Below(args[1]));
}

// Reading the attributes and storing them back changes none of them: a read-only file stays one.
void KeepAttributes(const std::string& path) {
  if (const auto attributes = win::GetAttributes(path)) win::SetAttributes(path, *attributes);
}

void Rename(Walk& walk, const Args& args) {
  walk.state.noActionYet = false;
  KeepAttributes(walk.Below(args[1]));
  win::RenameFile(walk.Below(args[1]), walk.Below(args[2]));
}

void Replace(Walk& walk, const Args& args) {
  walk.state.noActionYet = false;
  KeepAttributes(walk.Below(args[1]));
  KeepAttributes(walk.Below(args[2]));
  win::RenameFile(walk.Below(args[1]), walk.Below(args[3]));
  win::DoEvents();
  win::RenameFile(walk.Below(args[2]), walk.Below(args[1]));
}

void Pak(Walk& walk, const Args& args) {
  GeneratePackEntry(walk.root, args[1].ends_with(".pak") ? args[1] : args[1] + ".pak");
  walk.state.noActionYet = false;
}

void Fold(Walk& walk, const Args& args) {
  GenerateFolderEntry(walk.root, args[1]);
  walk.state.noActionYet = false;
}

void SetFirst(std::string& field, const std::string& value) {
  if (field.empty()) field = value;
}

void DefaultName(Walk& walk, const Args& args) {
  SetFirst(walk.state.sessionName, args[1]);
}
void DefaultPassword(Walk& walk, const Args& args) {
  SetFirst(walk.state.password, args[1]);
}
void DefaultMessage(Walk& walk, const Args& args) {
  SetFirst(walk.state.message, args[1]);
}

void RaceName(Walk&, const Args& args) {
  const std::string letter = win::UpperCase(args[1].substr(0, 1));
  if (letter >= "A" && letter <= "Z") SetFirst(raceNames[letter[0] - 'A'], args[2]);
}

void Activated(Walk& walk, const Args&) {
  if (!walk.state.noActionYet) return;
  walk.state.persistent = true;
  walk.state.noActionYet = false;
}

void WriteId(Walk& walk, const Args& args) {
  if (!win::HasWildcards(args[1])) win::LineWriter(walk.Below(args[1]), win::WriteMode::kOutput).Close();
}

void AddRecy(Walk& walk, const Args& args) {
  const std::string name = args.size() > 3 ? args[3] : "RecyList.txt";
  if (!win::HasWildcards(name))
    win::LineWriter(walk.Below(name), win::WriteMode::kAppend).WriteLine(args[1] + " " + args[2]);
}

constexpr PassDirective<Walk> kDirectives[] = {
    {"include", 1, Include},
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
    {"activated", 0, Activated},  // works only above the first action, and is itself one
    {"writeid", 1, WriteId},
    {"addrecy", 2, AddRecy},
};

bool ActivateFile(win::LineReader& file, Walk walk) {
  Args args;
  while (walk.goOn && !file.AtEnd()) {
    win::DoEvents();
    ParseDirective(file.ReadLine(), args);
    const AtLine line(file);
    ActOnDirective(kDirectives, walk, args);
  }
  return walk.goOn;
}

// A persistent mod has no marker, since it stays in force across starts, and leaves the player's own files alone.
void FinishRunOnlyMod(const ActivationWalk& walk, const CrashMarker& marker) {
  if (IsVersion13()) ApplyPlayersValues(walk);
  WriteCrashMarker(marker);
}

}  // namespace

std::vector<DirectiveForm> ActivationDirectives() {
  return FormsOf(kDirectives);
}

const std::array<std::string, 26>& RaceNames = raceNames;

bool ActivateMod(const std::string& definitionFile) {
  win::DoEvents();
  raceNames.fill({});
  const std::string root = InstallRoot();
  win::LineReader file(definitionFile);
  if (root.empty() || !file.IsOpen()) return false;
  win::DoEvents();
  ActivationWalk walk;
  ReadBounds bounds;
  if (!ActivateFile(file, {walk, root, bounds})) {
    DropConfiguration(root);
    return false;
  }
  PutConfigurationInForce(root, IsVersion13());
  if (!walk.persistent) FinishRunOnlyMod(walk, {root, definitionFile});
  return true;
}

}  // namespace varnik
