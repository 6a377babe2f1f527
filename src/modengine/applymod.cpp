#include "modengine/applymod.h"

#include "definition/bzonecfg.h"
#include "definition/crashmarker.h"
#include "definition/directive.h"
#include "journal/journaledfilesystem.h"
#include "journal/restore.h"
#include "legacy/legacydeactivation.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/rehearsedmod.h"
#include "modengine/runguard.h"
#include "modengine/sessiondefaults.h"
#include "platform/system/files/files.h"
#include "platform/system/files/lines.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/workingfolder.h"
#include "platform/system/text/text.h"
#include "support/install.h"
#include "support/rememberedsearches.h"
#include "support/settings.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

namespace varnik {

namespace {

void Append(Report& report, const Report& more) { report.insert(report.end(), more.begin(), more.end()); }

// Of an activation that has begun, as the rehearsal foretold or not.
Report Unforetold(const Report& failed, const Report& foretold) {
  Report unforetold;
  for (const ReportLine& problem : failed)
    if (std::ranges::find(foretold, TextOf(problem), TextOf) == foretold.end()) unforetold.push_back(problem);
  return unforetold;
}

ReportLine NotWrittenDown() { return {"", 0, "write down how the install is", win::ExplainError(errno)}; }

// Settings that cannot be read may name it.
bool MarkerNames(const Journal& journal) {
  const win::SettingsSnapshot stored = StoredSettings();
  if (!stored.IsReadable()) return true;
  const CrashMarker marker = ReadCrashMarker(stored);
  return !marker.root.empty() && win::IsSamePath(marker.definitionFile, journal.definitionFile) &&
         IsAbout(journal, marker.root);
}

bool MarkerNames(const std::string& definitionFile, const std::string& root) {
  const CrashMarker marker = ReadCrashMarker();
  return win::IsSamePath(marker.definitionFile, definitionFile) && win::IsSamePath(marker.root, root);
}

// The file of the game's preferences, when the mod sets session defaults.
std::string PreferencesOf(const Journal& journal) {
  constexpr std::string_view kPreferences = "gameprefs.ini";
  for (const JournalEntry& entry : journal.entries)
    if (entry.copy && win::EqualNoCase(win::FileNameOf(entry.path), kPreferences))
      return entry.path.starts_with('/') ? entry.path : win::WithSeparator(journal.root) + entry.path;
  return "";
}

// Puts back what the journal tells of, which goes once that is on the disk, unless something else has `failed` already.
Report Finish(const Journal& journal, RestoreScope scope, Report failed = {}, Report* left = nullptr) {
  if (!win::GetAttributes(journal.root))
    return {{"", 0, "put back what changed in " + journal.root, "it is not there"}};
  const std::string preferences = journal.session.empty() ? "" : PreferencesOf(journal);
  RestoreResult result = Restore(journal, scope);
  if (scope == RestoreScope::kEverything && !preferences.empty() &&
      !PutBackSessionDefaults(journal.session, preferences))
    failed.push_back({"", 0, "put back the session defaults", win::ExplainError(errno)});
  Append(failed, result.failed);
  const bool isKept = !failed.empty() || !result.left.empty();
  if (!isKept && (!win::SyncFileSystemOf(journal.root) || !RemoveJournal(journal)))
    failed.push_back({"", 0, "finish the journal", win::ExplainError(errno)});
  Append(failed, result.lost);
  if (left) *left = result.left;
  return failed;
}

bool StoreAs(Journal& journal, JournalPhase phase) {
  journal.phase = phase;
  return WriteJournal(journal);
}

// The journal of a persistent mod stays until that is deactivated; so does that of a mod whose EXE has taken over,
// unless nothing was changed. A mod that was active already goes on with the journal it has.
void KeepJournal(Journal& journal, const std::optional<Journal>& earlier, ApplyResult& result) {
  if (journal.entries.empty()) return;
  const bool isUnchanged = !result.active && IsAsBefore(journal);
  win::SyncFileSystemOf(journal.root);
  Journal kept = earlier ? Joined(*earlier, journal) : journal;
  if (!isUnchanged && !StoreAs(kept, JournalPhase::kActive))
    result.failed.push_back(NotWrittenDown());
  else if (isUnchanged || earlier)
    RemoveJournal(journal);
}

enum class Format { kNone, kLegacy, kCurrent };

Format FormatOf(const std::string& definitionFile) {
  double version = 0;
  if (!ReadMarker(win::LineReader(definitionFile).ReadLine(), version)) return Format::kNone;
  if (version <= kLastLegacyFormat) return Format::kLegacy;
  return version == kCurrentFormat ? Format::kCurrent : Format::kNone;
}

// By the definition alone. False when an EXE took over.
bool UndoByDefinition(Format format, const std::string& definitionFile, const std::string& root,
                      const std::optional<Journal>& journal, bool& persistent) {
  std::optional<JournaledFileSystem> noted;
  std::optional<win::ScopedFileSystem> onlyNoted;
  if (journal) onlyNoted.emplace(noted.emplace(win::CurrentFileSystem(), *journal));
  if (format == Format::kCurrent) return UndoLines(definitionFile, root, persistent);
  UndoLegacyLines(definitionFile, root);
  return true;
}

bool End(bool isLegacy, const std::string& root, bool persistent) {
  return isLegacy ? EndLegacyDeactivation(root) : EndDeactivation(root, persistent);
}

}  // namespace

bool ApplyResult::IsAsPromised() const {
  const auto changesTheInstall = [](const ActivationStep& step) {
    return step.works && step.step != "store" && step.step != "forget" && !win::IsAbsolutePath(step.target);
  };
  return active && failed.empty() && (foretold.empty() || std::ranges::any_of(steps, changesTheInstall));
}

namespace {

// What an earlier activation left half done in this install. Empty when there is nothing any more.
Report FinishEarlier(const std::string& root) {
  const CrashMarker marker = ReadCrashMarker();
  if (!marker.root.empty() && win::IsSamePath(marker.root, root)) {
    const RevertResult earlier = RevertMod(marker.definitionFile, marker.root, true);
    if (!earlier.failed.empty()) return earlier.failed;
  }
  int count = 0;
  const Report failed = FinishInterrupted(root, true, count);
  std::string unread;
  const std::vector<Journal> journals = ReadJournals(&unread);
  const bool isFinished = unread.empty() && std::ranges::none_of(journals, [&root](const Journal& journal) {
                            return journal.phase != JournalPhase::kActive && IsAbout(journal, root);
                          });
  return isFinished ? Report() : failed;
}

// A persistent mod that has taken bzone.cfg keeps it.
void ForetellOfConfiguration(const std::string& definitionFile, Report& foretold) {
  const auto isTaken = [](const ReportLine& problem) {
    return problem.what.starts_with("rename") && problem.what.ends_with(kGameConfigBackup);
  };
  if (std::ranges::none_of(foretold, isTaken)) return;
  for (const Journal& journal : ReadJournals())
    if (journal.phase == JournalPhase::kActive && IsAbout(journal, InstallRoot()))
      foretold.push_back({journal.definitionFile, 0, "is active and has taken bzone.cfg",
                          "the packs and folders of " + win::FileNameOf(definitionFile) + " are not used"});
}

}  // namespace

ApplyResult ApplyMod(const std::string& definitionFile, bool isLegacy,
                     const std::function<void(const Report& report)>& foretell) {
  ApplyResult result;
  if (const Report failed = FinishEarlier(InstallRoot()); !failed.empty()) {
    result.refusal = "An earlier mod is still to be put back: " + TextOf(failed[0]) + ". Nothing was changed.";
    return result;
  }
  const RememberedSearches searches;  // the activation looks for what its rehearsal has found
  RehearsedMod mod = RehearseMod(definitionFile, isLegacy);
  if (!mod.unreadable.empty()) {
    result.refusal = mod.unreadable + " cannot be read: " + mod.why + ". Nothing was changed.";
    return result;
  }
  const std::optional<Journal> earlier = FindJournal(mod.journal.root, definitionFile);
  if (!mod.journal.entries.empty() && !WriteJournal(mod.journal)) {
    result.refusal = "What the mod changes cannot be written down in " + JournalFolder() + ": " +
                     win::ExplainError(errno) + ". Nothing was changed.";
    return result;
  }
  result.foretold = FailedSteps(mod.steps, definitionFile);
  ForetellOfConfiguration(definitionFile, result.foretold);
  if (foretell && !result.foretold.empty()) foretell(result.foretold);
  ActivationSteps steps;
  ActivationState state;
  {
    JournaledFileSystem noted(win::CurrentFileSystem(), mod.journal);
    const win::ScopedFileSystem onlyNoted(noted);
    const win::OperationObserver observer([&](const win::FileOperation& operation) { steps.Take(operation); });
    result.active = RunActivation(definitionFile, isLegacy, state);
  }
  result.steps = steps.All();
  result.failed = Unforetold(FailedSteps(result.steps, definitionFile), result.foretold);
  if (!result.active || state.persistent) KeepJournal(mod.journal, earlier, result);
  return result;
}

RevertResult RevertMod(const std::string& definitionFile, const std::string& root, bool isForced) {
  using Outcome = RevertResult::End;
  const RunGuard guard(root);
  if (!guard.IsHeld()) return {Outcome::kRefused, kRunRefused, {}};
  std::string unread;
  std::optional<Journal> journal = FindJournal(root, definitionFile, &unread);
  if (!unread.empty()) return {Outcome::kRefused, unread + " cannot be read. Nothing was changed.", {}};
  if (journal && journal->phase != JournalPhase::kOpen && !StoreAs(*journal, JournalPhase::kOpen))
    return {Outcome::kRefused, TextOf(NotWrittenDown()) + ". Nothing was changed.", {}};
  std::optional<win::ScopedWorkingFolder> folder;
  if (journal) folder.emplace(journal->workingFolder);
  const bool byDefinition = !journal || DefinitionsAreAsNoted(*journal);
  const Format format = byDefinition ? FormatOf(definitionFile) : Format::kNone;
  if (!journal && format == Format::kNone) return {Outcome::kNoFormat, "", {}};
  if (!journal && !isForced && !MarkerNames(definitionFile, root)) return {Outcome::kNotActive, "", {}};
  bool persistent = journal && journal->persistent;
  if (format != Format::kNone && !UndoByDefinition(format, definitionFile, root, journal, persistent)) {
    if (journal) StoreAs(*journal, JournalPhase::kActive);
    return {Outcome::kExeTookOver, "", {}};
  }
  const bool isLegacy = journal ? journal->legacy : format == Format::kLegacy;
  RevertResult result;
  if (!End(isLegacy, root, persistent))
    result.failed.push_back({"", 0, "put back the player's values and forget the run", win::ExplainError(errno)});
  if (!journal) return result;
  result.failed = Finish(*journal, RestoreScope::kEverything, std::move(result.failed));
  // An included `activated` keeps the marker: what is back already needs none.
  if (result.failed.empty() && MarkerNames(*journal)) RemoveCrashMarker();
  return result;
}

RevertResult RevertAtStart(const std::string& definitionFile, const std::string& root, Report& left) {
  using Outcome = RevertResult::End;
  const Format format = FormatOf(definitionFile);
  if (format == Format::kNone)
    return {Outcome::kNoFormat, "", {{definitionFile, 1, "undo the mod", "it cannot be read, or is no definition"}}};
  std::string unread;
  std::optional<Journal> journal = FindJournal(root, definitionFile, &unread);
  if (!unread.empty()) return {Outcome::kRefused, "", {{definitionFile, 0, "read " + unread, "nothing was changed"}}};
  std::optional<win::ScopedWorkingFolder> folder;
  if (journal) folder.emplace(journal->workingFolder);
  if (journal) StoreAs(*journal, JournalPhase::kLeft);
  bool persistent = false;
  if (!UndoByDefinition(format, definitionFile, root, journal, persistent)) return {Outcome::kExeTookOver, "", {}};
  RevertResult result;
  if (!End(format == Format::kLegacy, root, persistent))
    result.failed.push_back({"", 0, "forget the run", win::ExplainError(errno)});
  if (journal) result.failed = Finish(*journal, RestoreScope::kAllButContents, std::move(result.failed), &left);
  return result;
}

Report FinishInterrupted(const std::string& root, bool withLeft, int& count) {
  Report failed;
  count = 0;
  std::string unread;
  const std::vector<Journal> journals = ReadJournals(&unread);
  if (!unread.empty()) failed.push_back({"", 0, "read " + unread, "what it tells of is not put back"});
  for (const Journal& journal : journals) {
    const bool isMeant = journal.phase == JournalPhase::kOpen || (withLeft && journal.phase == JournalPhase::kLeft);
    if (!isMeant || (!root.empty() && !IsAbout(journal, root)) || MarkerNames(journal)) continue;
    ++count;
    Append(failed, Finish(journal, RestoreScope::kEverything));
  }
  return failed;
}

}  // namespace varnik
