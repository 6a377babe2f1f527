#include "platform/system/text/compare.h"

#include "platform/system/text/text.h"

#include <unicode/tblcoll.h>
#include <unicode/translit.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>

namespace win {
namespace {

// Marks and signs in the order of the list box. They follow the blank and stand ahead of all others, of the digits and
// of the letters, whose order is that of the root collation.
constexpr char16_t kMarks[] =
    u"!\"#$%&()*,./:;?@[\\]^\u02C6_`{|}~\u02DC\u00A1\u00A6\u00A8\u00AF\u00B4\u00B8\u00BF"
    u"\u2018\u2019\u201A\u201C\u201D\u201E\u2039\u203A\u00A2\u00A3\u00A4\u00A5\u20AC+<=>";

// Characters that count only between otherwise equal texts, by rising weight.
constexpr std::array<char16_t, 4> kIgnored = {u'\'', u'-', u'\u2013', u'\u2014'};

std::unique_ptr<icu::RuleBasedCollator> MakeCollator() {
  icu::UnicodeString rules(u"&' '");
  for (const char16_t mark : std::u16string_view(kMarks))
    rules.append(u"<'").append(mark).append(u'\'');
  UErrorCode status = U_ZERO_ERROR;
  // Accents are the second strength, case would be the third.
  auto collator = std::make_unique<icu::RuleBasedCollator>(rules, icu::Collator::SECONDARY, status);
  if (U_FAILURE(status)) return nullptr;
  return collator;
}

struct SplitText {
  icu::UnicodeString counted;
  std::string ignored;  // position among the counted characters, big-endian, and weight of each ignored one
};

SplitText Split(std::string_view text) {
  SplitText split;
  const icu::UnicodeString all = icu::UnicodeString::fromUTF8(Utf8FromBytes(text));
  for (int i = 0; i < all.length(); ++i) {
    const auto* found = std::find(kIgnored.begin(), kIgnored.end(), all[i]);
    if (found == kIgnored.end()) {
      split.counted.append(all[i]);
      continue;
    }
    const auto position = static_cast<std::uint32_t>(split.counted.length());
    for (int shift = 24; shift >= 0; shift -= 8)
      split.ignored += static_cast<char>(position >> shift & 0xFF);
    split.ignored += static_cast<char>(1 + (found - kIgnored.begin()));
  }
  return split;
}

}  // namespace

std::string SearchKey(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  static const std::unique_ptr<icu::Transliterator> strip(
      icu::Transliterator::createInstance(u"NFKD; [:Nonspacing Mark:] Remove; NFC", UTRANS_FORWARD, status));
  icu::UnicodeString key = icu::UnicodeString::fromUTF8(Utf8FromBytes(text));
  if (strip) strip->transliterate(key);
  std::string utf8;
  return key.foldCase().toUTF8String(utf8);
}

int CompareForList(std::string_view a, std::string_view b) { return ListSortKey(a).compare(ListSortKey(b)); }

std::string ListSortKey(std::string_view text) {
  static const std::unique_ptr<icu::RuleBasedCollator> collator = MakeCollator();
  if (!collator) return LowerCase(text);
  const SplitText split = Split(text);
  std::string key(32 + 4 * static_cast<std::size_t>(split.counted.length()), '\0');
  for (;;) {
    const auto size = static_cast<std::size_t>(collator->getSortKey(
        split.counted, reinterpret_cast<std::uint8_t*>(key.data()), static_cast<std::int32_t>(key.size())));
    const bool complete = size <= key.size();
    key.resize(size);
    // The key's closing zero byte keeps what follows apart.
    if (complete) return key + split.ignored;
  }
}

}  // namespace win
