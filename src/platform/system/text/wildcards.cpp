#include "platform/system/text/wildcards.h"

#include "platform/system/text/text.h"

#include <locale.h>
#include <wctype.h>

#include <algorithm>
#include <vector>

namespace win {

namespace {

// Only letters that come in pairs have a case: the dotless i, the micro sign and title-case letters stand for
// themselves.
char32_t Fold(char32_t character) {
  static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (character < 0x80 || unicode == nullptr)
    return character >= 'a' && character <= 'z' ? character - ('a' - 'A') : character;
  const wint_t upper = towupper_l(static_cast<wint_t>(character), unicode);
  return towlower_l(upper, unicode) == character ? upper : character;
}

bool IsWildcard(char32_t c) { return c == U'*' || c == U'?'; }

// Positions of the pattern that a name may have reached, all followed at once, so that no pattern takes more than its
// length for each character.
class Positions {
 public:
  explicit Positions(std::u32string_view pattern) : pattern_(pattern), now_(pattern.size() + 1) { now_[0] = true; }

  void Take(char32_t c) {
    SkipEmpty(c == U'.', false);
    std::vector<bool> after(now_.size());
    for (std::size_t i = 0; i < pattern_.size(); ++i) {
      if (!now_[i]) continue;
      if (pattern_[i] == U'*') after[i] = true;
      if (pattern_[i] == c || (pattern_[i] == U'?' && c != U'.')) after[i + 1] = true;
    }
    now_.swap(after);
  }

  bool AtEnd() {
    SkipEmpty(true, true);
    return now_.back();
  }

 private:
  // Goes past what may stand for no character at all.
  void SkipEmpty(bool beforeDotOrEnd, bool atEnd) {
    for (std::size_t i = 0; i < pattern_.size(); ++i) {
      const bool dotBeforeWildcard = pattern_[i] == U'.' && i + 1 < pattern_.size() && IsWildcard(pattern_[i + 1]);
      if (now_[i] && (pattern_[i] == U'*' || (pattern_[i] == U'?' && beforeDotOrEnd) || (dotBeforeWildcard && atEnd)))
        now_[i + 1] = true;
    }
  }

  std::u32string_view pattern_;
  std::vector<bool> now_;
};

}  // namespace

bool HasWildcards(std::string_view name) { return name.find_first_of("*?") != std::string_view::npos; }

bool MatchesWildcards(std::string_view name, std::string_view pattern) {
  const std::size_t end = pattern.find_last_not_of(" .") + 1;
  const bool wantsNoDot = pattern.find('.', end) != std::string_view::npos;
  if (wantsNoDot && name.find('.') != std::string_view::npos) return false;
  const std::u32string folded = FoldedCharacters(pattern.substr(0, end));
  Positions positions(folded);
  for (const char32_t c : FoldedCharacters(name))
    positions.Take(c);
  return positions.AtEnd();
}

std::u32string FoldedCharacters(std::string_view bytes) {
  std::u32string characters = CharactersFromBytes(bytes);
  std::transform(characters.begin(), characters.end(), characters.begin(), Fold);
  return characters;
}

}  // namespace win
