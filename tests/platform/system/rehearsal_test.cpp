#include "platform/system/rehearsal.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "platform/system/deeds.h"
#include "platform/system/files.h"
#include "platform/system/findfile.h"
#include "platform/system/process.h"
#include "platform/system/profile.h"
#include "platform/system/settings.h"
#include "tests/harness/difference.h"
#include "tests/harness/sandbox.h"

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

  static std::string Listed(const std::string& folder) {
    std::set<std::string> names;
    win::FolderReader reader(folder);
    for (win::FoundEntry entry; reader.Next(entry);)
      names.insert(entry.name + (entry.isFolder ? "/" : ""));
    return testing::PrintToString(names);
  }

  // So many verbs on names of chance, and all that was answered and told.
  std::string ActMany(unsigned seed) {
    std::mt19937 random(seed);
    std::string one, two, answers;
    const auto answer = [](bool done) -> std::string { return done ? "yes" : "no"; };
    const std::function<std::string()> acts[] = {
        [&] { return answer(win::RenameFile(one, two)); },
        [&] { return answer(win::DeleteFiles(one)); },
        [&] { return answer(win::DeleteFiles(root + "dir\\*")); },
        [&] { return answer(win::MakeFolder(one)); },
        [&] { return answer(win::RemoveFolder(one)); },
        [&] { return answer(win::LineWriter(one, win::WriteMode::kAppend).WriteLine("more")); },
        [&] { return answer(win::LineWriter(one, win::WriteMode::kOutput).WriteLine("new")); },
        [&] { return answer(win::WriteWholeFile(one, "whole")); },
        [&] { return answer(win::WritePrivateProfileString("s", "k", "v", one)); },
        [&] { return win::ReadWholeFile(one).value_or("none"); },
        [&] { return win::LineReader(one).ReadLine(); },
        [&] { return answer(win::FindFirstFileSucceeds(one)); },
        [&] { return std::to_string(win::GetAttributes(one).value_or(0)); },
        [&] { return Listed(one); },
        [&] { return Listed(root); },
    };
    const win::DeedWatch watch(
        [&](const win::Deed& deed) { answers += deed.target + " " + deed.source + " " + deed.why + "\n"; });
    for (int i = 0; i < 25; ++i) {
      one = root + kNames[random() % std::size(kNames)];
      two = root + kNames[random() % std::size(kNames)];
      const std::size_t which = random() % std::size(acts);
      answers += std::to_string(which) + " " + one + " " + two + ": " + acts[which]() + "\n";
    }
    return answers;
  }

  const test::Sandbox sandbox;
  const std::string root = sandbox.InstallText();
};

TEST_F(RehearsalTest, AnswersAsTheDiskWouldAndChangesNothing) {
  for (unsigned seed = 1; seed <= 60 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    MakeFiles();
    const auto before = test::Snapshot(sandbox.Install());
    std::string rehearsed;
    std::set<std::string> told;
    {
      const win::Rehearsal rehearsal;
      rehearsed = ActMany(seed);
      for (const win::PathDifference& difference : rehearsal.Differences(root))
        told.insert(difference.path.substr(root.size()));
    }
    EXPECT_EQ(test::Snapshot(sandbox.Install()), before);
    EXPECT_EQ(rehearsed, ActMany(seed));
    const auto names = test::NamesThatDiffer(before, test::Snapshot(sandbox.Install()));
    if (!names.contains("link/")) told.erase("link");  // a snapshot takes a link to a folder for one
    EXPECT_TRUE(test::AreTold(names, told)) << testing::PrintToString(names) << testing::PrintToString(told);
  }
}

TEST_F(RehearsalTest, StoresNothingAndStartsNothing) {
  const fs::path tool = sandbox.Install() / "tool", ran = sandbox.Install() / "ran";
  WriteFile(tool, "#!/bin/sh\n");
  win::SaveSetting("App", "s", "kept", "old");
  {
    const win::Rehearsal rehearsal;
    EXPECT_TRUE(win::SaveSetting("App", "s", "kept", "new") && win::SaveSetting("App", "s", "further", "x"));
    EXPECT_EQ(win::GetSetting("App", "s", "kept"), "new");
    EXPECT_FALSE(win::ShellExecute(tool.string()));  // it may not be executed
    test::WriteScript(tool, "touch '" + ran.string() + "'");
    EXPECT_TRUE(win::ShellExecute(tool.string()));
    EXPECT_FALSE(win::ShellExecute(tool.string() + "2"));
    EXPECT_TRUE(rehearsal.Differences(root).empty());
  }
  EXPECT_EQ(win::GetSetting("App", "s", "kept") + win::GetSetting("App", "s", "further"), "old");
  EXPECT_FALSE(fs::exists(ran));
  using namespace std::string_literals;
  for (const std::string& name : {""s, "\0"s, "\0a\\"s}) {  // a name ends at its first NUL
    const std::string listed = Listed(name);
    const win::Rehearsal rehearsal;
    EXPECT_EQ(Listed(name), listed);
    EXPECT_FALSE(win::FindFirstFileSucceeds(name) || win::MakeFolder(name));
  }
}

}  // namespace
