#include "platform/system/paths/paths.h"

#include "platform/system/filesystem/folderindex.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class Paths : public testing::Test {
 protected:
  test::Sandbox sandbox_;
  const fs::path game_ = sandbox_.Install();

  void Put(const fs::path& file) { test::WriteFile(game_ / file, ""); }

  // The native path below the install.
  std::string Native(const std::string& text) {
    return fs::path(win::NativePath(sandbox_.InstallText() + text)).lexically_relative(game_).string();
  }
};

TEST_F(Paths, AnExactNameWinsThenTheFirstInAnotherCase) {
  for (const char* file : {"Addon/Maps/First.bzn", "SAME.txt", "Same.txt", "café.bzm", "raw\xE9", "end ", "bare", "b"})
    Put(file);
  const struct {
    std::string text, native;
  } cases[] = {
      {"Addon\\Maps\\First.bzn", "Addon/Maps/First.bzn"},
      {"ADDON/maps\\\\FIRST.BZN", "Addon/Maps/First.bzn"},
      {"addon\\", "Addon/"},
      {"Same.txt", "Same.txt"},
      {"sAME.TXT", "SAME.txt"},
      {"CAF\xE9.bzm", "café.bzm"},
      {"RAWé", "raw\xE9"},
      {"addon\\None\\First.bzn", "Addon/None/First.bzn"},
      {"addon\\New. .", "Addon/New"},
      {"n\xE9w", "néw"},
      {"end ", "end "},
      {"BARE. .", "bare"},
      {"bare.\\..\\B", "b"},
      {"gone\\..\\addon\\.\\maps", "Addon/Maps"},
      {"b\\below", "b/below"},
  };
  for (int round = 0; round < 2; ++round)
    for (const auto& c : cases)
      EXPECT_EQ(Native(c.text), c.native) << c.text;
}

TEST_F(Paths, OddTextNamesNoFileAndDoesNoHarm) {
  EXPECT_EQ(win::NativePath(""), "");
  EXPECT_EQ(win::NativePath(game_.string() + "\0x"s), "");
  EXPECT_EQ(win::NativePath("\\"), "/");
  EXPECT_EQ(win::NativePath("\\..\\.."), "/");
  EXPECT_EQ(win::NativePath("a\\..\\..\\..\\none"), "../../none");
  EXPECT_EQ(win::NativePath("a\\.."), ".");
  for (const std::string& text : {"::"s, "\xFF\\\xFE"s, std::string(100'000, '\\'), std::string(100'000, 'a'), [] {
                                    std::string deep;
                                    for (int i = 0; i < 100'000; ++i)
                                      deep += "\\a";
                                    return deep;
                                  }()})
    EXPECT_FALSE(win::FindNativePath(sandbox_.InstallText() + "none" + text)) << text.substr(0, 10);
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
  const auto found = [&] { return win::FindNativePath(sandbox_.InstallText() + "ADDON\\MAPS\\A").has_value(); };
  EXPECT_TRUE(found());
  for (int i = 0; i < 3; ++i) {
    fs::rename(game_ / "Addon/Maps/a", game_ / "Addon/Maps/b");
    EXPECT_FALSE(found());
    fs::rename(game_ / "Addon/Maps/b", game_ / "Addon/Maps/A");
    EXPECT_TRUE(found());
    fs::rename(game_ / "Addon", game_ / "Other");
    EXPECT_FALSE(found());
    Put("addon/Maps/a");
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "addon/Maps/a");
    fs::remove_all(game_ / "addon");
    fs::rename(game_ / "Other", game_ / "Addon");
    EXPECT_TRUE(found());
    fs::rename(game_ / "Addon/Maps/A", game_ / "Addon/Maps/a");
    EXPECT_EQ(Native("addon\\maps\\A"), "Addon/Maps/a");
  }
  Put("ADDON/Maps/a");
  EXPECT_EQ(Native("ADDON\\MAPS\\A"), "ADDON/Maps/a");
  EXPECT_EQ(Native("addon\\MAPS\\A"), "ADDON/Maps/a");
}

TEST_F(Paths, AChildProcessTakesNoNewsFromItsParent) {
  Put("a");
  EXPECT_EQ(Native("A"), "a");
  fs::rename(game_ / "a", game_ / "b");
  const pid_t child = fork();
  if (child == 0) _exit(Native("B") == "b" ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Native("A"), "A");
  EXPECT_EQ(Native("B"), "b");
}

class FolderIndexTest : public testing::TestWithParam<win::FolderIndex::Watching> {};

TEST_P(FolderIndexTest, IsNeverOlderThanTheFolder) {
  const test::Sandbox sandbox;
  const fs::path folder = sandbox.Install();
  win::FolderIndex index(GetParam());
  const auto find = [&](const char* name) -> std::string {
    const win::FolderNames* const names = index.NamesIn(folder);
    const std::string* const found = names != nullptr ? names->Find(name) : nullptr;
    return found != nullptr ? *found : "";
  };
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(find("file"), "");
    test::WriteFile(folder / "File", "");
    EXPECT_EQ(find("file"), "File");
    test::WriteFile(folder / "FILE", "");
    EXPECT_EQ(find("file"), "FILE");
    fs::rename(folder / "FILE", folder / "File");
    EXPECT_EQ(find("file"), "File");
    fs::remove_all(folder);
    EXPECT_EQ(index.NamesIn(folder), nullptr);
    fs::create_directory(folder);
  }
}

TEST_P(FolderIndexTest, KnowsMoreFoldersThanItKeeps) {
  const test::Sandbox sandbox;
  for (const char* number : {"1", "2", "3"})
    test::WriteFile(sandbox.Install() / number / "File"s.append(number), "");
  win::FolderIndex index(GetParam(), 2);
  for (const char* number : {"1", "2", "1", "3", "1", "2", "3"}) {
    const win::FolderNames* const names = index.NamesIn(sandbox.Install() / number);
    ASSERT_NE(names, nullptr);
    EXPECT_NE(names->Find("FILE"s + number), nullptr) << number;
  }
}

INSTANTIATE_TEST_SUITE_P(Watching, FolderIndexTest,
                         testing::Values(win::FolderIndex::Watching::kYes, win::FolderIndex::Watching::kNo));

}  // namespace
