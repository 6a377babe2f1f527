#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "platform/system/compare.h"
#include "platform/system/findfile.h"
#include "platform/system/profile.h"
#include "platform/system/text.h"
#include "tests/harness/sandbox.h"

// The order of lists, patterns and profile files, as tables of vectors/: one JSON object a line. All but those of
// profile_edits.jsonl are measured.
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

TEST(PathMatchSpec, MatchesAsMeasured) {
  for (const json& row : Rows("matchspec.jsonl", 58))
    for (const std::string side : {"matches", "others"})
      for (const std::string name : row[side])
        EXPECT_EQ(win::PathMatchSpec(name, row["pattern"].get<std::string>()), side == "matches") << name << row;
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
  void ExpectValues(const json& row) {
    for (const json& value : row.value("values", json::array()))
      EXPECT_EQ(win::GetPrivateProfileString(*Bytes(value[0]), *Bytes(value[1]), "", 255, file_), *Bytes(value[2]));
  }
};

TEST_F(Profile, ReadsAsMeasured) {
  for (const json& row : Rows("profile_read.jsonl", 96)) {
    SCOPED_TRACE(row.dump());
    Put(Bytes(row["file"]));
    ExpectValues(row);
  }
}

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

TEST_F(Profile, WritesAsMeasuredAndLeavesAllOtherBytesAlone) {
  std::vector<json> rows = Rows("profile_write.jsonl", 45);
  for (const json& row : Rows("profile_edits.jsonl", 10))
    rows.push_back(row);
  for (const json& row : rows) {
    SCOPED_TRACE(row.dump());
    const auto before = Bytes(row["before"]), after = Bytes(row["after"]);
    // No file before and none after a set key: the folder was missing too, since a missing file alone is created.
    const bool noFolder = !before && !after;
    const std::string file = noFolder ? sandbox_.InstallText() + "missing\\game.ini" : file_;
    Put(before);
    for (const json& call : row["calls"]) {
      const auto section = Bytes(call[0]), key = Bytes(call[1]), value = Bytes(call[2]);
      EXPECT_EQ(win::WritePrivateProfileString(section, key, value, file), section && !noFolder);
    }
    EXPECT_EQ(fs::exists(native_), after.has_value());
    EXPECT_EQ(test::ReadFile(native_), after.value_or(""));
    ExpectValues(row);
  }
}

TEST_F(Profile, RefusesWhatItCannotReplaceOrRead) {
  Put("[s]\r\nk=1\r\n");
  fs::permissions(native_, fs::perms::owner_read);
  fs::create_directory(sandbox_.Install() / "folder");
  for (const std::string& file : {file_, sandbox_.InstallText() + "folder"})
    EXPECT_FALSE(win::WritePrivateProfileString("s", "k", "new", file));
  EXPECT_EQ(test::ReadFile(native_), "[s]\r\nk=1\r\n");
  EXPECT_EQ(win::GetPrivateProfileString("s", "k", "none", 255, sandbox_.InstallText() + "folder"), "none");
}

}  // namespace
