#include "platform/system/files/files.h"

#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

class Files : public testing::Test {
 protected:
  test::Sandbox sandbox_;
  const fs::path game_ = sandbox_.Install();
  const std::string root_ = sandbox_.InstallText();

  void Put(const char* file, std::string_view content = "") { test::WriteFile(game_ / file, content); }
  void PutReadOnly(const char* file, std::string_view content = "") {
    Put(file, content);
    fs::permissions(game_ / file, fs::perms::owner_write, fs::perm_options::remove);
  }
  bool Has(const char* file) { return fs::symlink_status(game_ / file).type() != fs::file_type::not_found; }
  std::vector<std::string> Lines(const std::string& file) {
    std::vector<std::string> lines;
    for (win::LineReader reader(root_ + file); !reader.AtEnd();)
      lines.push_back(reader.ReadLine());
    return lines;
  }
};

TEST_F(Files, RenameNeverReplaces) {
  const struct {
    const char *from, *to;
    bool done;
    const char* then;  // what stands there afterwards
  } cases[] = {
      {"one.txt", "new.txt", true, "new.txt"},
      {"ONE.TXT", "folder\\new.txt", true, "Folder/new.txt"},
      {"one.txt", "OTHER.txt", false, "one.txt"},
      {"one.txt", "folder", false, "one.txt"},
      {"folder", "EMPTY", false, "Folder/inside"},
      {"folder\\", "Renamed\\", true, "Renamed/inside"},
      {"folder\\", "FOLDER", true, "FOLDER/inside"},
      {"one.txt", "One.txt", true, "One.txt"},
      {"one.txt", "ONE.txt. ", true, "ONE.txt"},
      {"one.txt", "one.txt", true, "one.txt"},
      {"fixed.txt", "moved.txt", true, "moved.txt"},
      {"one.txt", "dangling", false, "one.txt"},
      {"none.txt", "new.txt", false, "one.txt"},
      {"one.txt", "none\\new.txt", false, "one.txt"},
      {"folder", "folder\\below", false, "Folder/inside"},
      {"one.txt", "", false, "one.txt"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.from << " to " << c.to);
    for (const auto& entry : fs::directory_iterator(game_))
      fs::remove_all(entry.path());
    for (const char* file : {"one.txt", "Other.txt", "Folder/inside"})
      Put(file);
    PutReadOnly("fixed.txt");
    fs::create_directory(game_ / "empty");
    fs::create_symlink("nowhere", game_ / "dangling");
    const auto before = test::Snapshot(game_).size();
    EXPECT_EQ(win::RenameFile(root_ + c.from, *c.to == '\0' ? "" : root_ + c.to), c.done);
    EXPECT_TRUE(Has(c.then));
    EXPECT_EQ(test::Snapshot(game_).size(), before);
  }
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
  for (const char* file : {"bin/a.dat", "bin/B.DAT", "bin/c.txt", "bin/noext", "bin/sub.dat/x"})
    Put(file);
  PutReadOnly("bin/b2.dat");
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
    EXPECT_EQ(test::Snapshot(game_ / "bin").size(), c.left) << c.pattern;
  }
  EXPECT_TRUE(win::SetAttributes(root_ + "bin\\b2.dat", 0));
  EXPECT_TRUE(win::DeleteFiles(root_ + "bin\\*.*"));
  EXPECT_EQ(test::Snapshot(game_ / "bin").size(), 2u);
}

TEST_F(Files, ReadOnlyBindsAndOnlyItsBitChanges) {
  PutReadOnly("a.txt", "old");
  fs::permissions(game_ / "a.txt", fs::perms::group_write | fs::perms::owner_exec, fs::perm_options::add);
  const auto mode = fs::status(game_ / "a.txt").permissions();
  EXPECT_EQ(win::GetAttributes(root_ + "A.TXT"), win::kAttributeReadOnly | win::kAttributeArchive);
  EXPECT_FALSE(win::LineWriter(root_ + "a.txt", win::WriteMode::kOutput).IsOpen());
  EXPECT_FALSE(win::WriteWholeFile(root_ + "a.txt", "new"));
  EXPECT_FALSE(win::DeleteFiles(root_ + "a.txt"));
  EXPECT_EQ(test::ReadFile(game_ / "a.txt"), "old");
  EXPECT_TRUE(win::SetAttributes(root_ + "a.txt", win::kAttributeArchive));
  EXPECT_EQ(fs::status(game_ / "a.txt").permissions(), mode | fs::perms::owner_write);
  EXPECT_TRUE(win::SetAttributes(root_ + "a.txt", win::kAttributeReadOnly));
  EXPECT_EQ(fs::status(game_ / "a.txt").permissions(), mode);
  EXPECT_TRUE(win::SetAttributes(root_, win::kAttributeReadOnly));
  EXPECT_EQ(win::GetAttributes(root_), win::kAttributeDirectory);
  EXPECT_FALSE(win::SetAttributes(root_ + "none", 0));
}

