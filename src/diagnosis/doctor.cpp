#include "diagnosis/doctor.h"

#include "definition/crashmarker.h"
#include "definition/directive.h"
#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "modengine/deactivation.h"
#include "modengine/listedmod.h"
#include "modengine/sessiondefaults.h"
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
          [marker] { DeactivateByMarker(marker.definitionFile, marker.root); }};
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

bool KeepCopy(const win::PathDifference& difference) {
  if (difference.kind != win::PathDifference::Kind::kChanged) return true;
  const std::optional<std::string> content = win::ReadWholeFile(difference.path);
  return content && win::WriteWholeFile(FreeKeptName(difference.path), *content);
}

}  // namespace

std::vector<Leftover> FindLeftovers() {
  LoadModList();
  std::vector<Leftover> leftovers;
  const CrashMarker marker = ReadCrashMarker();
  if (!marker.root.empty() || !marker.definitionFile.empty()) leftovers.push_back(Interrupted(marker));
  const win::Rehearsal rehearsal;
  if (!leftovers.empty() && leftovers[0].mend) leftovers[0].mend();
  // An active mod may have put files away that would count as left over otherwise.
  for (std::size_t row = 1; row < ModList.size(); ++row)
    if (ModList[row].State == 1) DeactivateListedMod(ModEntry(ModList[row]));
  AddLeftoverFiles(InstallRoot(), leftovers);
  // Values that belong to the marker of another install, or to one that waits for its definition, are not left over.
  const bool isAwaited = !leftovers.empty() && leftovers[0].item == kCrashSection && !leftovers[0].mend;
  if (const std::optional<Leftover> values = KeptValues(); values && !isAwaited) leftovers.push_back(*values);
  return leftovers;
}

bool Mend(const Leftover& leftover) {
  if (!leftover.mend) return false;
  std::vector<win::PathDifference> effects;
  {
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
