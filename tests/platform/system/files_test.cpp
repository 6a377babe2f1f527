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

class Files : public testing::Test {
 protected:
  const test::Sandbox sandbox_;
  const fs::path game_ = sandbox_.Install();
  const std::string root_ = sandbox_.InstallText();

  void Put(const char* file, std::string_view content = "", int mode = 0644) const {
    test::WriteFile(game_ / file, content);
    fs::permissions(game_ / file, fs::perms(mode));
  }
  bool Has(const char* file) const { return fs::exists(fs::symlink_status(game_ / file)); }
  std::size_t Count() const { return test::Snapshot(game_).size(); }
};

TEST_F(Files, RenameNeverReplaces) {
  const struct {
    const char *from, *to, *then;  // the last stands there afterwards
  } cases[] = {
      {"ONE.TXT", "folder\\new.txt", "Folder/new.txt"},
      {"folder\\", "Renamed\\", "Renamed/inside"},
      {"folder\\", "FOLDER", "FOLDER/inside"},
      {"one.txt", "ONE.txt. ", "ONE.txt"},
      {"one.txt", "one.txt", "one.txt"},
      {"fixed.txt", "moved.txt", "moved.txt"},
      {"one.txt", "OTHER.txt", nullptr},
      {"one.txt", "folder", nullptr},
      {"folder", "EMPTY", nullptr},
      {"one.txt", "dangling", nullptr},
      {"none.txt", "new.txt", nullptr},
      {"one.txt", "none\\new.txt", nullptr},
      {"folder", "folder\\below", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.from << " to " << c.to);
    fs::remove_all(game_);
    for (const char* file : {"one.txt", "Other.txt", "Folder/inside"})
      Put(file);
    Put("fixed.txt", "", 0444);
    fs::create_directory(game_ / "empty");
    fs::create_symlink("nowhere", game_ / "dangling");
    const auto before = test::Snapshot(game_);
    EXPECT_EQ(win::RenameFile(root_ + c.from, root_ + c.to), c.then != nullptr);
    EXPECT_TRUE(c.then != nullptr ? Has(c.then) : test::Snapshot(game_) == before);
    EXPECT_EQ(Count(), before.size());
  }
  EXPECT_FALSE(win::RenameFile(root_ + "Folder", ""));
}

TEST_F(Files, AMoveToAnotherFileSystemTakesTheModeAlong) {
  struct stat here, there;
  if (stat(game_.c_str(), &here) != 0 || stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev)
    GTEST_SKIP() << "there is only one file system";
  const fs::path other = fs::path("/dev/shm") / sandbox_.Root().filename();
  test::WriteFile(other / "taken", "x");
  Put("a", "content", 0444);
  EXPECT_FALSE(win::RenameFile(root_ + "a", other.string() + "\\TAKEN"));
  EXPECT_TRUE(win::RenameFile(root_ + "a", other.string() + "\\a"));
  EXPECT_EQ(ReadFile(other / "a") + ReadFile(other / "taken"), "contentx");
  EXPECT_EQ(win::GetAttributes(other.string() + "\\a"), win::kAttributeArchive | win::kAttributeReadOnly);
  EXPECT_FALSE(Has("a"));
  fs::remove_all(other);
}

TEST_F(Files, DeletesByPatternFilesOnlyAndGoesOn) {
  EXPECT_TRUE(win::MakeFolder(root_ + "Bin\\") && win::MakeFolder(root_ + "BIN\\sub.dat"));
  EXPECT_FALSE(win::MakeFolder(root_ + "BIN") || win::MakeFolder(root_ + "none\\below"));
  for (const char* file : {"Bin/a.dat", "Bin/B.DAT", "Bin/c.txt", "Bin/noext"})
    Put(file);
  Put("Bin/b2.dat", "", 0444);
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
  EXPECT_TRUE(win::SetAttributes(root_ + "bin\\b2.dat", 0) && win::DeleteFiles(root_ + "bin\\*.*"));
  EXPECT_TRUE(win::RemoveFolder(root_ + "BIN\\SUB.DAT") && win::RemoveFolder(root_ + "bin\\"));
}

TEST_F(Files, ReadOnlyBindsAndOnlyItsBitChanges) {
  Put("a.txt", "old", 0564);
  const auto mode = [&] { return static_cast<int>(fs::status(game_ / "a.txt").permissions()); };
  EXPECT_EQ(win::GetAttributes(root_ + "A.TXT"), win::kAttributeReadOnly | win::kAttributeArchive);
  EXPECT_FALSE(win::LineWriter(root_ + "a.txt", win::WriteMode::kOutput).IsOpen());
  EXPECT_FALSE(win::WriteWholeFile(root_ + "a.txt", "new"));
  EXPECT_EQ(ReadFile(game_ / "a.txt"), "old");
  EXPECT_TRUE(win::SetAttributes(root_ + "a.txt", win::kAttributeArchive));
  EXPECT_EQ(mode(), 0764);
  EXPECT_TRUE(win::SetAttributes(root_ + "a.txt", win::kAttributeReadOnly));
  EXPECT_EQ(mode(), 0564);
  EXPECT_TRUE(win::SetAttributes(root_, win::kAttributeReadOnly));
  EXPECT_EQ(win::GetAttributes(root_), win::kAttributeDirectory);
  EXPECT_FALSE(win::SetAttributes(root_ + "none", 0));
}

