#include "modengine/definitionreader.h"

#include "definition/bzonecfg.h"
#include "definition/includes.h"
#include "definition/recylist.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/text/text.h"
#include "support/install.h"
#include "support/modfileexists.h"

#include <algorithm>
#include <optional>

namespace varnik {

namespace {

enum class Verdict {
  kFits,
  kDoesNotFit,
  kAbandoned,  // a file could not be read: the mod stays with what was read by then
};

struct Pass {
  ModEntry& entry;
  bool& noActionYet;
  const std::string root;
  const std::string version;  // of the install
  ReadBounds bounds;
};

// One file of the pass.
struct Level {
  Pass& pass;
  bool versionSeen = false;
  bool versionMatched = false;
  Verdict verdict = Verdict::kFits;

  std::string Below(const std::string& name) const { return pass.root + name; }
  bool Has(const std::string& name, bool isFolder) const { return FileExists(Below(name) + (isFolder ? "\\" : "")); }
};

Verdict ReadLevel(win::LineReader& file, Pass& pass);

void Include(Level& level, const Args& args) {
  const std::string path = FindModFile(args[1]);
  if (path.empty()) return;
  const IncludeScope scope(level.pass.bounds);
  if (!scope.IsAllowed()) return;
  win::LineReader file(path);
  level.verdict = file.IsOpen() ? ReadLevel(file, level.pass) : Verdict::kAbandoned;
}

// The first text given counts.
template <std::string ModEntry::*kField>
void SetText(Level& level, const Args& args) {
  std::string& field = level.pass.entry.*kField;
  if (win::Trim(field).empty()) field = args[1];
}

void DescriptionFile(Level& level, const Args& args) {
  std::string& description = level.pass.entry.Description;
  if (!win::Trim(description).empty()) return;
  const std::string path = FindModFile(args[1]);
  if (path.empty()) return;
  const IncludeScope scope(level.pass.bounds);
  if (!scope.IsAllowed()) return;
  std::optional<std::string> text = win::ReadWholeFile(path);
  if (text)
    description = std::move(*text);
  else
    level.verdict = Verdict::kAbandoned;
}

void Version(Level& level, const Args& args) {
  level.versionSeen = true;
  if (NamesVersion(args, level.pass.version)) level.versionMatched = true;
}

template <bool kFolder>
void RequirePath(Level& level, const Args& args) {
  if (!level.Has(args[1], kFolder)) level.verdict = Verdict::kDoesNotFit;
}

void RequireExe(Level& level, const Args& args) {
  if (!level.pass.noActionYet) return;
  RequirePath<false>(level, args);
  if (level.verdict != Verdict::kFits) return;
  level.pass.noActionYet = false;
  level.pass.entry.Standard = false;
  level.pass.entry.ExeDeactivates = args.size() > 2;
}

// True for a mod that is carried out by this program; any of its actions then ends the time before the first one.
bool BeginAction(Level& level) {
  if (!level.pass.entry.Standard) return false;
  level.pass.noActionYet = false;
  return true;
}

void Rename(Level& level, const Args& args) {
  if (BeginAction(level)) level.pass.entry.Renames.push_back({args[1], args[2], ""});
}

void Replace(Level& level, const Args& args) {
  if (!BeginAction(level)) return;
  level.pass.entry.Renames.push_back({args[1], args[3], ""});
  level.pass.entry.Renames.push_back({args[2], args[1], ""});
  // A mod that brings its own game configuration owns the folders named in it.
  if (args[1] != kGameConfig || !FileExists(level.Below(args[2]))) return;
  const IncludeScope scope(level.pass.bounds);
  if (!scope.IsAllowed()) return;
  win::LineReader configuration(level.Below(args[2]));
  if (!configuration.IsOpen()) level.verdict = Verdict::kAbandoned;
  while (!configuration.AtEnd())
    if (const auto folder = FolderOfConfigurationLine(configuration.ReadLine()))
      level.pass.entry.Folders.push_back(*folder);
}

void Pak(Level& level, const Args&) { BeginAction(level); }

void Fold(Level& level, const Args& args) {
  if (BeginAction(level)) level.pass.entry.Folders.push_back(args[1]);
}

void Activated(Level& level, const Args&) {
  if (!level.pass.noActionYet || level.pass.entry.State != 0) return;
  level.pass.entry.State = 1;
  level.pass.noActionYet = false;
}

void CountAsInactive(Level& level) {
  if (level.pass.entry.State == 1) level.pass.entry.State = -1;
}

template <bool kFolder>
void ActivatedPath(Level& level, const Args& args) {
  if (!level.Has(args[1], kFolder)) CountAsInactive(level);
}

// Any line of another mod keeps this one active; a list without such a line, an empty one too, makes it inactive.
// Definitions rely on this sense of the test.
void ActivatedRecy(Level& level, const Args& args) {
  if (!FileExists(level.Below(kRecyList))) return;
  const std::string path = level.Below(args.size() > 2 ? args[2] : kRecyList);
  if (!FileExists(path)) return;
  const IncludeScope scope(level.pass.bounds);
  if (!scope.IsAllowed()) return;
  win::LineReader file(path);
  if (!file.IsOpen()) level.verdict = Verdict::kAbandoned;
  const std::string own = args[1] + " ";
  bool foreignLine = false;
  while (!file.AtEnd())
    if (!file.ReadLine().starts_with(own)) foreignLine = true;
  if (file.IsOpen() && !foreignLine) CountAsInactive(level);
}

constexpr PassDirective<Level> kDirectives[] = {
    {"include", 1, Include},
    {"dname", 1, SetText<&ModEntry::Name>},
    {"description", 1, SetText<&ModEntry::Description>},
    {"descriptionf", 1, DescriptionFile},
    {"image", 1, SetText<&ModEntry::Image>},
    {"splash", 1, SetText<&ModEntry::Splash>},
    {"version", 1, Version},
    {"requirefile", 1, RequirePath<false>},
    {"requirefolder", 1, RequirePath<true>},
    {"requireexe", 1, RequireExe},
    {"rename", 2, Rename},
    {"renameex", 3, Replace},
    {"replace", 3, Replace},
    {"pak", 1, Pak},
    {"fold", 1, Fold},
    {"activated", 0, Activated},
    {"activatedfile", 1, ActivatedPath<false>},
    {"activatedfold", 1, ActivatedPath<true>},
    {"activatedrecy", 1, ActivatedRecy},
};

Verdict ReadLevel(win::LineReader& file, Pass& pass) {
  Level level{pass};
  Args args;
  while (level.verdict == Verdict::kFits && !file.AtEnd()) {
    ParseDirective(file.ReadLine(), args);
    ActOnDirective(kDirectives, level, args);
  }
  const bool versionFits = !level.versionSeen || level.versionMatched;
  return level.verdict == Verdict::kFits && !versionFits ? Verdict::kDoesNotFit : level.verdict;
}

}  // namespace

std::vector<DirectiveForm> CatalogueDirectives() { return FormsOf(kDirectives); }

bool NamesVersion(const Args& args, const std::string& version) {
  const std::string wanted = win::Trim(version);
  return std::any_of(args.begin() + 1, args.end(),
                     [&](const std::string& arg) { return win::EqualNoCase(arg, wanted); });
}

bool ReadModDefinition(win::LineReader& file, ModEntry& entry, bool& noActionYet) {
  Pass pass{entry, noActionYet, InstallRoot(), InstallVersion(), {}};
  return ReadLevel(file, pass) != Verdict::kDoesNotFit;
}

}  // namespace varnik
