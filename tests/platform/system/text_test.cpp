#include "platform/system/text.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/system/argumentlist.h"

namespace {

using List = std::vector<std::string>;

TEST(Text, NumbersAreReadAsFarAsTheyGo) {
  const struct {
    const char* text;
    double number;
  } cases[] = {
      {"12", 12}, {" \t-1.5x", -1.5}, {"+.5", .5}, {"1E+2z", 100}, {"1e", 1},  {"2.5.5", 2.5}, {"1,5", 1},
      {"", 0},    {".", 0},           {"-", 0},    {"inf", 0},     {"0x1", 0}, {"\n1", 0},     {"1e999", INFINITY},
  };
  for (const auto& c : cases)
    EXPECT_EQ(win::LeadingNumber(c.text), c.number) << c.text;
}

TEST(Text, HalvesRoundToTheEvenNeighbour) {
  const struct {
    double value;
    std::optional<std::int16_t> rounded;
  } cases[] = {{.5, 0},       {1.5, 2},           {2.5, 2},       {-2.5, -2},     {32767.4, 32767},
               {32767.5, {}}, {-32768.5, -32768}, {-32768.6, {}}, {INFINITY, {}}, {NAN, {}}};
  for (const auto& c : cases)
    EXPECT_EQ(win::RoundToInt16(c.value), c.rounded) << c.value;
}

TEST(Text, BytesThatAreNoUtf8AreWindows1252) {
  const struct {
    std::string bytes, utf8;
  } cases[] = {
      {"caf\xC3\xA9", "café"},
      {"caf\xE9", "café"},
      {"a long line of plain text, then \x93quotes\x94", "a long line of plain text, then “quotes”"},
      {"\xC0\xAF", "À¯"},                   // overlong
      {"\xED\xA0\x80", "í\xC2\xA0€"},       // surrogate
      {"\xF4\x90\x80\x80", "ô\xC2\x90€€"},  // beyond the last character
      {"\xE2\x82", "â‚"},                   // cut off
  };
  for (const auto& c : cases)
    EXPECT_EQ(win::Utf8FromBytes(c.bytes), c.utf8) << c.utf8;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(win::Windows1252FromUtf8(win::Utf8FromBytes(text)), text) << byte;
  }
  for (const char* text : {"Ж", "\xE9"})
    EXPECT_EQ(win::Windows1252FromUtf8(text), std::nullopt);
}

TEST(Text, OnlyAsciiLettersHaveACaseAndOnlySpacesAreTrimmed) {
  EXPECT_EQ(win::LowerCase("AZ[É"), "az[É");
  EXPECT_EQ(win::UpperCase("az{é"), "AZ{é");
  for (const auto& [a, b] : {std::pair("É", "é"), std::pair("@", "`")})
    EXPECT_FALSE(win::EqualNoCase(a, b));
  EXPECT_TRUE(win::StartsWithNoCase("BZ2HALD5", "bz2hald"));
  EXPECT_FALSE(win::StartsWithNoCase("bz2", "bz2hald"));
  EXPECT_EQ(win::Trim("  a\t "), "a\t");
  EXPECT_EQ(win::Trim("   "), "");
}

TEST(ArgumentList, TheProgramEndsAtItsQuoteOrAtTheFirstBlank) {
  const struct {
    const char *line, *program, *tail;
  } cases[] = {
      {R"("C:\a b\bzone.exe"  -win )", R"(C:\a b\bzone.exe)", "  -win "},
      {R"(  C:\bz\bzone.exe -win)", R"(C:\bz\bzone.exe)", " -win"},
      {R"("C:\bz\"x y)", R"(C:\bz\)", "x y"},
      {R"("C:\bz)", R"(C:\bz)", ""},
      {"\"", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    EXPECT_EQ(win::SplitProgram(c.line).program, c.program);
    EXPECT_EQ(win::SplitProgram(c.line).tail, c.tail);
  }
}

TEST(ArgumentList, SplitsAsTheCRuntimeDoes) {
  const struct {
    const char* tail;
    List arguments;
  } cases[] = {
      {"  a \t b  ", {"a", "b"}},
      {R"(/name="Foo Bar"s)", {"/name=Foo Bars"}},
      {R"("" a)", {"", "a"}},
      {R"(a\b c:\d\ \\srv)", {R"(a\b)", R"(c:\d\)", R"(\\srv)"}},
      {R"(a\"b "a\\" a\\\"b)", {R"(a"b)", R"(a\)", R"(a\"b)"}},
      {R"("a""b c" d)", {R"(a"b c)", "d"}},
      {R"(a""b)", {"ab"}},
      {R"("open end )", {"open end "}},
      {R"("a\)", {R"(a\)"}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(win::SplitArguments(c.tail), c.arguments) << c.tail;
}

}  // namespace
