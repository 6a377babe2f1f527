#include "platform/system/text/text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace std::string_literals;

TEST(Text, NumbersAreReadAsFarAsTheyGo) {
  const struct {
    const char* text;
    double number;
  } cases[] = {
      {"12", 12},     {" \t-1.5x", -1.5}, {"+.5", .5},    {"1e2", 100},
      {"1E+2z", 100}, {"1e", 1},          {"2.5.5", 2.5}, {"1,5", 1},
      {"", 0},        {".", 0},           {"-", 0},       {"abc", 0},
      {"inf", 0},     {"0x10", 0},        {"\n1", 0},     {"1e999", INFINITY},
  };
  for (const auto& c : cases)
    EXPECT_EQ(win::LeadingNumber(c.text), c.number) << c.text;
}

TEST(Text, HalvesRoundToTheEvenNeighbour) {
  const struct {
    double value;
    std::optional<std::int16_t> rounded;
  } cases[] = {{.5, 0},          {1.5, 2},       {2.5, 2},           {-2.5, -2},
               {32767.4, 32767}, {32767.5, {}},  {-32768.5, -32768}, {-32768.6, {}},
               {1e300, {}},      {INFINITY, {}}, {-INFINITY, {}},    {NAN, {}}};
  for (const auto& c : cases)
    EXPECT_EQ(win::RoundToInt16(c.value), c.rounded) << c.value;
}

TEST(Text, BytesThatAreNoUtf8AreWindows1252) {
  const struct {
    std::string bytes, utf8;
  } cases[] = {
      {"plain", "plain"},
      {"caf\xC3\xA9", "café"},
      {"caf\xE9", "café"},
      {"\x80\x9F", "€Ÿ"},
      {"a long line of plain text, then \x93quotes\x94", "a long line of plain text, then “quotes”"},
      {"\xC0\xAF", "À¯"},                   // overlong
      {"\xED\xA0\x80", "í\xC2\xA0€"},       // surrogate
      {"\xF4\x90\x80\x80", "ô\xC2\x90€€"},  // beyond the last character
      {"\xE2\x82", "â‚"},                   // cut off
  };
  for (const auto& c : cases)
    EXPECT_EQ(win::Utf8FromBytes(c.bytes), c.utf8) << c.utf8;
}

TEST(Text, EveryByteSurvivesTheWayToUtf8AndBack) {
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(win::Windows1252FromUtf8(win::Utf8FromBytes(text)), text) << byte;
  }
  EXPECT_EQ(win::Windows1252FromUtf8("Ж"), std::nullopt);
  EXPECT_EQ(win::Windows1252FromUtf8("\xE9"), std::nullopt);
}

TEST(Text, OnlyAsciiLettersHaveACaseAndOnlySpacesAreTrimmed) {
  EXPECT_EQ(win::LowerCase("AZ[É"), "az[É");
  EXPECT_EQ(win::UpperCase("az{é"), "AZ{é");
  EXPECT_FALSE(win::EqualNoCase("É", "é"));
  EXPECT_FALSE(win::EqualNoCase("@", "`"));
  EXPECT_TRUE(win::StartsWithNoCase("BZ2HALD5", "bz2hald"));
  EXPECT_FALSE(win::StartsWithNoCase("bz2", "bz2hald"));
  EXPECT_EQ(win::Trim("  a\t "), "a\t");
  EXPECT_EQ(win::Trim("   "), "");
}

}  // namespace
