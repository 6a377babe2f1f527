#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What a check of a definition file reports. The passes over the file skip all of it in silence.
namespace varnik {

// An error: the line, or a part of it, is not carried out as it is written, or was not looked at. A warning: it is
// carried out, with an effect that may surprise, or with none.
enum class Severity { kError, kWarning };

enum class Problem {
  kNoMarker,
  kUtf16,
  kUnknownVersion,
  kMarkerText,
  kNotListed,
  kNoName,
  kTooLarge,
  kTooManyFindings,
  kNoDirective,
  kUnknownDirective,
  kIgnoredDirective,
  kTooFewArguments,
  kSurplusArguments,
  kEmptyArgument,
  kSkippedArgument,
  kNotClosed,
  kCloseInArgument,
  kTrailingBlanks,
  kTextBehindClose,
  kOpenQuote,
  kTypographicQuotes,
  kCommentInArgument,
  kTab,
  kBadPath,
  kLongPath,
  kForbiddenName,
  kOutsideInstall,
  kLeadsOut,
  kWildcard,
  kLetterCase,
  kSameName,
  kRacenameLetter,
  kRacenameWord,
  kCountsOnce,
  kActivatedTooLate,
  kActivatedInInclude,
  kActiveTestTooEarly,
  kNoActiveTest,
  kNeverActive,
  kAlwaysActive,
  kExeTooLate,
  kAfterExe,
  kPersistentSession,
  kIncludeMissing,
  kIncludeCircular,
  kIncludeAgain,
  kIncludeTooDeep,
  kIncludeUnreadable,
  kNotUndone,
  kUndoOrder,
  kTwoConfigurations,
  kMovedAway,
  kModsMeet,
  kUndoTakesMore,
  kDoesNotFit,
  kUnknownGameVersion,
  kNeedsVersion13,
  kMissingFile,
  kMissingExtra,
  kWrongKind,
  kNotAPicture,
  kNotAProgram,
  kTargetExists,
  kOtherCase,
  kTwinNames,
  kHeaderLine,
  kNoDescLine,
  kModeTaken,
  kNeedsDynamic,
  kGluedKeyword,
  kQuotesKept,
  kRelativePath,
};

struct FindingKind {
  Problem problem;
  std::string_view code;  // stable: scripts know it
  Severity severity;
  std::string_view meaning;  // one line, as it is shown
};

// In the order of Problem.
extern const std::span<const FindingKind> kFindingKinds;
const FindingKind& KindOf(Problem problem);

struct Finding {
  std::size_t line;  // of the checked file, from 1; for one in an included file that of the include
  Problem problem;
  std::string message;  // UTF-8, one line
};

// Collects up to kMaxFindings, so that the report on a file of nothing but mistakes stays readable.
class Findings {
 public:
  static constexpr std::size_t kMaxFindings = 500;

  void Add(std::size_t line, Problem problem, std::string message) {
    if (!IsFull()) findings_.push_back({line, problem, std::move(message)});
  }
  bool IsFull() const { return findings_.size() >= kMaxFindings; }

  // In the order of lines; a full list ends in a finding that says so.
  std::vector<Finding> Take();

 private:
  std::vector<Finding> findings_;
};

// A line that is being looked at.
struct Place {
  Findings* findings;  // never null
  std::size_t line;    // as in Finding
  std::string within;  // what the message begins with; empty but in an included file

  void Report(Problem problem, const std::string& message) const { findings->Add(line, problem, within + message); }
};

// How much of a file, with all that it includes, is looked at; no real definition comes near.
class LineBudget {
 public:
  void Take(std::string_view line) {
    ++lines_;
    bytes_ += line.size();
  }
  bool IsSpent() const { return lines_ > kMaxLines || bytes_ > kMaxBytes; }
  void Report(const Place& place) const;

 private:
  static constexpr std::size_t kMaxLines = 20'000;
  static constexpr std::size_t kMaxBytes = 2'000'000;

  std::size_t lines_ = 0;
  std::size_t bytes_ = 0;
};

// A line as a message names it.
std::string NameOfLine(std::size_t line);

// Text of a file as a message shows it: in backquotes, long text cut, control characters made visible.
std::string Quoted(std::string_view text);

}  // namespace varnik
