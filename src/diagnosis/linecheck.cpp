#include "diagnosis/linecheck.h"

#include "definition/directivecatalogue.h"
#include "diagnosis/spelling.h"
#include "legacy/legacyactivation.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/definitionreader.h"
#include "platform/system/text/text.h"

#include <algorithm>
#include <vector>

namespace varnik {

namespace {

using enum Problem;

constexpr std::string_view kClose = ");";

std::vector<std::string_view> KnownNames() {
  std::vector<std::string_view> names;
  for (const auto& forms : {CatalogueDirectives(), ActivationDirectives(), DeactivationDirectives()})
    for (const DirectiveForm& form : forms)
      names.push_back(form.name);
  return names;
}

bool IsKnown(std::string_view name) {
  const std::vector<std::string_view> names = KnownNames();
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool HasOuterTab(std::string_view text) { return text.starts_with('\t') || text.ends_with('\t'); }

std::string WithoutOuterTabs(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
  return std::string(text.substr(first, text.find_last_not_of(" \t") + 1 - first));
}

// The list of arguments as quotes and commas divide it.
struct ListShape {
  bool openQuote = false;
  bool skipsArgument = false;                  // a comma with nothing since the last one
  std::size_t close = std::string_view::npos;  // of the first `);` outside quotes
};

ListShape ShapeOf(std::string_view list) {
  ListShape shape;
  bool inArgument = false;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const bool isComma = list[i] == ',' && !shape.openQuote;
    if (isComma && !inArgument) shape.skipsArgument = true;
    inArgument = !isComma;
    if (list[i] == '"') shape.openQuote = !shape.openQuote;
    if (!shape.openQuote && shape.close == std::string_view::npos && list.substr(i).starts_with(kClose))
      shape.close = i;
  }
  return shape;
}

bool CommentCutsArgument(const LineParts& parts, const ListShape& shape) {
  if (!parts.comment || parts.isClosed) return false;
  return shape.openQuote || (!parts.text.ends_with(')') && parts.comment->find(kClose) != std::string_view::npos);
}

void CheckEnd(const Place& place, const LineParts& parts, const ListShape& shape, const Args& args) {
  const std::string last = Quoted(args.back());
  const std::string bare = WithoutOuterTabs(parts.text);
  if (!parts.isClosed && bare.ends_with(kClose))
    place.Report(kTrailingBlanks, "the line does not end in `);` but in blanks, so its last argument is " + last);
  else if (shape.close != std::string_view::npos)
    place.Report(kTextBehindClose,
                 "text behind the first `);`: one line is one directive, and here the last argument is " + last);
  else if (!parts.isClosed && bare.ends_with(')'))
    place.Report(kCloseInArgument, "`)` without `;` at the end of the line: its last argument is " + last);
  else if (!parts.isClosed)
    place.Report(kNotClosed, "the line does not end in `);`: its last argument is " + last);
}

void CheckArguments(const Place& place, const Args& args, std::size_t needed, std::size_t useful) {
  for (std::size_t i = 1; i < args.size() && i <= needed; ++i)
    if (args[i].empty()) place.Report(kEmptyArgument, "argument " + std::to_string(i) + " is empty");
  if (args.size() > useful + 1)
    place.Report(kSurplusArguments, Quoted(args[useful + 1]) +
                                        " and what follows is ignored: a comma outside quotes begins a new argument");
}

}  // namespace

void CheckPlainText(const Place& place, std::string_view line) {
  const std::string text = WithoutOuterTabs(CutLine(line).text);
  if (text.empty() || text.starts_with(';')) return;
  const std::string word = win::LowerCase(std::string_view(text).substr(0, text.find_first_of(" \t,;)")));
  std::string message = Quoted(text) + " is no directive, and comments begin with `//` or `;`";
  if (IsKnown(word)) message = Quoted(word) + " has no `(` behind it, so the line is no directive";
  place.Report(IsKnown(word) ? kUnknownDirective : kNoDirective, message);
}

void CheckUnknownName(const Place& place, const std::string& name) {
  const std::string bare = WithoutOuterTabs(name);
  if (bare.starts_with(';')) return;
  const std::string_view likely = LikelyName(bare, KnownNames());
  const std::vector<std::string_view> legacy = LegacyKeywords();
  const bool isLegacy =
      std::any_of(legacy.begin(), legacy.end(), [&](auto keyword) { return win::Trim(keyword) == bare; });
  if (IsKnown(bare))
    place.Report(kTab, "a tab beside the name " + Quoted(bare) + " makes it another: readers take blanks away only");
  else if (isLegacy)
    place.Report(kUnknownDirective, Quoted(bare) + " belongs to the older format");
  else if (!likely.empty())
    place.Report(kUnknownDirective, "no reader knows " + Quoted(bare) + "; did you mean " + Quoted(likely) + "?");
  else if (FindDirective(bare) != 0)
    place.Report(kIgnoredDirective, Quoted(bare) + " is known, but no reader acts on it");
  else
    place.Report(kUnknownDirective, "no reader knows " + Quoted(bare));
}

void CheckForm(const Place& place, std::string_view line, const Args& args, std::size_t needed, std::size_t useful) {
  const LineParts parts = CutLine(line);
  const ListShape shape = ShapeOf(parts.text.substr(parts.text.find('(') + 1));
  if (CommentCutsArgument(parts, shape)) {
    place.Report(kCommentInArgument,
                 "`//` begins a comment, inside quotes too: " + Quoted(args.back()) + " is all that is read");
    return;
  }
  if (args.size() <= 1 || useful == 0) return;
  CheckEnd(place, parts, shape, args);
  if (shape.openQuote) place.Report(kOpenQuote, "a quote without its partner: commas behind it belong to the text");
  if (shape.skipsArgument)
    place.Report(kSkippedArgument, "there is nothing before a comma, so the arguments behind it move up");
  // In a line reported as not closed, a tab at the end is the reason, so it is not reported again.
  if (parts.isClosed && std::any_of(args.begin() + 1, args.end(), HasOuterTab))
    place.Report(kTab, "a tab at the edge of an argument is part of it: readers take blanks away only");
  CheckArguments(place, args, needed, useful);
}

}  // namespace varnik
