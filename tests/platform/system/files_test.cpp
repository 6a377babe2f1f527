#include "platform/system/files/files.h"

#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/folderindex.h"
#include "platform/system/paths/paths.h"
#include "tests/harness/cases.h"
#include "tests/harness/disk.h"
#include "tests/harness/failingreads.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
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
};

TEST_F(Files, AMoveToAnotherFileSystemTakesTheModeAlong) {
  struct stat here, there;
  if (stat(game_.c_str(), &here) != 0 || stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev)
    GTEST_SKIP() << "there is only one file system";
  if (access("/dev/shm", W_OK) != 0) GTEST_SKIP() << "the other file system, /dev/shm, is not writable";
  const fs::path other = fs::path("/dev/shm") / sandbox_.Root().filename();
  test::WriteFile(other / "taken", "x");
  Put("a", "content", 0444);
  EXPECT_FALSE(win::RenameFile(root_ + "a", other.string() + "\\TAKEN"));
  EXPECT_TRUE(win::RenameFile(root_ + "a", other.string() + "\\a"));
  EXPECT_EQ(ReadFile(other / "a") + ReadFile(other / "taken"), "contentx");
  EXPECT_EQ(win::GetAttributes(other.string() + "\\a"), win::kAttributeArchive | win::kAttributeReadOnly);
  EXPECT_FALSE(fs::exists(game_ / "a"));
  fs::remove_all(other);
}

TEST_F(Files, KeepTheirMode) {
  Put("a.txt", "old", 0564);
  const auto mode = [&] { return static_cast<int>(fs::status(game_ / "a.txt").permissions()); };
  EXPECT_TRUE(win::SetAttributes(root_ + "a.txt", win::kAttributeArchive));
  EXPECT_EQ(mode(), 0764);
  EXPECT_TRUE(win::WriteWholeFile(root_ + "a.txt", "new") &&
              win::SetAttributes(root_ + "a.txt", win::kAttributeReadOnly));
  EXPECT_EQ(mode(), 0564);
}

