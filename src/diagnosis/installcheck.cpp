#include "diagnosis/installcheck.h"

#include "definition/bzonecfg.h"
#include "definition/includes.h"
#include "definition/recylist.h"
#include "diagnosis/filekind.h"
#include "modengine/sessiondefaults.h"
#include "platform/system/files/files.h"
#include "platform/system/files/findfile.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "platform/system/text/wildcards.h"
#include "support/install.h"
#include "support/modfileexists.h"

#include <algorithm>
#include <optional>

namespace varnik {

namespace {

using enum Problem;

std::string WithSlashes(std::string text) {
  std::replace(text.begin(), text.end(), '\\', '/');
  while (text.ends_with('/'))
    text.pop_back();
  return text;
}

// The name below the root as the disk spells it; nothing for one that is not there, or does not lie below.
std::optional<std::string> NameOnDisk(const std::string& name) {
  const std::optional<std::string> path = win::FindNativePath(InstallRoot() + name);
  const std::string root = win::NativePath(InstallRoot());
  if (!path || !path->starts_with(root)) return std::nullopt;
  return WithSlashes(path->substr(root.size()));
}

// The first line of the list that an undo would take for the mod's own; 0 for none.
std::size_t OwnLine(const std::string& list, const std::string& own) {
  win::LineReader file(list);
  for (std::size_t line = 1; !file.AtEnd(); ++line)
    if (file.ReadLine().starts_with(own)) return line;
  return 0;
}

bool EndsInOpenLine(const std::string& list) {
  const std::string text = win::ReadWholeFile(list).value_or("");
  return !text.empty() && text.back() != '\n' && text.back() != '\r';
}

}  // namespace

InstallCheck::InstallCheck(bool modIsActive) : modIsActive_(modIsActive), confines_(InstallRoot()) {}

bool InstallCheck::Has(const std::string& name) const { return FileExists(InstallRoot() + name); }

void InstallCheck::Requirement(const Place& place, const std::string& name) {
  if (!Has(name)) place.Report(kDoesNotFit, "the install has no " + Quoted(name) + ", so the mod is not listed");
}

void InstallCheck::Program(const Place& place, const std::string& name) const {
  if (Has(name) && !LooksLikeProgram(InstallRoot() + name))
    place.Report(kNotAProgram, Quoted(name) + " does not begin as an EXE or a script does: name the program itself");
}

std::string InstallCheck::Extra(const Place& place, const std::string& name) {
  std::string path = FindModFile(name);
  if (path.empty())
    place.Report(kMissingExtra, Quoted(name) + " is neither in the install nor in the program's folder of mods");
  return path;
}

void InstallCheck::Picture(const Place& place, const std::string& name) {
  if (const std::string path = Extra(place, name); !path.empty() && !LooksLikePicture(path))
    place.Report(kNotAPicture, Quoted(name) + " is no picture: name a file such as a BMP, PNG or JPEG");
}

void InstallCheck::Description(const Place& place, const std::string& name) {
  if (const std::string path = Extra(place, name); !path.empty() && IsFolder(path))
    place.Report(kWrongKind, Quoted(name) + " is a folder: name a text file in it");
}

void InstallCheck::Needed(const Place& place, const std::string& name) const {
  if (!modIsActive_ && !Has(name)) place.Report(kMissingFile, "the install has no " + Quoted(name));
}

void InstallCheck::Moved(const Place& place, const MovedName& moved) const {
  if (moved.use == NameUse::kMoves) return Needed(place, moved.name);
  if (modIsActive_) return;
  const bool isThere = Has(moved.name);
  const std::size_t folder = moved.name.find_last_of("\\/");
  if (moved.use == NameUse::kReplaces && !isThere)
    place.Report(kMissingExtra, "the install has no " + Quoted(moved.name) + " to be replaced");
  else if (moved.use == NameUse::kGives && isThere)
    place.Report(kTargetExists, Quoted(moved.name) + " is in the install already, so nothing gets that name");
  else if (moved.use == NameUse::kGives && folder != std::string::npos)
    Needed(place, moved.name.substr(0, folder));
}

void InstallCheck::Pack(const Place& place, const std::string& name) const {
  Needed(place, name);
  if (IsFolder(InstallRoot() + name))
    place.Report(kWrongKind, Quoted(name) + " is a folder, and `pak` adds a pack: `fold` adds a folder");
}

void InstallCheck::Folder(const Place& place, const std::string& name) const {
  Needed(place, name);
  if (Has(name) && !IsFolder(InstallRoot() + name))
    place.Report(kWrongKind, Quoted(name) + " is a file, and `fold` adds a folder: `pak` adds a pack");
}

void InstallCheck::ConfigurationBackup(const Place& place) {
  Twins(place, kGameConfig);
  if (!modIsActive_ && ConfigurationIsReplaced(InstallRoot()))
    place.Report(kTargetExists, "bzonevarnik.bak is in the install already: another mod is active, or was interrupted");
}

void InstallCheck::Spelling(const Place& place, const std::string& name) {
  if (name.empty() || win::HasWildcards(name)) return;
  const std::optional<std::string> onDisk = NameOnDisk(name);
  if (!onDisk) return;
  if (*onDisk != WithSlashes(name) && win::EqualNoCase(*onDisk, WithSlashes(name)))
    place.Report(kOtherCase, "the install spells " + Quoted(name) + " as " + Quoted(*onDisk));
  Twins(place, *onDisk);
}

InstallCheck::Names& InstallCheck::TwinsIn(const std::string& folder) {
  const auto [found, isNew] = twins_.try_emplace(folder);
  if (!isNew) return found->second;
  Names seen;
  win::FolderReader reader(InstallRoot() + folder);
  for (win::FoundEntry entry; reader.Next(entry);)
    if (std::string key = win::LowerCase(entry.name); !seen.insert(key).second) found->second.insert(std::move(key));
  return found->second;
}

void InstallCheck::Twins(const Place& place, const std::string& name) {
  for (std::size_t start = 0; start < name.size();) {
    const std::size_t end = std::min(name.find('/', start), name.size());
    const std::string part = name.substr(start, end - start);
    if (TwinsIn(name.substr(0, start)).erase(win::LowerCase(part)) != 0)
      place.Report(
          kTwinNames,
          "beside " + Quoted(part) +
              " lies another entry of that name in other capitals: which one is meant depends on the spelling");
    start = end + 1;
  }
}

void InstallCheck::IdFile(const Place& place, const std::string& name) const {
  const std::string folder = name.substr(0, std::min(name.find_last_of("\\/"), name.size()));
  if (!modIsActive_ && folder.size() < name.size() && !Has(folder))
    place.Report(kMissingFile, "the install has no folder " + Quoted(folder) + ", and `writeid` makes none");
  if (IsFolder(InstallRoot() + name))
    place.Report(kWrongKind, Quoted(name) + " is a folder, so no file of that name can be made: take another name");
  else if (!modIsActive_ && win::FileSize(InstallRoot() + name).value_or(0) > 0)
    place.Report(kUndoTakesMore,
                 Quoted(name) + " is there: the activation empties it, and the deactivation deletes it");
}

void InstallCheck::AddRecy(const Place& place, const Args& args) const {
  if (modIsActive_) return;
  const std::string list = args.size() > 3 ? args[3] : kRecyList;
  if (args.size() > 3 && !Has(kRecyList))
    place.Report(kNotUndone,
                 "without a RecyList.txt in the install, the deactivation leaves the line in " + Quoted(list));
  else if (!Has(list))
    place.Report(kNotUndone, Quoted(list) + " is not there: the deactivation leaves it behind as an empty file");
  else if (EndsInOpenLine(InstallRoot() + list))
    place.Report(kNotUndone,
                 "the last line of " + Quoted(list) + " has no end: the text is added to that line, and stays there");
  else if (const std::size_t line = OwnLine(InstallRoot() + list, args[1] + " "); line != 0)
    place.Report(kUndoTakesMore, NameOfLine(line) + " of " + Quoted(list) + " begins with " + Quoted(args[1] + " ") +
                                     ", so the deactivation takes it too");
}

void InstallCheck::SessionDefault(const Place& place, const std::string& key) const {
  const std::optional<std::string> present = PresentSessionDefault(key);
  if (!present)
    place.Report(kMissingExtra, "the install has no gameprefs.ini, so the value is not set");
  else if (present->empty() && !modIsActive_)
    place.Report(kNotUndone, "gameprefs.ini has no " + key + ", so the deactivation leaves the mod's one there");
}

void InstallCheck::RaceName(const Place& place, char letter) const {
  if (!HasRaceFile(letter))
    place.Report(kMissingExtra, std::string("the install has no RaceName_") + letter + ".txt, so the name is not set");
}

}  // namespace varnik
