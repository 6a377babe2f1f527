#include "platform/system/text/wildcards.h"

#include "platform/system/text/text.h"

#include <unicode/uchar.h>

#include <algorithm>

namespace win {

namespace {

enum class Rules { kShell, kFileCalls };

bool IsSame(char a, char b) {
  const char upper = static_cast<char>(a & ~0x20);
  return a == b || ((a ^ b) == 0x20 && upper >= 'A' && upper <= 'Z');
}

bool IsSame(char32_t a, char32_t b) { return a == b; }  // both are folded

// The characters of text bytes, each as it compares without regard to case. Only letters that come in pairs have a
// case: the dotless i, the micro sign and title-case letters stand for themselves.
std::u32string FoldedCharacters(std::string_view bytes) {
  std::u32string characters = CharactersFromBytes(bytes);
  for (char32_t& character : characters) {
    const UChar32 upper = u_toupper(static_cast<UChar32>(character));
    if (static_cast<char32_t>(u_tolower(upper)) == character) character = static_cast<char32_t>(upper);
  }
  return characters;
}

constexpr int kMismatch = -1;

// How many characters of the name, from `at` on, pattern[next] takes, which is no star.
template <typename Text>
int Taken(Text name, std::size_t at, Text pattern, std::size_t next, Rules rules) {
  const auto wanted = pattern[next];
  const bool atEnd = at == name.size();
  if (rules == Rules::kFileCalls && wanted == '?') return atEnd || name[at] == '.' ? 0 : 1;
  if (rules == Rules::kFileCalls && wanted == '.' && atEnd && next + 1 < pattern.size() &&
      (pattern[next + 1] == '*' || pattern[next + 1] == '?'))
    return 0;
  return !atEnd && (wanted == '?' || IsSame(name[at], wanted)) ? 1 : kMismatch;
}

// Goes back to the last star only: what stands between two stars takes no less from a later place than from an earlier
// one, so an earlier star could not do better.
template <typename Text>
bool Matches(Text name, Text pattern, Rules rules) {
  std::size_t at = 0, next = 0, behindStar = 0, resume = 0;
  while (at < name.size() || next < pattern.size()) {
    if (next < pattern.size() && pattern[next] == '*') {
      behindStar = ++next;
      resume = at;
      continue;
    }
    const int taken = next < pattern.size() ? Taken(name, at, pattern, next, rules) : kMismatch;
    if (taken != kMismatch) {
      at += static_cast<std::size_t>(taken);
      ++next;
    } else if (behindStar > 0 && at < name.size()) {
      next = behindStar;
      at = ++resume;
    } else {
      return false;
    }
  }
  return true;
}

// Most names differ from the pattern in their last character.
template <typename Text>
bool EndsDiffer(Text name, Text pattern) {
  const auto last = pattern.empty() ? '*' : pattern.back();
  return last != '*' && last != '?' && (name.empty() || !IsSame(name.back(), last));
}

template <typename Text>
bool MatchesAnyPart(Text name, Text pattern) {
  for (std::size_t start = 0; start < pattern.size();) {
    while (start < pattern.size() && pattern[start] == ' ')
      ++start;
    const std::size_t end = std::min(pattern.find(';', start), pattern.size());
    const Text part = pattern.substr(start, end - start);
    if (!EndsDiffer(name, part) && Matches(name, part, Rules::kShell)) return true;
    start = end + 1;
  }
  return false;
}

// Each star begins a match of what follows it, and like every match that one passes over blanks. Blanks at the end of a
// part count.
std::string WithoutBlanksBehindStars(std::string_view pattern) {
  std::string bare;
  for (std::size_t at = 0; at < pattern.size();) {
    const std::size_t end = std::min(pattern.find_first_not_of(' ', at), pattern.size());
    const bool isPassedOver = bare.ends_with('*') && end < pattern.size() && pattern[end] != ';';
    if (!isPassedOver) bare.append(pattern, at, end - at);
    if (end < pattern.size()) bare += pattern[end];
    at = end + 1;
  }
  return bare;
}

}  // namespace

bool HasWildcards(std::string_view name) { return name.find_first_of("*?") != std::string_view::npos; }

bool MatchesWildcards(std::string_view name, std::string_view pattern) {
  const std::size_t end = pattern.find_last_not_of(" .") + 1;
  const bool wantsNoDot = pattern.find('.', end) != std::string_view::npos;
  if (wantsNoDot && name.find('.') != std::string_view::npos) return false;
  pattern = pattern.substr(0, end);
  if (IsAscii(name) && IsAscii(pattern)) return Matches(name, pattern, Rules::kFileCalls);
  return Matches<std::u32string_view>(FoldedCharacters(name), FoldedCharacters(pattern), Rules::kFileCalls);
}

bool PathMatchSpec(std::string_view name, std::string_view pattern) {
  if (pattern == "*.*") return true;
  std::string bare;
  if (pattern.find("* ") != std::string_view::npos) pattern = bare = WithoutBlanksBehindStars(pattern);
  if (IsAscii(name) && IsAscii(pattern)) return MatchesAnyPart(name, pattern);
  return MatchesAnyPart<std::u32string_view>(FoldedCharacters(name), FoldedCharacters(pattern));
}

}  // namespace win
