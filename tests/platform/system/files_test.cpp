#include "platform/system/files.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "platform/system/findfile.h"
#include "platform/system/wildcards.h"
#include "tests/harness/sandbox.h"

namespace {

namespace fs = std::filesystem;
using test::ReadFile;
using Lines = std::vector<std::string>;

class Files : public testing::Test {
 protected:
  const test::Sandbox sandbox_;
  const fs::path game_ = sandbox_.Install();
  const std::string root_ = sandbox_.InstallText();

  void Put(const char* file, std::string_view content = "") const { test::WriteFile(game_ / file, content); }
  void PutReadOnly(const char* file, std::string_view content = "") const {
    Put(file, content);
    fs::permissions(game_ / file, fs::perms::owner_write, fs::perm_options::remove);
  }
  bool Has(const char* file) const { return fs::exists(fs::symlink_status(game_ / file)); }
  std::size_t Count() const { return test::Snapshot(game_).size(); }
};

TEST_F(Files, RenameNeverReplaces) {
  const struct {
    const char *from, *to;
    bool done;
    const char* then;  // what stands there afterwards
  } cases[] = {
      {"ONE.TXT", "folder\\new.txt", true, "Folder/new.txt"},
      {"one.txt", "OTHER.txt", false, "one.txt"},
      {"one.txt", "folder", false, "one.txt"},
      {"folder", "EMPTY", false, "Folder/inside"},
      {"folder\\", "Renamed\\", true, "Renamed/inside"},
      {"folder\\", "FOLDER", true, "FOLDER/inside"},
      {"one.txt", "ONE.txt. ", true, "ONE.txt"},
      {"one.txt", "one.txt", true, "one.txt"},
      {"fixed.txt", "moved.txt", true, "moved.txt"},
      {"one.txt", "dangling", false, "one.txt"},
      {"none.txt", "new.txt", false, "one.txt"},
      {"one.txt", "none\\new.txt", false, "one.txt"},
      {"folder", "folder\\below", false, "Folder/inside"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.from << " to " << c.to);
    fs::remove_all(game_);
    for (const char* file : {"one.txt", "Other.txt", "Folder/inside"})
      Put(file);
    PutReadOnly("fixed.txt");
    fs::create_directory(game_ / "empty");
    fs::create_symlink("nowhere", game_ / "dangling");
    const std::size_t before = Count();
    EXPECT_EQ(win::RenameFile(root_ + c.from, root_ + c.to), c.done);
    EXPECT_TRUE(Has(c.then));
    EXPECT_EQ(Count(), before);
  }
  EXPECT_FALSE(win::RenameFile(root_ + "Folder", ""));
}

TEST_F(Files, AMoveToAnotherFileSystemTakesTheModeAlong) {
  struct stat here, there;
  if (stat(game_.c_str(), &here) != 0 || stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev)
    GTEST_SKIP() << "there is only one file system";
  const fs::path other = fs::path("/dev/shm") / sandbox_.Root().filename();
  test::WriteFile(other / "taken", "x");
  PutReadOnly("a", "content");
  EXPECT_FALSE(win::RenameFile(root_ + "a", other.string() + "\\TAKEN"));
  EXPECT_TRUE(win::RenameFile(root_ + "a", other.string() + "\\a"));
  EXPECT_EQ(test::Snapshot(other), (std::map<std::string, std::string>{{"a", "content"}, {"taken", "x"}}));
  EXPECT_EQ(win::GetAttributes(other.string() + "\\a"), win::kAttributeArchive | win::kAttributeReadOnly);
  EXPECT_FALSE(Has("a"));
  fs::remove_all(other);
}

TEST_F(Files, DeletesByPatternFilesOnlyAndGoesOn) {
  EXPECT_TRUE(win::MakeFolder(root_ + "Bin\\"));
  for (const char* folder : {"BIN", "none\\below"})
    EXPECT_FALSE(win::MakeFolder(root_ + folder));
  for (const char* file : {"Bin/a.dat", "Bin/B.DAT", "Bin/c.txt", "Bin/noext"})
    Put(file);
  PutReadOnly("Bin/b2.dat");
  fs::create_directory(game_ / "Bin/sub.dat");
  const struct {
    const char* pattern;
    bool done;
    std::size_t left;
  } cases[] = {
      {"bin\\none*", false, 7},   {"none\\*.*", false, 7},  {"bin\\*.", true, 6},      {"BIN\\C.TXT", true, 5},
      {"bin\\sub.dat", false, 5}, {"bin\\*.DAT", false, 3}, {"bin\\b2.dat", false, 3},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(win::DeleteFiles(root_ + c.pattern), c.done) << c.pattern;
    EXPECT_EQ(Count(), c.left) << c.pattern;
  }
  EXPECT_FALSE(win::RemoveFolder(root_ + "bin"));
  EXPECT_TRUE(win::SetAttributes(root_ + "bin\\b2.dat", 0));
  EXPECT_TRUE(win::DeleteFiles(root_ + "bin\\*.*"));
  for (const char* folder : {"BIN\\SUB.DAT", "bin\\"})
    EXPECT_TRUE(win::RemoveFolder(root_ + folder));
}

TEST_F(Files, ReadOnlyBindsAndOnlyItsBitChanges) {
  PutReadOnly("a.txt", "old");
  fs::permissions(game_ / "a.txt", fs::perms::group_write | fs::perms::owner_exec, fs::perm_options::add);
  const auto mode = fs::status(game_ / "a.txt").permissions();
  EXPECT_EQ(win::GetAttributes(root_ + "A.TXT"), win::kAttributeReadOnly | win::kAttributeArchive);
  EXPECT_FALSE(win::LineWriter(root_ + "a.txt", win::WriteMode::kOutput).IsOpen());
  EXPECT_FALSE(win::WriteWholeFile(root_ + "a.txt", "new"));
  EXPECT_EQ(ReadFile(game_ / "a.txt"), "old");
  EXPECT_TRUE(win::SetAttributes(root_ + "a.txt", win::kAttributeArchive));
  EXPECT_EQ(fs::status(game_ / "a.txt").permissions(), mode | fs::perms::owner_write);
  EXPECT_TRUE(win::SetAttributes(root_ + "a.txt", win::kAttributeReadOnly));
  EXPECT_EQ(fs::status(game_ / "a.txt").permissions(), mode);
  EXPECT_TRUE(win::SetAttributes(root_, win::kAttributeReadOnly));
  EXPECT_EQ(win::GetAttributes(root_), win::kAttributeDirectory);
  EXPECT_FALSE(win::SetAttributes(root_ + "none", 0));
}

TEST_F(Files, AWholeFileIsReplacedInPlace) {
  Put("Real.txt", "old");
  fs::permissions(game_ / "Real.txt", fs::perms(0640));
  fs::create_symlink("Real.txt", game_ / "link");
  fs::create_symlink("new.txt", game_ / "dangling");
  Put(".Real.txt.new~", "left by a crash, and longer than what is written now");
  EXPECT_TRUE(win::WriteWholeFile(root_ + "LINK", "new"));
  EXPECT_TRUE(win::WriteWholeFile(root_ + "dangling", "made"));
  EXPECT_FALSE(win::WriteWholeFile(root_ + "none\\a", ""));
  EXPECT_FALSE(win::WriteWholeFile(root_, ""));
  EXPECT_EQ(ReadFile(game_ / "new.txt"), "made");
  EXPECT_EQ(ReadFile(game_ / "Real.txt"), "new");
  EXPECT_EQ(fs::status(game_ / "Real.txt").permissions(), fs::perms(0640));
  EXPECT_TRUE(fs::is_symlink(game_ / "link"));
  EXPECT_EQ(Count(), 4u);
}

TEST_F(Files, AWriteThatFailsLeavesTheOldContent) {
  Put("a.txt", "old");
  const std::string text(10'000, 'x');
  const int status = test::StatusOf(test::Fork([&] {
    const rlimit small{1'000, 1'000};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    win::LineWriter lines(root_ + "b.txt", win::WriteMode::kOutput);
    return win::WriteWholeFile(root_ + "a.txt", text) || !lines.WriteLine(text) || lines.Close() ? 1 : 0;
  }));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(ReadFile(game_ / "a.txt"), "old");
  EXPECT_FALSE(Has(".a.txt.new~"));
}

TEST_F(Files, OnlyRegularFilesAreRead) {
  ASSERT_EQ(mkfifo((game_ / "pipe").c_str(), 0600), 0);
  Put("film");
  fs::resize_file(game_ / "film", std::uintmax_t{1} << 40);
  EXPECT_EQ(win::ReadWholeFile(root_ + "film"), std::nullopt);
  for (const char* name : {"pipe", "", "none"}) {
    EXPECT_EQ(win::ReadWholeFile(root_ + name), std::nullopt) << name;
    EXPECT_TRUE(win::LineReader(root_ + name).AtEnd()) << name;
    EXPECT_EQ(win::LineWriter(root_ + name, win::WriteMode::kAppend).IsOpen(), name == std::string("none")) << name;
  }
  Put("a", std::string("\0\r\n\x1A", 4));
  EXPECT_EQ(win::ReadWholeFile(root_ + "A"), std::string("\0\r\n\x1A", 4));
}

TEST_F(Files, LinesAreReadWithEveryKindOfEndAndWrittenWithOne) {
  const std::string big(64 * 1024 - 1, 'x');  // its line end straddles two pieces
  const struct {
    std::string content;
    Lines lines;
  } cases[] = {
      {"", {}},       {"a\r\nb\nc\rd", {"a", "b", "c", "d"}}, {"\r\n\n\r\r\n", {"", "", "", ""}},
      {"a\r", {"a"}}, {big + "\r\nb\r\n", {big, "b"}},        {big + big + "\n" + big + big, {big + big, big + big}},
  };
  for (const auto& c : cases) {
    Put("a.txt", c.content);
    Lines lines;
    for (win::LineReader reader(root_ + "A.TXT"); !reader.AtEnd();)
      lines.push_back(reader.ReadLine());
    EXPECT_EQ(lines, c.lines) << c.content.substr(0, 20);
  }
  for (const auto mode : {win::WriteMode::kOutput, win::WriteMode::kAppend}) {
    win::LineWriter writer(root_ + "A.txt", mode);
    EXPECT_TRUE(writer.WriteLine("a\nb"));
    EXPECT_TRUE(writer.Close());
    EXPECT_FALSE(writer.WriteLine("late"));
  }
  EXPECT_EQ(ReadFile(game_ / "a.txt"), "a\nb\r\na\nb\r\n");
}

TEST_F(Files, AreFoundByPathAndByWildcards) {
  for (const char* file : {"Data/File.txt", " lead", ".hid"})
    Put(file);
  const struct {
    const char* path;
    bool found;
  } paths[] = {
      {"data", true},          {"data\\", false},    {"DATA\\FILE.TXT. .", true}, {"data\\file.txt\\", false},
      {"lead", false},         {" LEAD", true},      {"data\\*.TXT", true},       {"data\\*.bzm", false},
      {"data\\fil?.t*", true}, {"none\\*.*", false}, {"data\\*.*", true},         {"data\\file.txt\\x", false},
      {"d*\\file.txt", false}, {"*.hid", true},      {"data\\file.???", true},    {"data\\file.txt?", true},
  };
  for (const auto& c : paths)
    EXPECT_EQ(win::FindFirstFileSucceeds(root_ + c.path), c.found) << c.path;
  for (const char* path : {"", "\\"})
    EXPECT_FALSE(win::FindFirstFileSucceeds(path));
  const struct {
    const char *name, *pattern;
    bool match;
  } names[] = {
      {"noext", "*.*", true}, {"noext", "*.", true},   {"a.b", "*.", false},       {"a", "a?", true},
      {"abc", "a?", false},   {"a.txt", "a?.*", true}, {"a.txt", "?.txt", true},   {"ab", "a?b", false},
      {"a.b", "a?b", false},  {"É.TXT", "é.*", true},  {"a.b.txt", "*.txt", true}, {"a.txt", "*.txt ", true},
  };
  for (const auto& c : names)
    EXPECT_EQ(win::MatchesWildcards(c.name, c.pattern), c.match) << c.name << " " << c.pattern;
}

std::map<std::string, bool> Entries(win::FolderReader reader) {
  std::map<std::string, bool> entries;
  for (win::FoundEntry entry; reader.Next(entry);)
    entries[entry.name] = entry.isFolder;
  return entries;
}

TEST_F(Files, AFolderReaderShowsEveryEntryAndFollowsLinks) {
  Put("Sub/.hid");
  fs::create_directory_symlink("Sub", game_ / "link");
  fs::create_symlink("nowhere", game_ / "broken");
  win::FolderReader reader(root_);
  EXPECT_EQ(Entries(reader.Descend("link")), (std::map<std::string, bool>{{".", true}, {"..", true}, {".hid", false}}));
  for (const char* name : {"none", "broken"})
    EXPECT_FALSE(reader.Descend(name).IsOpen());
  EXPECT_EQ(Entries(std::move(reader)),
            (std::map<std::string, bool>{{".", true}, {"..", true}, {"Sub", true}, {"link", true}, {"broken", false}}));
  EXPECT_FALSE(win::FolderReader(root_ + "sub\\.hid").IsOpen());
}

}  // namespace