TEST_F(Files, ALineReaderTellsAnErrorFromTheEnd) {
  Put("a.txt", std::string(200'000, 'x') + "\nend");
  bool hasFailed = true;
  for (int n = 0; hasFailed; ++n) {
    const test::FailingReads disk("a.txt", n + 1);
    win::LineReader reader(root_ + "a.txt");
    while (!reader.AtEnd())
      reader.ReadLine();
    EXPECT_EQ(reader.Failed(), hasFailed = disk.HasFailed()) << n;
  }
  EXPECT_TRUE(win::LineReader(root_).Failed());
  EXPECT_FALSE(win::LineReader(root_ + "none").Failed());
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
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"", {}},
      {"a\r\nb\nc\rd\r\n\n\r\r\ne\r", {"a", "b", "c", "d", "", "", "", "e"}},
      {big + "\r\n" + big + big, {big, big + big}},
  };
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

TEST_F(Files, HoldTheOldOrTheNewContentWhateverFails) {
  const std::string path = root_ + "file";
  Put("file", "old");
  int calls = 0;
  for (const bool cutShort : {false, true})
    for (int n = 0; n <= calls; ++n) {  // with 0 nothing fails
      SCOPED_TRACE(n);
      win::FileSystem& before = win::CurrentFileSystem();
      test::Disk faulty(before);
      const win::ScopedFileSystem scope(faulty);
      faulty.FailAt(n, ENOSPC, cutShort);
      EXPECT_EQ(win::WriteWholeFile(path, "new content"), n == 0);
      if (n == 0) calls = faulty.Calls();
      // The last call syncs the folder.
      EXPECT_EQ(win::ReadWholeFile(path), n == 0 || n == calls ? "new content" : "old");
      for (const auto& lasts : test::CutsOf(faulty.Log(), false, "/none", 64)) {
        test::Disk cut(before);
        test::DoWhatLasts(faulty.Log(), lasts, cut);
        const win::ScopedFileSystem afterwards(cut);
        const auto content = win::ReadWholeFile(path);
        EXPECT_TRUE(content == "new content" || (n != 0 && content == "old")) << content.value_or("none");
      }
    }
}

class Paths : public Files {
 protected:
  // The native path below the install.
  std::string Native(const std::string& text) const {
    return fs::path(win::NativePath(root_ + text)).lexically_relative(game_).string();
  }
};

TEST_F(Paths, AnExactNameWinsThenTheFirstInAnotherCase) {
  for (const char* file : {"Addon/Maps/First.bzn", "SAME.txt", "Same.txt", "café.bzm", "raw\xE9", "end ", "bare", "b"})
    Put(file);
  for (int round = 0; round < 2; ++round)
    for (const auto& row : test::Cases("platform/system/vectors/paths.jsonl"))
      EXPECT_EQ(Native(*test::Bytes(row["path"])), *test::Bytes(row["native"])) << row;
}

TEST_F(Paths, OddTextNamesNoFileAndDoesNoHarm) {
  const std::pair<std::string, const char*> cases[] = {
      {"", ""}, {"a\0x"s, ""}, {"\\..\\..", "/"}, {"a\\..\\..\\..\\none", "../../none"}, {"a\\..", "."}};
  for (const auto& [text, native] : cases)
    EXPECT_EQ(win::NativePath(text), native) << text;
  std::string deep = "none";
  for (int i = 0; i < 100'000; ++i)
    deep += "\\a";
  for (const std::string& text : {"::"s, "\xFF\\\xFE"s, deep})
    EXPECT_FALSE(win::FindNativePath(root_ + text)) << text.substr(0, 10);
}

TEST_F(Paths, DrivesAreThoseOfTheWinePrefix) {
  fs::create_directories(sandbox_.Home() / "wine/dosdevices");
  fs::create_directory_symlink(game_, sandbox_.Home() / "wine/dosdevices/c:");
  Put("Games/a.txt");
  const std::string drive = (sandbox_.Home() / "wine/dosdevices/c:").string();
  EXPECT_EQ(win::NativePath("C:\\GAMES\\A.TXT"), drive + "/Games/a.txt");
  EXPECT_EQ(win::NativePath("c:/..\\games"), drive + "/Games");
  EXPECT_FALSE(win::FindNativePath("D:\\games"));
}

TEST_F(Paths, WhatOthersChangeIsSeenAtOnce) {
  Put("Addon/Maps/a");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "Addon/Maps/a");
    fs::rename(game_ / "Addon/Maps/a", game_ / "Addon/Maps/b");
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "Addon/Maps/A");
    fs::rename(game_ / "Addon/Maps/b", game_ / "Addon/Maps/a");
    fs::rename(game_ / "Addon", game_ / "Other");
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "ADDON/MAPS/A");
    Put("addon/Maps/a");
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "addon/Maps/a");
    fs::remove_all(game_ / "addon");
    fs::rename(game_ / "Other", game_ / "Addon");
  }
}

TEST_F(Paths, AChildProcessTakesNoNewsFromItsParent) {
  Put("a");
  EXPECT_EQ(Native("A"), "a");
  fs::rename(game_ / "a", game_ / "b");
  EXPECT_EQ(test::StatusOf(test::Fork([&] { return Native("B") == "b" ? 0 : 1; })), 0);
  EXPECT_EQ(Native("A") + Native("B"), "Ab");
}

TEST_F(Files, AFolderIndexIsNeverOlderThanTheFolders) {
  for (const auto watching : {win::FolderIndex::Watching::kYes, win::FolderIndex::Watching::kNo}) {
    win::FolderIndex index(watching, 2);  // keeps fewer folders than are asked for
    for (int i = 0; i < 30; ++i) {
      const fs::path folder = game_ / std::to_string(i % 3);
      fs::create_directory(folder);
      for (const std::string name : {"", "File", "FILE", "File"}) {
        if (fs::exists(folder / "FILE"))
          fs::rename(folder / "FILE", folder / name);
        else if (!name.empty())
          test::WriteFile(folder / name, "");
        const std::string* const found = index.NamesIn(folder)->Find("file");
        EXPECT_EQ(found != nullptr ? *found : "", name);
      }
      fs::remove_all(i % 2 == 0 ? folder : folder / "File");
      EXPECT_EQ(index.NamesIn(folder) == nullptr, i % 2 == 0);
    }
  }
}

}  // namespace
