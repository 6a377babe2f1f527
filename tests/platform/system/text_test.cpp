#include "platform/system/text.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/system/argumentlist.h"

namespace {

TEST(Text, NumbersAreReadAsFarAsTheyGoAndRoundToEven) {
  const std::pair<const char*, double> texts[] = {
      {"12", 12}, {" \t-1.5x", -1.5}, {"+.5", .5}, {"1E+2z", 100}, {"1e", 1},  {"2.5.5", 2.5}, {"1,5", 1},
      {"", 0},    {".", 0},           {"-", 0},    {"inf", 0},     {"0x1", 0}, {"\n1", 0},     {"1e999", INFINITY}};
  for (const auto& [text, number] : texts)
    EXPECT_EQ(win::LeadingNumber(text), number) << text;
  const std::pair<double, std::optional<std::int16_t>> values[] = {
      {.5, 0},       {1.5, 2},           {2.5, 2},       {-2.5, -2},     {32767.4, 32767},
      {32767.5, {}}, {-32768.5, -32768}, {-32768.6, {}}, {INFINITY, {}}, {NAN, {}}};
  for (const auto& [value, rounded] : values)
    EXPECT_EQ(win::RoundToInt16(value), rounded) << value;
}

TEST(Text, BytesThatAreNoUtf8AreWindows1252) {
  const std::pair<std::string, std::string> cases[] = {
      {"caf\xC3\xA9", "café"},
      {"a long line of plain text, then \x93quotes\x94", "a long line of plain text, then “quotes”"},
      {"\xC0\xAF", "À¯"},                   // overlong
      {"\xED\xA0\x80", "í\xC2\xA0€"},       // surrogate
      {"\xF4\x90\x80\x80", "ô\xC2\x90€€"},  // beyond the last character
      {"\xE2\x82", "â‚"},                   // cut off
  };
  for (const auto& [bytes, utf8] : cases)
    EXPECT_EQ(win::Utf8FromBytes(bytes), utf8) << utf8;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(win::Windows1252FromUtf8(win::Utf8FromBytes(text)), text) << byte;
  }
  EXPECT_EQ(win::Windows1252FromUtf8("Ж"), std::nullopt);
}

TEST(Text, OnlyAsciiLettersHaveACaseAndOnlySpacesAreTrimmed) {
  EXPECT_EQ(win::LowerCase("AZ[É") + win::UpperCase("az{é"), "az[ÉAZ{é");
  EXPECT_FALSE(win::EqualNoCase("É", "é") || win::EqualNoCase("@", "`"));
  EXPECT_TRUE(win::StartsWithNoCase("BZ2HALD5", "bz2hald"));
  EXPECT_FALSE(win::StartsWithNoCase("bz2", "bz2hald"));
  EXPECT_EQ(win::Trim("  a\t ") + win::Trim("   "), "a\t");
}

TEST(ArgumentList, SplitsAsTheCRuntimeDoes) {
  const struct {
    const char *line, *program, *tail;
  } lines[] = {
      {R"("C:\a b\bzone.exe"  -win )", R"(C:\a b\bzone.exe)", "  -win "},
      {R"(  C:\bz\bzone.exe -win)", R"(C:\bz\bzone.exe)", " -win"},
      {R"("C:\bz\"x y)", R"(C:\bz\)", "x y"},
      {"\"", "", ""},
  };
  for (const auto& c : lines) {
    EXPECT_EQ(win::SplitProgram(c.line).program, c.program);
    EXPECT_EQ(win::SplitProgram(c.line).tail, c.tail);
  }
  const std::pair<const char*, std::vector<std::string>> tails[] = {
      {"  a \t b  ", {"a", "b"}},
      {R"(/name="Foo Bar"s)", {"/name=Foo Bars"}},
      {R"("" a)", {"", "a"}},
      {R"(a\b c:\d\ \\srv)", {R"(a\b)", R"(c:\d\)", R"(\\srv)"}},
      {R"(a\"b "a\\" a\\\"b)", {R"(a"b)", R"(a\)", R"(a\"b)"}},
      {R"("a""b c" d)", {R"(a"b c)", "d"}},
      {R"(a""b "a\)", {"ab", R"(a\)"}},
      {R"("open end )", {"open end "}},
  };
  for (const auto& [tail, arguments] : tails)
    EXPECT_EQ(win::SplitArguments(tail), arguments) << tail;
}

}  // namespace
