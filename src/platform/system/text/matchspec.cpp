#include "platform/system/files/findfile.h"
#include "platform/system/text/text.h"
#include "platform/system/text/wildcards.h"

#include <algorithm>
#include <string>

namespace win {

namespace {

bool SameCharacter(char name, char pattern) {
  if (name == pattern) return true;
  const char upper = static_cast<char>(name & ~0x20);
  return (name ^ pattern) == 0x20 && upper >= 'A' && upper <= 'Z';
}

bool SameCharacter(char32_t name, char32_t pattern) { return name == pattern; }  // both are folded

template <typename Character>
bool Fits(Character name, Character pattern) {
  return pattern == Character('?') || SameCharacter(name, pattern);
}

// Both without leading or trailing fixed text in the pattern: it begins where a star may, and ends in one. Goes back to
// the last star only, since an earlier one could not do better.
template <typename Text>
bool MatchesUpToStar(Text name, Text pattern) {
  std::size_t at = 0, next = 0, star = Text::npos, resume = 0;
  while (at < name.size()) {
    if (next < pattern.size() && pattern[next] == '*') {
      star = next++;
      resume = at;
    } else if (next < pattern.size() && Fits(name[at], pattern[next])) {
      ++at, ++next;
    } else if (star != Text::npos) {
      next = star + 1;
      at = ++resume;
    } else {
      return false;
    }
  }
  while (next < pattern.size() && pattern[next] == '*')
    ++next;
  return next == pattern.size();
}

// The end of the pattern first: that is where most names differ.
template <typename Text>
bool Matches(Text name, Text pattern) {
  while (!pattern.empty() && pattern.back() != '*') {
    if (name.empty() || !Fits(name.back(), pattern.back())) return false;
    name.remove_suffix(1);
    pattern.remove_suffix(1);
  }
  return pattern.empty() ? name.empty() : MatchesUpToStar(name, pattern);
}

template <typename Text>
bool MatchesAnyPart(Text name, Text pattern) {
  for (std::size_t start = 0; start < pattern.size();) {
    while (start < pattern.size() && pattern[start] == ' ')
      ++start;
    const std::size_t end = std::min(pattern.find(';', start), pattern.size());
    if (Matches(name, pattern.substr(start, end - start))) return true;
    start = end + 1;
  }
  return false;
}

// Each star begins a match of what follows it, and like every match that one passes over blanks.
std::string WithoutBlanksBehindStars(std::string_view pattern) {
  std::string bare;
  for (const char c : pattern)
    if (c != ' ' || !bare.ends_with('*')) bare += c;
  return bare;
}

}  // namespace

bool PathMatchSpec(std::string_view name, std::string_view pattern) {
  if (pattern == "*.*") return true;
  std::string bare;
  if (pattern.find("* ") != std::string_view::npos) pattern = bare = WithoutBlanksBehindStars(pattern);
  if (IsAscii(name) && IsAscii(pattern)) return MatchesAnyPart(name, pattern);
  return MatchesAnyPart<std::u32string_view>(FoldedCharacters(name), FoldedCharacters(pattern));
}

}  // namespace win
