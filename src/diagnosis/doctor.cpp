#include "diagnosis/doctor.h"

#include "definition/crashmarker.h"
#include "definition/directive.h"
#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "modengine/deactivation.h"
#include "modengine/listedmod.h"
#include "modengine/sessiondefaults.h"
#include "platform/system/files/files.h"
#include "platform/system/files/rehearsal.h"
#include "platform/system/paths/paths.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"
#include "support/settings.h"

#include <algorithm>
#include <optional>

namespace varnik {

namespace {

bool IsSameFolder(const std::string& a, const std::string& b) {
  return win::NativePath(win::WithSeparator(a)) == win::NativePath(win::WithSeparator(b));
}

bool CanBeDeactivated(const std::string& definitionFile) {
  double version = 0;
  if (!FileExists(definitionFile) || !ReadMarker(win::LineReader(definitionFile).ReadLine(), version)) return false;
  return version <= kLastLegacyFormat || version == kCurrentFormat;
}

Leftover Interrupted(const CrashMarker& marker) {
  const std::string run =
      marker.definitionFile + " is in force in " + marker.root + " without the game: a run was interrupted.";
  if (marker.root.empty() || marker.definitionFile.empty())
    return {kCrashSection, "The note of an interrupted run is incomplete: it names no definition or no install.",
            "The note is removed.", RemoveCrashMarker};
  if (!IsSameFolder(marker.root, InstallRoot()))
    return {kCrashSection, run, "`varnik-cli --root DIR doctor --fix` with that install.", {}};
  if (!CanBeDeactivated(marker.definitionFile))
    return {kCrashSection,
            run + " Its definition is gone, or is none any more, and nothing else tells what it renamed.",
            "Put the definition back, then ask again. The next start of Varnik removes this note as it is.",
            {}};
  return {kCrashSection, run, "The mod is taken out of force, with the player's own values put back.",
          [marker] { DeactivateByMarker(marker.definitionFile, marker.root); }};
}

// A mod that is in force may have put files away that would count as left over otherwise.
void TakeActiveModsOut() {
  for (std::size_t row = 1; row < ModList.size(); ++row)
    if (ModList[row].State == 1) DeactivateListedMod(ModEntry(ModList[row]));
}

bool OtherInstallIsListed() {
  for (std::size_t row = 0; !StoredInstallPath(row).empty(); ++row)
    if (const std::string path = StoredInstallPath(row); !IsSameFolder(path, InstallRoot()) && IsBZ2Install(path))
      return true;
  return false;
}

// The file that a value of section Backup was read from.
std::string PlayerFileOf(const std::string& key) {
  constexpr std::string_view kRaceName = "Racename";
  const bool isRaceName = key.starts_with(kRaceName) && key.size() > kRaceName.size();
  return FindInSearchDirs(isRaceName ? std::string("RaceName_") + key[kRaceName.size()] + ".txt" : "gameprefs.ini", 0);
}

void RestorePlayersValues() {
  RestoreSessionDefaults();
  RestoreRaceNames();
  Forget(kBackupSection);
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
  Leftover leftover{kBackupSection,
                  "Session defaults or race names of the player were kept for a mod and never put back.",
                  "They are put back into gameprefs.ini and the RaceName files of this install.", RestorePlayersValues};
  if (!allHaveFiles || OtherInstallIsListed()) {
    leftover.remedy =
        "It is not known which install they are from: `varnik-cli settings --all` shows them. The next "
        "start of Varnik removes them.";
    leftover.mend = {};
  }
  return leftover;
}

std::vector<std::string> FilesThatChange(const std::function<void()>& mend) {
  const win::Rehearsal rehearsal;
  mend();
  std::vector<std::string> files;
  for (const auto& [path, kind] : rehearsal.Differences(InstallRoot()))
    if (kind == win::PathDifference::Kind::kChanged) files.push_back(path);
  return files;
}

bool KeepCopies(const std::vector<std::string>& files) {
  return std::all_of(files.begin(), files.end(), [](const std::string& file) {
    const std::optional<std::string> content = win::ReadWholeFile(file);
    return content && win::WriteWholeFile(FreeKeptName(file), *content);
  });
}

}  // namespace

std::vector<Leftover> FindLeftovers() {
  LoadModList();
  std::vector<Leftover> leftovers;
  const CrashMarker marker = ReadCrashMarker();
  if (!marker.root.empty() || !marker.definitionFile.empty()) leftovers.push_back(Interrupted(marker));
  const win::Rehearsal rehearsal;
  if (!leftovers.empty() && leftovers[0].mend) leftovers[0].mend();
  TakeActiveModsOut();
  AddLeftoverFiles(InstallRoot(), leftovers);
  // Of another install's marker, or of one that waits for its definition, the values are not left over.
  const bool isAwaited = !leftovers.empty() && leftovers[0].item == kCrashSection && !leftovers[0].mend;
  if (const std::optional<Leftover> values = KeptValues(); values && !isAwaited) leftovers.push_back(*values);
  return leftovers;
}

bool Mend(const Leftover& leftover) {
  if (!leftover.mend || !KeepCopies(FilesThatChange(leftover.mend))) return false;
  leftover.mend();
  const std::vector<Leftover> left = FindLeftovers();
  return std::none_of(left.begin(), left.end(), [&](const Leftover& other) { return other.item == leftover.item; });
}

}  // namespace varnik
