#include "platform/system/files/rehearsal.h"

#include "platform/system/files/files.h"
#include "platform/system/files/findfile.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/profile.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/process/process.h"
#include "platform/system/store/settings.h"
#include "tests/harness/difference.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

namespace {

namespace fs = std::filesystem;
using test::WriteFile;

const char* const kNames[] = {
    "a",        "A",     "b.txt", "B.TXT",   "dir",   "dir\\in", "DIR\\in\\deep", "dir\\new", "readonly",        "link",
    "link\\in", "other", "OTHER", "none\\x", "dir\\", "folder2", "b.txt. ",       "list.ini", "dir\\in\\deep\\x"};

struct RehearsalTest : testing::Test {
  void MakeFiles() {
    fs::remove_all(sandbox.Install());
    for (const char* name : {"a", "b.txt", "dir/in/deep", "dir/file", "readonly", "target/in", "list.ini"})
      WriteFile(sandbox.Install() / name, std::string("[s]\r\nk=") + name + "\r\n");
    fs::create_directory_symlink("target", sandbox.Install() / "link");
    fs::permissions(sandbox.Install() / "readonly", fs::perms::owner_read);
  }

  std::string Pick() { return Root() + kNames[random() % std::size(kNames)]; }
  std::string Root() const { return sandbox.InstallText(); }

  static std::string Listed(const std::string& folder) {
    std::vector<std::string> names;
    win::FolderReader reader(folder);
    for (win::FoundEntry entry; reader.Next(entry);)
      names.push_back(entry.name + (entry.isFolder ? "/" : ""));
    std::sort(names.begin(), names.end());
    std::string all;
    for (const std::string& name : names)
      all += name + " ";
    return all;
  }

  static std::string Said(bool done) { return done ? "yes" : "no"; }

  // One verb on names of chance, and what it answered.
  std::string Act() {
    const std::string one = Pick();
    const std::string two = Pick();
    const std::function<std::string()> acts[] = {
        [&] { return Said(win::RenameFile(one, two)); },
        [&] { return Said(win::RenameFile(two, one)); },
        [&] { return Said(win::DeleteFiles(one)); },
        [&] { return Said(win::DeleteFiles(Root() + "dir\\*")); },
        [&] { return Said(win::MakeFolder(one)); },
        [&] { return Said(win::RemoveFolder(one)); },
        [&] { return Said(win::LineWriter(one, win::WriteMode::kAppend).WriteLine("more")); },
        [&] { return Said(win::LineWriter(one, win::WriteMode::kOutput).WriteLine("new")); },
        [&] { return Said(win::WriteWholeFile(one, "whole")); },
        [&] { return Said(win::WritePrivateProfileString("s", "k", "v", one)); },
        [&] { return win::ReadWholeFile(one).value_or("none"); },
        [&] { return win::LineReader(one).ReadLine(); },
        [&] { return Said(win::FindFirstFileSucceeds(one)); },
        [&] { return std::to_string(win::GetAttributes(one).value_or(0)); },
        [&] { return Listed(one); },
        [&] { return Listed(Root()); },
    };
    const std::size_t which = random() % std::size(acts);
    return std::to_string(which) + " " + one + " " + two + ": " + acts[which]() + "\n";
  }

  // So many verbs from this seed on, and all that was answered and told.
  std::string ActMany(unsigned seed) {
    random.seed(seed);
    std::string answers;
    const win::OperationObserver observer([&](const win::FileOperation& operation) {
      answers += operation.target + " " + operation.source + " " + operation.why + "\n";
    });
    for (int i = 0; i < 25; ++i)
      answers += Act();
    return answers;
  }

  test::Sandbox sandbox;
  std::mt19937 random;
};

TEST_F(RehearsalTest, AnswersAsTheDiskWouldAndChangesNothing) {
  for (unsigned seed = 1; seed <= 60 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    MakeFiles();
    const auto before = test::Snapshot(sandbox.Install());
    std::string rehearsed;
    std::set<std::string> told;
    {
      win::Rehearsal rehearsal;
      rehearsed = ActMany(seed);
      for (const win::PathDifference& difference : rehearsal.Differences(Root()))
        told.insert(difference.path.substr(Root().size()));
    }
    EXPECT_EQ(test::Snapshot(sandbox.Install()), before);
    EXPECT_EQ(rehearsed, ActMany(seed));
    const auto names = test::NamesThatDiffer(before, test::Snapshot(sandbox.Install()));
    if (!names.contains("link/")) told.erase("link");  // a snapshot takes a link to a folder for one
    EXPECT_TRUE(test::AreTold(names, told)) << testing::PrintToString(names) << testing::PrintToString(told);
  }
}

TEST_F(RehearsalTest, StoresNothingAndStartsNothing) {
  const fs::path tool = sandbox.Install() / "tool";
  WriteFile(tool, "#!/bin/sh\ntouch '" + (sandbox.Install() / "ran").string() + "'\n");
  win::SaveSetting("App", "s", "kept", "old");
  {
    win::Rehearsal rehearsal;
    EXPECT_TRUE(win::SaveSetting("App", "s", "kept", "new"));
    EXPECT_TRUE(win::SaveSetting("App", "s", "further", "x"));
    EXPECT_EQ(win::GetSetting("App", "s", "kept"), "new");
    EXPECT_FALSE(win::ShellExecute(tool.string()));  // it may not be executed
    fs::permissions(tool, fs::perms::owner_all);
    EXPECT_TRUE(win::ShellExecute(tool.string()));
    EXPECT_FALSE(win::ShellExecute(tool.string() + "2"));
    EXPECT_TRUE(rehearsal.Differences(Root()).empty());
  }
  EXPECT_EQ(win::GetSetting("App", "s", "kept"), "old");
  EXPECT_EQ(win::GetSetting("App", "s", "further"), "");
  EXPECT_FALSE(fs::exists(sandbox.Install() / "ran"));
}

// A definition may hold any byte; the system ends a name at its first NUL.
TEST_F(RehearsalTest, NoNameIsTheNameOfNothing) {
  using namespace std::string_literals;
  for (const std::string& name : {""s, "\0"s, "\0a\\"s}) {
    const std::string listed = Listed(name);
    const bool found = win::FindFirstFileSucceeds(name);
    win::Rehearsal rehearsal;
    EXPECT_EQ(Listed(name), listed);
    EXPECT_EQ(win::FindFirstFileSucceeds(name), found);
    EXPECT_FALSE(win::MakeFolder(name));
  }
}

}  // namespace