TEST_F(Files, AWholeFileIsReplacedInPlace) {
  Put("Real.txt", "old", 0640);
  fs::create_symlink("Real.txt", game_ / "link");
  fs::create_symlink("new.txt", game_ / "dangling");
  Put(".Real.txt.new~", "left by a crash, and longer than what is written now");
  EXPECT_TRUE(win::WriteWholeFile(root_ + "LINK", "new") && win::WriteWholeFile(root_ + "dangling", "made"));
  EXPECT_FALSE(win::WriteWholeFile(root_ + "none\\a", "") || win::WriteWholeFile(root_, ""));
  EXPECT_EQ(ReadFile(game_ / "new.txt") + ReadFile(game_ / "Real.txt"), "madenew");
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
  for (const char* name : {"film", "pipe", "", "none"}) {
    EXPECT_EQ(win::ReadWholeFile(root_ + name), std::nullopt) << name;
    EXPECT_EQ(win::LineReader(root_ + name).AtEnd(), name != std::string("film")) << name;
  }
  for (const char* name : {"pipe", ""})
    EXPECT_FALSE(win::LineWriter(root_ + name, win::WriteMode::kAppend).IsOpen()) << name;
}

TEST_F(Files, LinesAreReadWithEveryKindOfEndAndWrittenWithOne) {
  const std::string big(64 * 1024 - 1, 'x');  // its line end straddles two pieces
  const std::pair<std::string, std::vector<std::string>> cases[] = {{"", {}},
                                                                    {"a\r\nb\nc\rd", {"a", "b", "c", "d"}},
                                                                    {"\r\n\n\r\r\n", {"", "", "", ""}},
                                                                    {"a\r", {"a"}},
                                                                    {big + "\r\n" + big + big, {big, big + big}}};
  for (const auto& [content, lines] : cases) {
    Put("a.txt", content);
    std::vector<std::string> read;
    for (win::LineReader reader(root_ + "A.TXT"); !reader.AtEnd();)
      read.push_back(reader.ReadLine());
    EXPECT_EQ(read, lines) << content.substr(0, 20);
  }
  for (const auto mode : {win::WriteMode::kOutput, win::WriteMode::kAppend}) {
    win::LineWriter writer(root_ + "A.txt", mode);
    EXPECT_TRUE(writer.WriteLine("a\nb") && writer.Close());
    EXPECT_FALSE(writer.WriteLine("late"));
  }
  EXPECT_EQ(win::ReadWholeFile(root_ + "a.txt"), "a\nb\r\na\nb\r\n");
}

TEST_F(Files, AreFoundByPathAndByWildcards) {
  for (const char* file : {"Data/File.txt", " lead", ".hid"})
    Put(file);
  for (const char* path : {"data", "DATA\\FILE.TXT. .", " LEAD", "data\\*.TXT", "data\\fil?.t*", "data\\*.*", "*.hid",
                           "data\\file.???", "data\\file.txt?"})
    EXPECT_TRUE(win::FindFirstFileSucceeds(root_ + path)) << path;
  for (const char* path :
       {"data\\", "data\\file.txt\\", "lead", "data\\*.bzm", "none\\*.*", "data\\file.txt\\x", "d*\\file.txt"})
    EXPECT_FALSE(win::FindFirstFileSucceeds(root_ + path)) << path;
  EXPECT_FALSE(win::FindFirstFileSucceeds("") || win::FindFirstFileSucceeds("\\"));
  const struct {
    const char *name, *matches, *others;
  } names[] = {{"noext", "*.*", "*.x"}, {"noext", "*.", "no"},      {"a.b", "*.b", "*."},       {"a", "a?", "a?b"},
               {"abc", "a??", "a?"},    {"a.txt", "a?.*", "a*b"},   {"a.txt", "?.txt", "?txt"}, {"ab", "a?", "a?b"},
               {"É.TXT", "é.*", "e.*"}, {"a.b.txt", "*.txt", "*b"}, {"a.b", "*.b ", "a?b"}};
  for (const auto& c : names) {
    EXPECT_TRUE(win::MatchesWildcards(c.name, c.matches)) << c.name << " " << c.matches;
    EXPECT_FALSE(win::MatchesWildcards(c.name, c.others)) << c.name << " " << c.others;
  }
}

TEST_F(Files, AFolderReaderShowsEveryEntryAndFollowsLinks) {
  using Entries = std::map<std::string, bool>;  // true for a folder
  Put("Sub/.hid");
  fs::create_directory_symlink("Sub", game_ / "link");
  fs::create_symlink("nowhere", game_ / "broken");
  const auto entries = [](win::FolderReader reader) {
    Entries found;
    for (win::FoundEntry entry; reader.Next(entry);)
      found[entry.name] = entry.isFolder;
    return found;
  };
  win::FolderReader reader(root_);
  EXPECT_EQ(entries(reader.Descend("link")), (Entries{{".", true}, {"..", true}, {".hid", false}}));
  EXPECT_FALSE(reader.Descend("none").IsOpen() || reader.Descend("broken").IsOpen());
  EXPECT_EQ(entries(std::move(reader)),
            (Entries{{".", true}, {"..", true}, {"Sub", true}, {"link", true}, {"broken", false}}));
  EXPECT_FALSE(win::FolderReader(root_ + "sub\\.hid").IsOpen());
}

}  // namespace
