#include "platform/system/paths.h"

#include <gtest/gtest.h>

#include "platform/system/folderindex.h"
#include "tests/harness/sandbox.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class Paths : public testing::Test {
 protected:
  const test::Sandbox sandbox_;
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
  const std::pair<std::string, std::string> cases[] = {
      {"ADDON/maps\\\\FIRST.BZN", "Addon/Maps/First.bzn"},
      {"Same.txt", "Same.txt"},
      {"sAME.TXT", "SAME.txt"},
      {"CAF\xE9.bzm", "café.bzm"},
      {"RAWé", "raw\xE9"},
      {"addon\\None\\First.bzn", "Addon/None/First.bzn"},
      {"addon\\N\xE9w. .", "Addon/Néw"},
      {"end ", "end "},
      {"BARE. .", "bare"},
      {"bare.\\..\\B", "b"},
      {"gone\\..\\addon\\.\\maps\\", "Addon/Maps/"},
      {"b\\below", "b/below"},
  };
  for (int round = 0; round < 2; ++round)
    for (const auto& [text, native] : cases)
      EXPECT_EQ(Native(text), native) << text;
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
    EXPECT_FALSE(win::FindNativePath(sandbox_.InstallText() + text)) << text.substr(0, 10);
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
  const auto move = [&](const char* from, const char* to) { fs::rename(game_ / from, game_ / to); };
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "Addon/Maps/a");
    move("Addon/Maps/a", "Addon/Maps/b");
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "Addon/Maps/A");
    move("Addon/Maps/b", "Addon/Maps/a");
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "Addon/Maps/a");
    move("Addon", "Other");
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "ADDON/MAPS/A");
    Put("addon/Maps/a");
    EXPECT_EQ(Native("ADDON\\MAPS\\A"), "addon/Maps/a");
    fs::remove_all(game_ / "addon");
    move("Other", "Addon");
  }
  Put("ADDON/Maps/a");
  EXPECT_EQ(Native("addon\\MAPS\\A"), "ADDON/Maps/a");
}

TEST_F(Paths, AChildProcessTakesNoNewsFromItsParent) {
  Put("a");
  EXPECT_EQ(Native("A"), "a");
  fs::rename(game_ / "a", game_ / "b");
  EXPECT_EQ(test::StatusOf(test::Fork([&] { return Native("B") == "b" ? 0 : 1; })), 0);
  EXPECT_EQ(Native("A"), "A");
  EXPECT_EQ(Native("B"), "b");
}

TEST(FolderIndex, IsNeverOlderThanTheFolders) {
  for (const auto watching : {win::FolderIndex::Watching::kYes, win::FolderIndex::Watching::kNo}) {
    const test::Sandbox sandbox;
    win::FolderIndex index(watching, 2);  // keeps fewer folders than are asked for
    for (int i = 0; i < 30; ++i) {
      const fs::path folder = sandbox.Install() / std::to_string(i % 3);
      const auto find = [&](const char* name) -> std::string {
        const win::FolderNames* const names = index.NamesIn(folder);
        return names != nullptr && names->Find(name) != nullptr ? *names->Find(name) : "";
      };
      fs::create_directory(folder);
      EXPECT_EQ(find("file"), "");
      test::WriteFile(folder / "File", "");
      EXPECT_EQ(find("file"), "File");
      test::WriteFile(folder / "FILE", "");
      EXPECT_EQ(find("file"), "FILE");
      fs::rename(folder / "FILE", folder / "File");
      EXPECT_EQ(find("file"), "File");
      fs::remove_all(i % 2 == 0 ? folder : folder / "File");
      EXPECT_EQ(index.NamesIn(folder) == nullptr, i % 2 == 0);
    }
  }
}

}  // namespace
