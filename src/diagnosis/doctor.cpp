#include "diagnosis/doctor.h"

#include "definition/crashmarker.h"
#include "definition/directive.h"
#include "installs/installlist.h"
#include "journal/journal.h"
#include "modengine/applymod.h"
#include "modengine/catalogue.h"
#include "modengine/sessiondefaults.h"
#include "platform/system/files/files.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/rehearsal.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/paths/paths.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"
#include "support/settings.h"

#include <algorithm>
#include <optional>

namespace varnik {

namespace {

Leftover Interrupted(const CrashMarker& marker) {
  const std::string run =
      marker.definitionFile + " is active in " + marker.root + " without the game: a run was interrupted.";
  if (marker.root.empty() || marker.definitionFile.empty())
    return {kCrashSection, "The note of an interrupted run is incomplete: it names no definition or no install.",
            "The note is removed.", [] { RemoveCrashMarker(); }};
  if (!win::IsSamePath(marker.root, InstallRoot()))
    return {kCrashSection, run, "`varnik-cli --root DIR doctor --fix` with that install.", {}};
  if (FindJournal(marker.root, marker.definitionFile))
    return {kCrashSection, run, "The mod is deactivated, and everything is put back as it was.",
            [marker] { RevertMod(marker.definitionFile, marker.root, true); }, true};
  double version = 0;
  const bool isDefinition = FileExists(marker.definitionFile) &&
                            ReadMarker(win::LineReader(marker.definitionFile).ReadLine(), version) &&
                            (version <= kLastLegacyFormat || version == kCurrentFormat);
  if (!isDefinition)
    return {kCrashSection,
            run + " Its definition is gone, or is none any more, and nothing else tells what it renamed.",
            "Put the definition back, then ask again. The next start of Varnik removes this note as it is.",
            {}};
  return {kCrashSection, run, "The mod is deactivated, and the player's own values are put back.",
          [marker] { RevertMod(marker.definitionFile, marker.root, true); }};
}

bool OtherInstallIsListed() {
  const win::SettingsSnapshot stored = StoredSettings();
  std::string path;
  for (std::size_t row = 0; !(path = StoredInstallPath(row, stored)).empty(); ++row)
    if (!win::IsSamePath(path, InstallRoot()) && IsBZ2Install(path)) return true;
  return false;
}

// The file that a value of section Backup was read from.
std::string PlayerFileOf(const std::string& key) {
  constexpr std::string_view kRaceName = "Racename";
  const bool isRaceName = key.starts_with(kRaceName) && key.size() > kRaceName.size();
  return FindInSearchDirs(isRaceName ? std::string("RaceName_") + key[kRaceName.size()] + ".txt" : "gameprefs.ini", 0);
}

std::optional<Leftover> KeptValues() {
  bool isAny = false;
  bool allHaveFiles = true;
  for (const win::StoredSetting& setting : win::AllSettings(kApplication)) {
    if (setting.section != kBackupSection) continue;
    isAny = true;
    allHaveFiles = allHaveFiles && !PlayerFileOf(setting.key).empty();
  }
  if (!isAny) return std::nullopt;
  Leftover leftover{
      kBackupSection, "Session defaults or race names of the player were kept for a mod and never put back.",
      "They are put back into gameprefs.ini and the RaceName files of this install.", [] { RestorePlayersValues(); }};
  if (!allHaveFiles || OtherInstallIsListed()) {
    leftover.remedy =
        "It is not known which install they are from: `varnik-cli settings --all` shows them. The next "
        "start of Varnik removes them.";
    leftover.mend = {};
  }
  return leftover;
}

// A file whose content changes. What is only moved needs no copy.
bool KeepCopy(const win::PathDifference& difference) {
  if (difference.kind != win::PathDifference::Kind::kChanged || !win::FileSize(difference.path)) return true;
  const std::optional<std::string> content = win::ReadWholeFile(difference.path);
  return content && win::WriteWholeFile(FreeKeptName(difference.path), *content);
}

// What a journal of this install still tells of. A persistent mod that is active keeps its own.
std::optional<Leftover> Unfinished(const Journal& journal) {
  const bool isActive = journal.phase == JournalPhase::kActive;
  if (isActive && FileExists(journal.definitionFile)) return std::nullopt;
  const std::string mod = journal.definitionFile;
  const std::string meaning = isActive ? mod + " is active, and its definition has gone."
                              : journal.phase == JournalPhase::kLeft
                                  ? "A start has undone " + mod + ", and left what it does not put back."
                                  : "An activation or deactivation of " + mod + " was interrupted.";
  return Leftover{win::FileNameOf(journal.file), meaning, "Everything is put back as it was before the mod.",
                  [journal] { RevertMod(journal.definitionFile, InstallRoot(), true); }, true};
}

void AddJournals(std::vector<Leftover>& leftovers) {
  const CrashMarker marker = ReadCrashMarker();
  std::string unread;
  const std::vector<Journal> journals = ReadJournals(&unread);
  if (!unread.empty())
    leftovers.push_back({win::FileNameOf(unread),
                         unread + " cannot be read: what it tells of is not known.",
                         "Mend the disk or the permissions of the file, and ask again.",
                         {}});
  for (const Journal& journal : journals) {
    const bool isMarked = !marker.root.empty() && win::IsSamePath(marker.definitionFile, journal.definitionFile);
    if (isMarked || !IsAbout(journal, InstallRoot())) continue;
    if (std::optional<Leftover> leftover = Unfinished(journal)) leftovers.push_back(*std::move(leftover));
  }
}

}  // namespace

std::vector<Leftover> FindLeftovers() {
  LoadModList();
  std::vector<Leftover> leftovers;
  const CrashMarker marker = ReadCrashMarker();
  if (!marker.root.empty() || !marker.definitionFile.empty()) leftovers.push_back(Interrupted(marker));
  AddJournals(leftovers);
  const win::Rehearsal rehearsal;
  for (const Leftover& leftover : std::vector<Leftover>(leftovers))
    if (leftover.mend) leftover.mend();
  // An active mod may have put files away that would count as left over otherwise.
  for (std::size_t row = 1; row < ModList.size(); ++row)
    if (ModList[row].State == 1) RevertMod(std::string(ModList[row].DefinitionFile), InstallRoot(), true);
  AddLeftoverFiles(InstallRoot(), leftovers);
  // Values that belong to the marker of another install, or to one that waits for its definition, are not left over.
  const bool isAwaited = !leftovers.empty() && leftovers[0].item == kCrashSection && !leftovers[0].mend;
  if (const std::optional<Leftover> values = KeptValues(); values && !isAwaited) leftovers.push_back(*values);
  return leftovers;
}

bool Mend(const Leftover& leftover) {
  if (!leftover.mend) return false;
  std::vector<win::PathDifference> effects;
  if (!leftover.isExact) {
    win::Rehearsal rehearsal;
    leftover.mend();
    effects = rehearsal.Differences(InstallRoot());
  }
  if (!std::all_of(effects.begin(), effects.end(), KeepCopy)) return false;
  leftover.mend();
  const std::vector<Leftover> left = FindLeftovers();
  return std::none_of(left.begin(), left.end(), [&](const Leftover& other) { return other.item == leftover.item; });
}

}  // namespace varnik
