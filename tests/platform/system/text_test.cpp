#include "platform/system/text/text.h"

#include "platform/system/files/findfile.h"
#include "platform/system/files/profile.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/text/argumentlist.h"
#include "platform/system/text/compare.h"
#include "platform/system/text/wildcards.h"
#include "tests/harness/cases.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// The tables are in vectors/. Those of profile_edits, arguments, bytes, numbers, rounding and wildcards are not
// measured.
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using test::Bytes;

std::vector<json> Rows(const std::string& name) { return test::Cases("platform/system/vectors/" + name + ".jsonl"); }

// Each text of a row stands ahead of the next, in Windows-1252 bytes and in their UTF-8 spelling.
TEST(CompareForList, OrdersAsMeasured) {
  for (const json& row : Rows("sort_chains"))
    for (std::size_t i = 1; i < row.size(); ++i) {
      const std::string a = *Bytes(row[i - 1]), b = *Bytes(row[i]);
      SCOPED_TRACE(a + " < " + b);
      EXPECT_LT(win::CompareForList(a, b), 0);
      EXPECT_LT(win::CompareForList(win::Utf8FromBytes(a), b), 0);
      EXPECT_GT(win::CompareForList(b, win::Utf8FromBytes(a)), 0);
    }
  EXPECT_EQ(win::CompareForList("Co-Op \xC9", "co-op \xE9"), 0);
}

TEST(Patterns, MatchAsMeasured) {
  for (const auto& [table, matches] :
       {std::pair("wildcards", &win::MatchesWildcards), std::pair("matchspec", &win::PathMatchSpec)})
    for (const json& row : Rows(table))
      for (const std::string side : {"matches", "others"})
        for (const std::string name : row[side])
          EXPECT_EQ(matches(name, row["pattern"].get<std::string>()), side == "matches") << name << row;
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
  std::vector<json> rows = Rows("profile_read");
  for (const char* table : {"profile_write", "profile_edits"})
    std::ranges::copy(Rows(table), std::back_inserter(rows));
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
  for (const json& row : Rows("numbers"))
    EXPECT_EQ(win::LeadingNumber(row["text"].get<std::string>()), row["number"].get<double>()) << row;
  EXPECT_EQ(win::LeadingNumber("1e999"), INFINITY);
  for (const json& row : Rows("rounding"))
    EXPECT_EQ(win::RoundToInt16(row["number"]).value_or(7), row["rounded"].is_null() ? 7 : row["rounded"].get<int>())
        << row;
  EXPECT_FALSE(win::RoundToInt16(INFINITY) || win::RoundToInt16(NAN));
}

TEST(Text, BytesThatAreNoUtf8AreWindows1252) {
  for (const json& row : Rows("bytes"))
    EXPECT_EQ(win::Utf8FromBytes(*Bytes(row["bytes"])), row["utf8"]) << row;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(win::Windows1252FromUtf8(win::Utf8FromBytes(text)), text) << byte;
  }
  EXPECT_EQ(win::Windows1252FromUtf8("Ж"), std::nullopt);
}

TEST(Text, OnlyAsciiLettersHaveACaseAndOnlySpacesAreTrimmed) {
  EXPECT_EQ(win::LowerCase("AZ[É") + win::UpperCase("az{é"), "az[ÉAZ{é");
  EXPECT_FALSE(win::EqualNoCase("É", "é") || win::EqualNoCase("@", "`"));
  EXPECT_TRUE(win::StartsWithNoCase("BZ2HALD5", "bz2hald") && !win::StartsWithNoCase("bz2", "bz2hald"));
  EXPECT_EQ(win::Trim("  a\t ") + win::Trim("   "), "a\t");
}

TEST(ArgumentList, SplitsAsTheCRuntimeDoes) {
  for (const json& row : Rows("arguments")) {
    const std::string line = row["line"], tail = row["tail"];
    EXPECT_EQ(win::SplitProgram(line).program, row["program"]) << row;
    EXPECT_EQ(win::SplitProgram(line).tail, tail) << row;
    EXPECT_EQ(json(win::SplitArguments(tail)), row["arguments"]) << row;
  }
}

}  // namespace
