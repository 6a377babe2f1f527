#include "diagnosis/finding.h"

#include "platform/system/text/text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnik {

namespace {

using enum Problem;

constexpr Severity kError = Severity::kError;
constexpr Severity kWarning = Severity::kWarning;

constexpr FindingKind kKinds[] = {
    {kNoMarker, "no-marker", kError, "line 1 is not `bz2hald` and a version, so the file is no definition"},
    {kUtf16, "utf-16", kError, "a file in UTF-16, of which no reader understands a line"},
    {kUnknownVersion, "unknown-version", kError, "no mod of this version is listed, or none is run"},
    {kMarkerText, "marker-text", kWarning, "text after the version in line 1 means nothing"},
    {kNotListed, "not-listed", kWarning, "the list of mods does not show this file"},
    {kNoName, "no-name", kWarning, "without `dname` the list shows an empty row"},
    {kTooLarge, "too-large", kError, "the file and what it includes have more lines than are looked at"},
    {kTooManyFindings, "too-many-findings", kError, "the rest of the file was not looked at"},
    {kNoDirective, "no-directive", kWarning, "a line that is neither a directive nor a comment"},
    {kUnknownDirective, "unknown-directive", kError, "no reader knows a directive of this name"},
    {kIgnoredDirective, "ignored-directive", kWarning, "a known directive on which no reader acts"},
    {kTooFewArguments, "too-few-arguments", kError, "the line is skipped, as it has too few arguments"},
    {kSurplusArguments, "surplus-arguments", kWarning, "the last arguments are ignored"},
    {kEmptyArgument, "empty-argument", kError, "an argument that is needed has no text"},
    {kSkippedArgument, "skipped-argument", kError, "nothing between two commas: later arguments move up"},
    {kNotClosed, "not-closed", kWarning, "the line does not end in `);`"},
    {kCloseInArgument, "close-in-argument", kError, "a `)` without `;` stays in the last argument"},
    {kTrailingBlanks, "trailing-blanks", kError, "blanks after `);` keep it in the last argument"},
    {kTextBehindClose, "text-behind-close", kError, "text after the first `);` is taken into the arguments"},
    {kOpenQuote, "open-quote", kWarning, "a quote without its partner lasts to the end of the line"},
    {kTypographicQuotes, "typographic-quotes", kWarning,
     "quotes of a word processor protect no comma, and stay in the text"},
    {kCommentInArgument, "comment-in-argument", kError, "`//` begins a comment inside an argument"},
    {kTab, "tab", kError, "a tab at the edge of a name or argument is part of it"},
    {kBadPath, "bad-path", kError, "paths stand below the install: no `@rootdir`, no drive"},
    {kLongPath, "long-path", kError, "a path longer than Windows takes"},
    {kForbiddenName, "forbidden-name", kError, "a name that no file can have on Windows"},
    {kOutsideInstall, "outside-install", kError,
     "a path that leads out of the install, where nothing is changed or started"},
    {kLeadsOut, "leads-out", kWarning, "a path that leads out of the install, to what is read only or allowed"},
    {kWildcard, "wildcard", kError, "a name with wildcards where one file is meant"},
    {kLetterCase, "letter-case", kError, "a text that counts in exactly one spelling"},
    {kSameName, "same-name", kWarning, "both names are the same file"},
    {kRacenameLetter, "racename-letter", kError, "the race letter is not one of A to Z"},
    {kRacenameWord, "racename-word", kWarning, "only the first letter of the race counts"},
    {kCountsOnce, "counts-once", kWarning, "an earlier line of the kind counts, and this one does not"},
    {kActivatedTooLate, "activated-too-late", kError, "`activated` below an action has no effect"},
    {kActivatedInInclude, "activated-in-include", kError,
     "`activated` in an included file counts for the undo, and for the activation not"},
    {kActiveTestTooEarly, "active-test-too-early", kError,
     "`activatedfile` and its like have no effect but below `activated`"},
    {kNoActiveTest, "no-active-test", kError,
     "`activated` without `activatedfile` or its like: the mod always counts as active"},
    {kNeverActive, "never-active", kError, "no line makes what the test looks for: the mod always counts as inactive"},
    {kAlwaysActive, "always-active", kError,
     "what the test looks for is there without the mod: it always counts as active"},
    {kExeTooLate, "exe-too-late", kError, "an EXE below an action is not run"},
    {kAfterExe, "after-exe", kError, "nothing is done below the line that runs an EXE"},
    {kPersistentSession, "persistent-session", kError,
     "session defaults and race names of a persistent mod are never set"},
    {kIncludeMissing, "include-missing", kError, "the included file is not there"},
    {kIncludeCircular, "include-circular", kError, "a file that includes itself"},
    {kIncludeAgain, "include-again", kWarning, "a file that is included a second time"},
    {kIncludeTooDeep, "include-too-deep", kError, "more included files, or deeper ones, than a reader follows"},
    {kIncludeUnreadable, "include-unreadable", kError, "the included file cannot be read"},
    {kNotUndone, "not-undone", kWarning, "the deactivation does not take this back"},
    {kUndoOrder, "undo-order", kError, "lines are undone from the top, so two that share a name are not both undone"},
    {kTwoConfigurations, "two-configurations", kError,
     "`pak` or `fold` beside a line that moves bzone.cfg: they undo each other's work"},
    {kMovedAway, "moved-away", kError, "a pack or folder to which another line of the mod gives another name"},
    {kModsMeet, "mods-meet", kWarning,
     "another mod moves or writes the same file, so only one of the two can be active"},
    {kUndoTakesMore, "undo-takes-more", kWarning, "the deactivation deletes what was there before the mod"},
    {kDoesNotFit, "does-not-fit", kWarning, "the install fails this test, so the mod is not listed"},
    {kUnknownGameVersion, "unknown-game-version", kWarning, "no version of the game has such a name"},
    {kNeedsVersion13, "needs-1.3", kWarning, "without effect but on version 1.3"},
    {kMissingFile, "missing-file", kError, "a file or folder that the mod needs is not in the install"},
    {kMissingExtra, "missing-extra", kWarning, "a picture, text or list that the line works on is not there"},
    {kWrongKind, "wrong-kind", kError, "a folder where a file is meant, or a file where a folder is meant"},
    {kNotAPicture, "not-a-picture", kWarning, "neither what the file begins with nor its name is that of a picture"},
    {kNotAProgram, "not-a-program", kError, "the file does not begin as a program does, so it cannot be started"},
    {kTargetExists, "target-exists", kError, "the new name of a file is taken, so the file keeps its own"},
    {kOtherCase, "other-case", kWarning, "the install spells the name with other capitals"},
    {kTwinNames, "twin-names", kWarning, "names in the install that differ by capitals only"},
    {kHeaderLine, "header-line", kWarning, "a header line of the older format without effect"},
    {kNoDescLine, "no-desc-line", kError, "an older definition without `desc` is not read to its end"},
    {kModeTaken, "mode-taken", kError, "only the first of `dynamic`, `predefined`, `nobzonecfg` counts"},
    {kNeedsDynamic, "needs-dynamic", kError, "`pak` and `fold` count below `dynamic` only"},
    {kGluedKeyword, "glued-keyword", kWarning, "text that begins like a keyword is taken for it"},
    {kQuotesKept, "quotes-kept", kError, "quotes are part of a name in the older format"},
    {kRelativePath, "relative-path", kError,
     "without `@rootdir\\` a path of the older format starts at the folder in which the program runs"},
};

constexpr bool RowsStandInOrder() {
  for (std::size_t i = 0; i < std::size(kKinds); ++i)
    if (kKinds[i].problem != static_cast<Problem>(i)) return false;
  return std::size(kKinds) == static_cast<std::size_t>(kRelativePath) + 1;
}
static_assert(RowsStandInOrder());

constexpr std::size_t kMaxQuoteLength = 60;

}  // namespace

