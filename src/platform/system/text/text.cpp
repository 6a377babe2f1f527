#include "platform/system/text/text.h"

#include <unicode/localpointer.h>
#include <unicode/ucnv.h>
#include <unicode/utf8.h>

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>

namespace win {

namespace {

constexpr char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
constexpr char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

// Calls `visit` with each character. False at the first byte that is no UTF-8, and when `visit` returns false.
template <typename Visit>
bool EachCharacter(std::string_view utf8, Visit visit) {
  for (std::size_t at = 0; at < utf8.size();) {
    UChar32 character = 0;
    U8_NEXT(utf8, at, utf8.size(), character);
    if (character < 0 || !visit(static_cast<char32_t>(character))) return false;
  }
  return true;
}

}  // namespace

const CodePage& Windows1252() {
  static const CodePage page = [] {
    std::array<char, 256> bytes;
    std::iota(bytes.begin(), bytes.end(), '\0');
    CodePage characters;
    std::iota(characters.begin(), characters.end(), u'\0');
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUConverterPointer converter(ucnv_open("windows-1252", &status));
    ucnv_toUChars(converter.getAlias(), characters.data(), characters.size(), bytes.data(), bytes.size(), &status);
    return characters;
  }();
  return page;
}

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

std::string Trim(std::string_view text) { return std::string(Trimmed(text)); }

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return Lower(x) == Lower(y); });
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && EqualNoCase(text.substr(0, prefix.size()), prefix);
}

double LeadingNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  // Without what strtod knows beyond a plain number: names, and digits to another base.
  text = text.substr(0, text.find_first_not_of("+-.0123456789eE"));
  // The user's locale may want a comma where the game's files have a point.
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(std::string(text).c_str(), nullptr, plain);
}

std::optional<std::int16_t> RoundToInt16(double value) {
  using Limits = std::numeric_limits<std::int16_t>;
  const double rounded = std::nearbyint(value);
  if (!(rounded >= Limits::min() && rounded <= Limits::max())) return std::nullopt;
  return static_cast<std::int16_t>(rounded);
}

bool IsAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte < 0x80; });
}

bool IsValidUtf8(std::string_view bytes) {
  return IsAscii(bytes) || EachCharacter(bytes, [](char32_t) { return true; });
}

std::string Utf8FromBytes(std::string_view bytes) {
  if (IsValidUtf8(bytes)) return std::string(bytes);
  std::string utf8;
  for (const unsigned char byte : bytes) {
    char encoded[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(encoded, length, Windows1252()[byte]);
    utf8.append(encoded, length);
  }
  return utf8;
}

std::optional<std::string> Windows1252FromUtf8(std::string_view utf8) {
  std::string bytes;
  const bool complete = EachCharacter(utf8, [&bytes](char32_t character) {
    const CodePage& page = Windows1252();
    const auto* const found = std::find(page.begin(), page.end(), character);
    bytes += static_cast<char>(found - page.begin());
    return found != page.end();
  });
  return complete ? std::optional(bytes) : std::nullopt;
}

std::u32string CharactersFromBytes(std::string_view bytes) {
  std::u32string characters;
  EachCharacter(Utf8FromBytes(bytes), [&characters](char32_t character) {
    characters += character;
    return true;
  });
  return characters;
}

std::string Printable(std::string_view bytes) {
  std::string shown;
  const std::string text = Utf8FromBytes(bytes);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isLong = text[i] == '\xC2' && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    const auto code = static_cast<unsigned char>(text[isLong ? ++i : i]);
    const bool isControl = isLong || code == 0x7F || (code < ' ' && code != '\r' && code != '\n');
    char escaped[5];
    std::snprintf(escaped, sizeof escaped, "\\x%02x", code);
    shown += isControl ? escaped : std::string(1, text[i]);
  }
  return shown;
}

}  // namespace win