TEST_F(Files, FoldersAreMadeAndRemovedWhateverTheCase) {
  EXPECT_TRUE(win::MakeFolder(root_ + "Logs\\"));
  EXPECT_FALSE(win::MakeFolder(root_ + "LOGS"));
  Put("Logs/a");
  EXPECT_FALSE(win::RemoveFolder(root_ + "logs"));
  EXPECT_TRUE(win::DeleteFiles(root_ + "logs\\?"));
  EXPECT_TRUE(win::RemoveFolder(root_ + "logs\\"));
  EXPECT_FALSE(win::MakeFolder(root_ + "none\\below"));
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
  EXPECT_EQ(test::ReadFile(game_ / "new.txt"), "made");
  EXPECT_EQ(test::ReadFile(game_ / "Real.txt"), "new");
  EXPECT_EQ(fs::status(game_ / "Real.txt").permissions(), fs::perms(0640));
  EXPECT_TRUE(fs::is_symlink(game_ / "link"));
  EXPECT_EQ(test::Snapshot(game_).size(), 4u);
}

TEST_F(Files, AWriteThatFailsLeavesTheOldContent) {
  Put("a.txt", "old");
  rlimit limit;
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{1'000, limit.rlim_max};
  const auto handler = signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_FALSE(win::WriteWholeFile(root_ + "a.txt", std::string(10'000, 'x')));
  win::LineWriter lines(root_ + "b.txt", win::WriteMode::kOutput);
  EXPECT_TRUE(lines.WriteLine(std::string(10'000, 'x')));
  EXPECT_FALSE(lines.Close());
  setrlimit(RLIMIT_FSIZE, &limit);
  signal(SIGXFSZ, handler);
  EXPECT_EQ(test::ReadFile(game_ / "a.txt"), "old");
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

TEST_F(Files, LinesEndAtEveryKindOfEnd) {
  const std::string big(64 * 1024 - 1, 'x');  // its line end straddles two pieces
  const std::string huge(1'000'000, 'y');
  const struct {
    std::string content;
    std::vector<std::string> lines;
  } cases[] = {
      {"", {}},
      {"a", {"a"}},
      {"a\r\nb\nc\rd", {"a", "b", "c", "d"}},
      {"\r\n\n\r\r\n", {"", "", "", ""}},
      {"a\r", {"a"}},
      {big + "\r\nb\r\n", {big, "b"}},
      {huge + "\n" + huge, {huge, huge}},
  };
  for (const auto& c : cases) {
    Put("a.txt", c.content);
    EXPECT_EQ(Lines("A.TXT"), c.lines) << c.content.substr(0, 20);
  }
}

TEST_F(Files, LinesAreWrittenAndAppended) {
  for (const auto mode : {win::WriteMode::kOutput, win::WriteMode::kAppend, win::WriteMode::kAppend}) {
    win::LineWriter writer(root_ + "New.txt", mode);
    EXPECT_TRUE(writer.WriteLine("a\nb"));
    EXPECT_TRUE(writer.Close());
    EXPECT_FALSE(writer.WriteLine("late"));
  }
  EXPECT_EQ(test::ReadFile(game_ / "New.txt"), "a\nb\r\na\nb\r\na\nb\r\n");
  win::LineWriter(root_ + "new.TXT", win::WriteMode::kOutput);
  EXPECT_EQ(test::ReadFile(game_ / "New.txt"), "");
}

}  // namespace
