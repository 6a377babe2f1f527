#include "diagnosis/doctor.h"

#include "definition/crashmarker.h"
#include "definition/directive.h"
#include "diagnosis/leavings.h"
#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "modengine/deactivation.h"
#include "modengine/force.h"
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

Leaving Interrupted(const CrashMarker& marker) {
  const std::string run =
      marker.definitionFile + " is in force in " + marker.root + " without the game: a run was interrupted.";
  if (marker.root.empty() || marker.definitionFile.empty())
    return {kCrashSection, "The note of an interrupted run is incomplete: it names no definition or no install.",
            "The note is removed.", [] { RemoveCrashMarker(); }};
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
    if (ModList[row].State == 1) TakeOutOfForce(ModEntry(ModList[row]));
}

bool OtherInstallIsListed() {
  const win::SettingsSnapshot stored = StoredSettings();
  std::string path;
  for (std::size_t row = 0; !(path = StoredInstallPath(row, stored)).empty(); ++row)
    if (!IsSameFolder(path, InstallRoot()) && IsBZ2Install(path)) return true;
  return false;
}

// The file that a value of section Backup was read from.
std::string PlayerFileOf(const std::string& key) {
  constexpr std::string_view kRaceName = "Racename";
  const bool isRaceName = key.starts_with(kRaceName) && key.size() > kRaceName.size();
  return FindInSearchDirs(isRaceName ? std::string("RaceName_") + key[kRaceName.size()] + ".txt" : "gameprefs.ini", 0);
}

std::optional<Leaving> KeptValues() {
  bool isAny = false;
  bool allHaveFiles = true;
  for (const win::StoredSetting& setting : win::AllSettings(kApplication)) {
    if (setting.section != kBackupSection) continue;
    isAny = true;
    allHaveFiles = allHaveFiles && !PlayerFileOf(setting.key).empty();
  }
  if (!isAny) return std::nullopt;
  Leaving leaving{
      kBackupSection, "Session defaults or race names of the player were kept for a mod and never put back.",
      "They are put back into gameprefs.ini and the RaceName files of this install.", [] { RestorePlayersValues(); }};
  if (!allHaveFiles || OtherInstallIsListed()) {
    leaving.remedy =
        "It is not known which install they are from: `varnik-cli settings --all` shows them. The next "
        "start of Varnik removes them.";
    leaving.mend = {};
  }
  return leaving;
}

std::string FreeKeptName(const std::string& path) {
  for (int number = 1;; ++number)
    if (const std::string name = path + ".kept-" + std::to_string(number); !FileExists(name)) return name;
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

void SetAside(const std::string& path) {
  win::RenameFile(path, FreeKeptName(path));
}

std::vector<Leaving> FindLeavings() {
  LoadModList();
  std::vector<Leaving> leavings;
  const CrashMarker marker = ReadCrashMarker();
  if (!marker.root.empty() || !marker.definitionFile.empty()) leavings.push_back(Interrupted(marker));
  const win::Rehearsal rehearsal;
  if (!leavings.empty() && leavings[0].mend) leavings[0].mend();
  TakeActiveModsOut();
  AddLeftFiles(InstallRoot(), leavings);
  // Of another install's marker, or of one that waits for its definition, the values are not left over.
  const bool isAwaited = !leavings.empty() && leavings[0].item == kCrashSection && !leavings[0].mend;
  if (const std::optional<Leaving> values = KeptValues(); values && !isAwaited) leavings.push_back(*values);
  return leavings;
}

bool Mend(const Leaving& leaving) {
  if (!leaving.mend || !KeepCopies(FilesThatChange(leaving.mend))) return false;
  leaving.mend();
  const std::vector<Leaving> left = FindLeavings();
  return std::none_of(left.begin(), left.end(), [&](const Leaving& other) { return other.item == leaving.item; });
}

}  // namespace varnik
