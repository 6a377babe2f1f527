#include "diagnosis/check.h"

#include "definition/crashmarker.h"
#include "definition/directive.h"
#include "definition/includes.h"
#include "diagnosis/definitioncheck.h"
#include "diagnosis/installcheck.h"
#include "diagnosis/legacycheck.h"
#include "diagnosis/linecheck.h"
#include "diagnosis/modsmeet.h"
#include "modengine/catalogue.h"
#include "modengine/definitionreader.h"
#include "platform/system/files/lines.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "platform/system/text/wildcards.h"
#include "support/install.h"
#include "support/runstate.h"

#include <algorithm>

namespace varnik {

namespace {

using enum Problem;

// The mod as the catalogue would list it; nothing when it does not fit the selected install.
std::optional<ModEntry> EntryOf(const std::string& path, bool isLegacy) {
  ModEntry entry;
  entry.DefinitionFile = path;
  entry.Legacy = isLegacy;
  if (isLegacy) return entry;
  win::LineReader file(path);
  bool noActionYet = true;
  if (!ReadModDefinition(file, entry, noActionYet)) return std::nullopt;
  return entry;
}

// True while a run or, of a persistent mod, its activation has changed the selected install.
bool IsActive(const std::string& path, const std::optional<ModEntry>& entry) {
  const CrashMarker marker = ReadCrashMarker();
  if (win::IsSamePath(marker.definitionFile, path) && win::IsSamePath(marker.root, InstallRoot())) return true;
  return entry && entry->State == 1;
}

// What keeps a good definition out of the list of mods.
void CheckListing(const Place& place, const std::string& path, bool isLegacy) {
  const std::string name = win::FileNameOf(path);
  const std::string listed = FindModFile(name);
  if (!win::PathMatchSpec(name, kDefinitionPattern))
    place.Report(kNotListed, "the catalogue looks for names that end in `.bzm` only");
  else if (isLegacy && !ShowOldMods)
    place.Report(kNotListed, "the option to show older mods (`OldMods`) is off");
  else if (isLegacy && StandsInModsFolder(path))
    place.Report(kNotListed,
                 "an older definition is not listed when one of its name lies in the program's folder of mods");
  else if (!listed.empty() && win::IsSamePath(path, AppPath + "mods\\" + name) && !win::IsSamePath(path, listed))
    place.Report(kNotListed, "a file of the same name in the install comes first");
}

// Checks the file alone first, so that the readers only see a definition within the size limits.
void CheckBody(CheckReport& report, Findings& findings, const std::string& path, bool isLegacy) {
  const auto check = isLegacy ? CheckLegacyDefinition : CheckCurrentDefinition;
  Findings ofFileAlone = findings;
  const bool isWhole = check(path, ofFileAlone, nullptr);
  if (InstallRoot().empty() || !isWhole) {
    report.leftOut = InstallRoot().empty() ? "no install is selected: only the file itself was looked at"
                                           : "too much in one file to hold it against the install";
    findings = ofFileAlone;
    return;
  }
  const std::optional<ModEntry> entry = EntryOf(path, isLegacy);
  const bool isActive = IsActive(path, entry);
  if (isActive) report.leftOut = "the mod is active: what an activation would find was not looked at";
  InstallCheck install(isActive);
  const std::string name = win::FileNameOf(path);
  if (win::IsSamePath(path, InstallRoot() + name)) install.Twins({&findings, 1, ""}, name);
  check(path, findings, &install);
  if (entry && !CheckModsMeet(*entry, findings) && !isActive)
    report.leftOut = "too many mods, or too large ones, to compare this one with all of them";
}

bool CheckMarker(const Place& place, const std::string& line, double& version) {
  if (!CheckEncoding(place, line)) return false;
  if (!ReadMarker(line, version)) {
    place.Report(kNoMarker, line.starts_with("\xEF\xBB\xBF") ? "a byte-order mark stands before the marker `BZ2HALD5`"
                                                             : "line 1 is not the marker `BZ2HALD5`");
    return false;
  }
  const std::string marker = win::Trim(line);
  const std::string text =
      win::Trim(std::string_view(marker).substr(std::min(marker.find_first_of(" \t"), marker.size())));
  if (!text.empty() && text != "/x" && !text.starts_with("//"))
    place.Report(kMarkerText, Quoted(text) + " behind the version means nothing");
  if (version > kLastLegacyFormat && version != kCurrentFormat)
    place.Report(kUnknownVersion, "no mod of this version is listed; 5 is the current one");
  else if (RunFormatOf(version) == RunFormat::kNone)
    place.Report(kUnknownVersion, "a mod of this version is listed and not run; 5 is the current one");
  return true;
}

}  // namespace

std::optional<CheckReport> CheckDefinition(const std::string& path) {
  win::LineReader file(path);
  if (!file.IsOpen()) return std::nullopt;
  CheckReport report;
  Findings findings;
  const Place top{&findings, 1, ""};
  double version = 0;
  if (CheckMarker(top, file.ReadLine(), version)) {
    const bool isLegacy = version <= kLastLegacyFormat;
    CheckListing(top, path, isLegacy);
    CheckBody(report, findings, path, isLegacy);
  }
  report.findings = findings.Take();
  return report;
}

}  // namespace varnik