const std::span<const FindingKind> kFindingKinds = kKinds;

const FindingKind& KindOf(Problem problem) { return kKinds[static_cast<std::size_t>(problem)]; }

std::vector<Finding> Findings::Take() {
  std::stable_sort(findings_.begin(), findings_.end(),
                   [](const Finding& a, const Finding& b) { return a.line < b.line; });
  if (IsFull())
    findings_.push_back(
        {findings_.back().line, kTooManyFindings,
         "there are more than " + std::to_string(kMaxFindings) + " findings; the rest is not looked at"});
  return std::move(findings_);
}

void LineBudget::Report(const Place& place) const {
  place.Report(kTooLarge, "what follows is not looked at: a definition and what it includes have at most " +
                              std::to_string(kMaxLines) + " lines and " + std::to_string(kMaxBytes) + " bytes");
}

std::string NameOfLine(std::size_t line) { return "line " + std::to_string(line); }

std::string Quoted(std::string_view text) {
  std::size_t end = std::min(text.size(), kMaxQuoteLength);
  // Not between the bytes of one character.
  while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
    --end;
  std::string quoted = "`";
  for (const char c : win::Utf8FromBytes(text.substr(0, end))) {
    if (c == '\t')
      quoted += "\\t";
    else
      quoted += static_cast<unsigned char>(c) < ' ' || c == '\x7F' ? '?' : c;
  }
  return quoted + (end < text.size() ? "...`" : "`");
}

}  // namespace varnik
