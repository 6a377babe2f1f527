#include "diagnosis/linecheck.h"

#include "definition/directivecatalogue.h"
#include "diagnosis/filekind.h"
#include "diagnosis/spelling.h"
#include "legacy/legacyactivation.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/definitionreader.h"
#include "platform/system/text/text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace varnik {

namespace {

using enum Problem;

constexpr std::string_view kClose = ");";
constexpr std::array<std::string_view, 4> kGameVersions = {"1.0", "1.1", "1.2", "1.3"};

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

bool IsTypographicQuote(char32_t c) { return c == U'\u201C' || c == U'\u201D' || c == U'\u201E' || c == U'\u201F'; }

// Quotes inside a text belong to it; a pair round the whole was meant to protect it.
void CheckTypographicQuotes(const Place& place, const Args& args) {
  std::u32string list;
  for (std::size_t i = 1; i < args.size(); ++i) {
    const std::u32string text = win::CharactersFromBytes(args[i]);
    const bool continues = !list.empty();
    if (!continues && (text.empty() || !IsTypographicQuote(text[0]))) continue;
    list += text;
    if (std::count_if(list.begin(), list.end(), IsTypographicQuote) < 2) continue;
    if (list.size() > 1 && IsTypographicQuote(list.back()) &&
        std::count_if(list.begin(), list.end(), IsTypographicQuote) == 2)
      return place.Report(kTypographicQuotes, "the quotes round " + Quoted(args[i]) +
                                                  " are a word processor's, and part of the text: write `\"`");
    list.clear();
  }
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

bool CheckEncoding(const Place& place, std::string_view firstLine) {
  if (!BeginsAsUtf16(firstLine)) return true;
  place.Report(kUtf16,
               "the file is saved as UTF-16: save it as ANSI (Windows-1252), or as UTF-8 without a byte-order mark");
  return false;
}

void CheckGameVersion(const Place& place, const std::string& version) {
  if (version.find_first_not_of("0123456789.") == std::string::npos) return;
  const std::string_view likely = LikelyName(win::LowerCase(version), {kGameVersions.begin(), kGameVersions.end()});
  place.Report(kUnknownGameVersion, "no version of the game is called " + Quoted(version) +
                                        (likely.empty() ? "" : "; did you mean " + Quoted(likely) + "?"));
}

bool CheckWindowsName(const Place& place, std::string_view path) {
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find_first_of("\\/", start), path.size());
    const std::string_view name = path.substr(start, end - start);
    if (IsForbiddenOnWindows(name)) {
      place.Report(kForbiddenName, "Windows allows no file of the name " + Quoted(name) + ": choose another one");
      return false;
    }
    start = end + 1;
  }
  return true;
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

bool CheckForm(const Place& place, std::string_view line, const Args& args, std::size_t needed, std::size_t useful) {
  const LineParts parts = CutLine(line);
  const ListShape shape = ShapeOf(parts.text.substr(parts.text.find('(') + 1));
  if (CommentCutsArgument(parts, shape)) {
    place.Report(kCommentInArgument,
                 "`//` begins a comment, inside quotes too: " + Quoted(args.back()) + " is all that is read");
    return false;
  }
  if (args.size() <= 1 || useful == 0) return true;
  CheckEnd(place, parts, shape, args);
  if (shape.openQuote) place.Report(kOpenQuote, "a quote without its partner: commas behind it belong to the text");
  if (shape.skipsArgument)
    place.Report(kSkippedArgument, "there is nothing before a comma, so the arguments behind it move up");
  // In a line reported as not closed, a tab at the end is the reason, so it is not reported again.
  if (parts.isClosed && std::any_of(args.begin() + 1, args.end(), HasOuterTab))
    place.Report(kTab, "a tab at the edge of an argument is part of it: readers take blanks away only");
  CheckTypographicQuotes(place, args);
  CheckArguments(place, args, needed, useful);
  return true;
}

}  // namespace varnik
