#include "platform/system/text/text.h"

#include "platform/system/files/findfile.h"
#include "platform/system/files/profile.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/text/argumentlist.h"
#include "platform/system/text/compare.h"
#include "platform/system/text/wildcards.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>

// The tables are in vectors/, one JSON object a line. Those of profile_edits, arguments and wildcards are not measured.
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::vector<json> Rows(const std::string& name, std::size_t count) {
  std::ifstream file(SOURCE_DIR "/tests/platform/system/vectors/" + name);
  std::vector<json> rows;
  for (std::string line; std::getline(file, line);)
    rows.push_back(json::parse(line));
  EXPECT_EQ(rows.size(), count) << name;
  return rows;
}

// A row writes a byte as the character of the same number. Nothing for null.
std::optional<std::string> Bytes(const json& text) {
  if (text.is_null()) return std::nullopt;
  std::string bytes;
  for (const char32_t c : win::CharactersFromBytes(text.get<std::string>()))
    bytes += static_cast<char>(c);
  return bytes;
}

// Each text of a row stands ahead of the next, in Windows-1252 bytes and in their UTF-8 spelling.
TEST(CompareForList, OrdersAsMeasured) {
  for (const json& row : Rows("sort_chains.jsonl", 63))
    for (std::size_t i = 1; i < row.size(); ++i) {
      const std::string a = *Bytes(row[i - 1]), b = *Bytes(row[i]);
      SCOPED_TRACE(a + " < " + b);
      EXPECT_LT(win::CompareForList(a, b), 0);
      EXPECT_LT(win::CompareForList(win::Utf8FromBytes(a), b), 0);
      EXPECT_GT(win::CompareForList(b, win::Utf8FromBytes(a)), 0);
    }
  EXPECT_EQ(win::CompareForList("Co-Op \xC9", "co-op \xE9"), 0);
}

void ExpectMatches(bool matches(std::string_view name, std::string_view pattern), const std::vector<json>& rows) {
  for (const json& row : rows)
    for (const std::string side : {"matches", "others"})
      for (const std::string name : row[side])
        EXPECT_EQ(matches(name, row["pattern"].get<std::string>()), side == "matches") << name << row;
}

TEST(Patterns, MatchAsMeasured) {
  ExpectMatches(win::MatchesWildcards, Rows("wildcards.jsonl", 9));
  ExpectMatches(win::PathMatchSpec, Rows("matchspec.jsonl", 58));
  EXPECT_TRUE(win::PathMatchSpec("caf\xE9.bmp", "CAFÉ.*"));
  std::string stars;
  for (int i = 0; i < 1'000; ++i)
    stars += "*a";
  for (const char* last : {"b", "é"})
    EXPECT_FALSE(win::PathMatchSpec(std::string(250, 'a') + last, stars + "*c*"));
}

class Profile : public testing::Test {
 protected:
  const test::Sandbox sandbox_;
  const fs::path native_ = sandbox_.Install() / "game.ini";
  const std::string file_ = sandbox_.InstallText() + "game.ini";

  void Put(const std::optional<std::string>& content) {
    fs::remove(native_);
    if (content) test::WriteFile(native_, *content);
  }
};

TEST_F(Profile, AFileReadOnceAnswersForEveryLine) {
  std::string content = "[a]\r\nfirst=1\r\n";
  for (int i = 0; i < 1000; ++i)  // more lines than it keeps taken apart
    content += "key" + std::to_string(i) + "=" + std::to_string(i) + "\r\n";
  Put(content + "first=2\r\n[b]\r\nlast=3");
  const win::ProfileFile file(file_);
  Put("[a]\r\nfirst=4\r\n");
  EXPECT_EQ(file.Find("A", "First"), "1");
  for (int i = 0; i < 1000; ++i)
    EXPECT_EQ(file.Find("a", "key" + std::to_string(i)), std::to_string(i));
  EXPECT_EQ(file.Find("b", "last"), "3");
  EXPECT_EQ(file.Find("b", "first"), std::nullopt);
}

TEST_F(Profile, ReadsAndWritesAsMeasured) {
  std::vector<json> rows = Rows("profile_read.jsonl", 96);
  for (const auto& [name, count] : {std::pair("profile_write.jsonl", 45), std::pair("profile_edits.jsonl", 10)})
    for (const json& row : Rows(name, count))
      rows.push_back(row);
  for (const json& row : rows) {
    SCOPED_TRACE(row.dump());
    const auto before = Bytes(row["before"]), after = Bytes(row.value("after", row["before"]));
    // No file before and none after a set key: the folder was missing too, since a missing file alone is created.
    const bool noFolder = !before && !after;
    const std::string file = noFolder ? sandbox_.InstallText() + "missing\\game.ini" : file_;
    Put(before);
    for (const json& call : row.value("calls", json::array())) {
      const auto section = Bytes(call[0]), key = Bytes(call[1]), value = Bytes(call[2]);
      EXPECT_EQ(win::WritePrivateProfileString(section, key, value, file), section && !noFolder);
    }
    EXPECT_EQ(win::ReadWholeFile(file), after);
    constexpr std::size_t kMaxValue = 254;  // as much of a value as the program reads
    for (const json& value : row.value("values", json::array()))
      EXPECT_EQ(win::ProfileFile(file_).Find(*Bytes(value[0]), *Bytes(value[1])).value_or("").substr(0, kMaxValue),
                *Bytes(value[2]));
  }
}

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
  for (const json& row : Rows("arguments.jsonl", 12)) {
    const std::string tail = row["tail"];
    EXPECT_EQ(win::SplitProgram(row["line"].get<std::string>()).program, row["program"]) << row;
    EXPECT_EQ(win::SplitProgram(row["line"].get<std::string>()).tail, tail) << row;
    EXPECT_EQ(win::SplitArguments(tail), row["arguments"].get<std::vector<std::string>>()) << row;
  }
}

}  // namespace
