#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Text and number parsing. Text is bytes as the game's files hold them; only ASCII letters have a case here.
namespace win {

std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

// Without the space characters at both ends. Tabs, carriage returns and other blanks stay.
std::string Trim(std::string_view text);
std::string_view Trimmed(std::string_view text);  // the same as a part of `text`

bool EqualNoCase(std::string_view a, std::string_view b);
bool StartsWithNoCase(std::string_view text, std::string_view prefix);

// The longest numeric prefix behind any blanks and tabs: sign, digits, a decimal point, an exponent. 0 when the text
// does not begin with a number. Never fails; "1e999" gives infinity.
double LeadingNumber(std::string_view text);

// Rounded to a whole number, halves to the even neighbour; nothing outside the 16-bit signed range, or for no number.
[[nodiscard]] std::optional<std::int16_t> RoundToInt16(double value);

// The bytes of a text file as a person reads them: as they are when they form valid UTF-8, else taken as Windows-1252.
std::string Utf8FromBytes(std::string_view bytes);

// Windows-1252 bytes for UTF-8 text; nothing when a character has no place in that code page.
[[nodiscard]] std::optional<std::string> Windows1252FromUtf8(std::string_view utf8);

// The character of every byte in Windows-1252. The five bytes that it leaves open stand for themselves.
using CodePage = std::array<char16_t, 256>;
const CodePage& Windows1252();

// The characters of text bytes, by the same rule as Utf8FromBytes.
std::u32string CharactersFromBytes(std::string_view bytes);

bool IsAscii(std::string_view bytes);
bool IsValidUtf8(std::string_view bytes);

// The text as UTF-8 in which no character acts on a terminal: every control character but a line end stands as `\x1b`
// does, and so do those that begin with C2 (U+0080 to U+009F), which some terminals take for an escape sequence.
std::string Printable(std::string_view bytes);

}  // namespace win
