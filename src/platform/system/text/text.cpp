#include "platform/system/text/text.h"

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace win {

namespace {

constexpr char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
constexpr char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Characters of the bytes 0x80 to 0x9F; the five that the code page leaves open stand for themselves.
constexpr char16_t kWindows1252[] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                     0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                     0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                     0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

char32_t CharacterFromByte(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80] : byte;
}

std::optional<char> ByteFromCharacter(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
  const auto* const found = std::find(std::begin(kWindows1252), std::end(kWindows1252), character);
  if (found == std::end(kWindows1252)) return std::nullopt;
  return static_cast<char>(0x80 + (found - std::begin(kWindows1252)));
}

struct Decoded {
  char32_t character = 0;
  std::size_t length = 0;  // 0: no valid character stands here
};

// One character of UTF-8, neither overlong nor a surrogate. `bytes` is not empty.
Decoded DecodeUtf8(std::string_view bytes) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(bytes[0]);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF8 ? 0 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
  if (length == 0 || bytes.size() < length) return {};
  char32_t character = lead & (0x7F >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(bytes[i]);
    if ((next & 0xC0) != 0x80) return {};
    character = (character << 6) | (next & 0x3F);
  }
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < kSmallest[length] || character > 0x10FFFF || surrogate) return {};
  return {character, length};
}

// For the characters of Windows-1252, none of which needs more than three bytes.
void AppendUtf8(std::string& text, char32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | (character >> 12));
    text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
}

// Appends the characters of UTF-8; false at the first byte that is none.
bool AppendCharacters(std::u32string& characters, std::string_view utf8) {
  while (!utf8.empty()) {
    const Decoded next = DecodeUtf8(utf8);
    if (next.length == 0) return false;
    characters += next.character;
    utf8.remove_prefix(next.length);
  }
  return true;
}

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at]))
    ++at;
  return at;
}

// Length of the number at the start of the text, 0 for none. An exponent without digits is not part of it.
std::size_t NumberLength(std::string_view text) {
  const std::size_t start = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
  std::size_t end = SkipDigits(text, start);
  std::size_t digits = end - start;
  if (end < text.size() && text[end] == '.') {
    const std::size_t fraction = end + 1;
    end = SkipDigits(text, fraction);
    digits += end - fraction;
  }
  if (digits == 0) return 0;
  if (end < text.size() && Lower(text[end]) == 'e') {
    std::size_t exponent = end + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    if (const std::size_t last = SkipDigits(text, exponent); last > exponent) end = last;
  }
  return end;
}

}  // namespace

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), Lower);
  return lower;
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), Upper);
  return upper;
}

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return Lower(x) == Lower(y); });
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && EqualNoCase(text.substr(0, prefix.size()), prefix);
}

double LeadingNumber(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
  text.remove_prefix(first);
  const std::size_t length = NumberLength(text);
  if (length == 0) return 0;
  double value = 0;
  if (std::from_chars(text.data(), text.data() + length, value).ec == std::errc()) return value;
  // A plus sign, or a number too large or too small. The user's locale may want a comma where the game's files have a
  // point.
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(std::string(text.substr(0, length)).c_str(), nullptr, plain);
}

std::optional<std::int16_t> RoundToInt16(double value) {
  using Limits = std::numeric_limits<std::int16_t>;
  const double rounded = std::nearbyint(value);
  if (!(rounded >= Limits::min() && rounded <= Limits::max())) return std::nullopt;
  return static_cast<std::int16_t>(rounded);
}

bool IsAscii(std::string_view bytes) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::uint64_t seen = 0;
  while (bytes.size() >= sizeof seen) {
    std::uint64_t word;
    std::memcpy(&word, bytes.data(), sizeof word);
    seen |= word;
    bytes.remove_prefix(sizeof word);
  }
  for (const char byte : bytes)
    seen |= static_cast<unsigned char>(byte);
  return (seen & kHighBits) == 0;
}

bool IsValidUtf8(std::string_view bytes) {
  if (IsAscii(bytes)) return true;
  while (!bytes.empty()) {
    const std::size_t length = DecodeUtf8(bytes).length;
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string Utf8FromBytes(std::string_view bytes) {
  if (IsValidUtf8(bytes)) return std::string(bytes);
  std::string utf8;
  for (const char byte : bytes)
    AppendUtf8(utf8, CharacterFromByte(static_cast<unsigned char>(byte)));
  return utf8;
}

std::optional<std::string> Windows1252FromUtf8(std::string_view utf8) {
  std::u32string characters;
  if (!AppendCharacters(characters, utf8)) return std::nullopt;
  std::string bytes;
  for (const char32_t character : characters) {
    const std::optional<char> byte = ByteFromCharacter(character);
    if (!byte) return std::nullopt;
    bytes += *byte;
  }
  return bytes;
}

std::u32string CharactersFromBytes(std::string_view bytes) {
  std::u32string characters;
  if (AppendCharacters(characters, bytes)) return characters;
  characters.clear();
  for (const char byte : bytes)
    characters += CharacterFromByte(static_cast<unsigned char>(byte));
  return characters;
}

}  // namespace win
