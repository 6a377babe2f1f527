#include "platform/system/files/profile.h"

#include "tests/harness/sandbox.h"
#include "tests/platform/system/vectors.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using test::RowBytes;
using test::Sandbox;

class Profile : public testing::Test {
 protected:
  Sandbox sandbox_;
  const std::filesystem::path native_ = sandbox_.Install() / "game.ini";
  const std::string file_ = sandbox_.InstallText() + "game.ini";

  void Put(const std::optional<std::string>& content) {
    std::filesystem::remove(native_);
    if (content) test::WriteFile(native_, *content);
  }
};

TEST_F(Profile, ReadsAsMeasured) {
  const auto rows = test::VectorRows("profile_read.jsonl");
  ASSERT_EQ(rows.size(), 96u);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.dump());
    Put(RowBytes(row["file"]));
    for (const auto& value : row["values"])
      EXPECT_EQ(win::GetPrivateProfileString(*RowBytes(value[0]), *RowBytes(value[1]), "", 255, file_),
                *RowBytes(value[2]));
  }
}

// What lies behind the lines that a file keeps taken apart is found all the same, and the first of a name still counts.
TEST_F(Profile, AFileReadOnceAnswersForEveryLine) {
  std::string content = "[a]\r\nfirst=1\r\n";
  for (int i = 0; i < 1000; ++i)
    content += "key" + std::to_string(i) + "=" + std::to_string(i) + "\r\n";
  Put(content + "first=2\r\n[b]\r\nlast=3");
  const win::ProfileFile file(file_);
  Put("[a]\r\nfirst=4\r\n");
  EXPECT_EQ(file.Find("A", "First"), "1");
  for (const int i : {0, 253, 254, 255, 256, 999})
    EXPECT_EQ(file.Find("a", "key" + std::to_string(i)), std::to_string(i));
  EXPECT_EQ(file.Find("b", "last"), "3");
  EXPECT_EQ(file.Find("b", "first"), std::nullopt);
}

TEST_F(Profile, WritesAsMeasured) {
  const auto rows = test::VectorRows("profile_write.jsonl");
  ASSERT_EQ(rows.size(), 45u);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.dump());
    const auto before = RowBytes(row["before"]);
    const auto after = RowBytes(row["after"]);
    // No file before and none after a set key: the folder was missing too, since a missing file alone is created.
    const bool noFolder = !before && !after;
    const std::string file = noFolder ? sandbox_.InstallText() + "missing\\game.ini" : file_;
    Put(before);
    for (const auto& call : row["calls"]) {
      const auto section = RowBytes(call[0]), key = RowBytes(call[1]), value = RowBytes(call[2]);
      EXPECT_EQ(win::WritePrivateProfileString(section, key, value, file), section && !noFolder);
    }
    EXPECT_EQ(std::filesystem::exists(native_), after.has_value());
    EXPECT_EQ(test::ReadFile(native_), after.value_or(""));
  }
}
struct EditCase {
  const char* what;
  std::string before;
  std::string after;
};

const EditCase kEdits[] = {
    {"a line keeps its LF", "[s]\nk=1\nm=2\n", "[s]\nk=new\nm=2\n"},
    {"a line keeps its CR", "[s]\rk=1\rm=2\r", "[s]\rk=new\rm=2\r"},
    {"a new key behind a last line without an end", "[s]\nm=2", "[s]\nm=2\r\nk=new\r\n"},
    {"a new key behind a bare header", "[s]", "[s]\r\nk=new\r\n"},
    {"indent and comment of the edited line go", "[s]\r\n  K\t= 1 // c\r\n", "[s]\r\nK=new\r\n"},
    {"an end-of-text mark behind other lines stays", "[s]\r\nk=1\r\n\x1a", "[s]\r\nk=new\r\n\x1a"},
    {"an end-of-text mark on the edited line stays", "[s]\r\nk=1\x1a", "[s]\r\nk=new\r\n\x1a"},
    {"NULs elsewhere stay", "\0[t]\n\0\n[s]\nk=1\n;\0"s, "\0[t]\n\0\n[s]\nk=new\n;\0"s},
    {"half a character at the end of UTF-16", "\xFF\xFE[\0s\0]\0\n\0k\0=\0\x31\x04\n\0x"s,
     "\xFF\xFE[\0s\0]\0\n\0k\0=\0n\0e\0w\0\n\0x"s},
};

TEST_F(Profile, LeavesAllOtherBytesAlone) {
  for (const EditCase& c : kEdits) {
    SCOPED_TRACE(c.what);
    Put(c.before);
    EXPECT_TRUE(win::WritePrivateProfileString("s", "k", "new", file_));
    EXPECT_EQ(test::ReadFile(native_), c.after);
  }
}

TEST_F(Profile, KeepsWindows1252BytesInUtf16Files) {
  Put("\xFF\xFE");
  const std::string value = "\x80\xE9\xC3\xA9\x81";
  ASSERT_TRUE(win::WritePrivateProfileString("s", "k", value, file_));
  EXPECT_EQ(test::ReadFile(native_).substr(16, 2), "\xAC\x20");
  EXPECT_EQ(win::GetPrivateProfileString("s", "k", "", 255, file_), value);
}

TEST_F(Profile, RefusesWhatItCannotReplaceOrRead) {
  const std::string content = "[s]\r\nk=1\r\n";
  Put(content);
  std::filesystem::permissions(native_, std::filesystem::perms::owner_read);
  EXPECT_FALSE(win::WritePrivateProfileString("s", "k", "new", file_));
  EXPECT_EQ(test::ReadFile(native_), content);
  std::filesystem::create_directory(sandbox_.Install() / "folder");
  EXPECT_FALSE(win::WritePrivateProfileString("s", "k", "new", sandbox_.InstallText() + "folder"));
  EXPECT_EQ(win::GetPrivateProfileString("s", "k", "none", 255, sandbox_.InstallText() + "folder"), "none");
}

TEST_F(Profile, EditsFilesOfManyMegabytes) {
  std::string content = "[first]\n";
  while (content.size() < 8u << 20)
    content += "key" + std::to_string(content.size()) + " = value // text\n;\n";
  const std::string head = content;
  Put(head + "[last]\nk=1");
  EXPECT_TRUE(win::WritePrivateProfileString("LAST", "K", "2", file_));
  EXPECT_TRUE(test::ReadFile(native_) == head + "[last]\nk=2\r\n");
  EXPECT_EQ(win::GetPrivateProfileString("last", "k", "", 255, file_), "2");
}

}  // namespace
