#include "platform/system/files/rehearsal.h"

#include "platform/system/files/files.h"
#include "platform/system/files/findfile.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/profile.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/process/process.h"
#include "platform/system/store/settings.h"
#include "tests/harness/cases.h"
#include "tests/harness/difference.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace {

namespace fs = std::filesystem;
using test::WriteFile;

const std::string kVerbs[] = {"rename", "delete", "make", "remove", "append",     "print", "write",
                              "set",    "read",   "line", "find",   "attributes", "list",  "readonly"};

std::string Do(const std::string& verb, const std::string& path, const std::string& second) {
  const auto said = [](bool done) -> std::string { return done ? "yes" : "no"; };
  if (verb == "rename") return said(win::RenameFile(path, second));
  if (verb == "delete") return said(win::DeleteFiles(path));
  if (verb == "make") return said(win::MakeFolder(path));
  if (verb == "remove") return said(win::RemoveFolder(path));
  if (verb == "append") return said(win::LineWriter(path, win::WriteMode::kAppend).WriteLine("more"));
  if (verb == "print") return said(win::LineWriter(path, win::WriteMode::kOutput).WriteLine("new"));
  if (verb == "write") return said(win::WriteWholeFile(path, "whole"));
  if (verb == "set") return said(win::WritePrivateProfileString("s", "k", "v", path));
  if (verb == "read") return win::ReadWholeFile(path).value_or("none");
  if (verb == "line") return win::LineReader(path).ReadLine();
  if (verb == "find") return said(win::FindFirstFileSucceeds(path));
  if (verb == "attributes") return std::to_string(win::GetAttributes(path).value_or(0));
  if (verb == "readonly" || verb == "writable") return said(win::SetAttributes(path, verb == "readonly" ? 1 : 0));
  std::set<std::string> names;
  const std::function<void(win::FolderReader, const std::string&)> list = [&](auto reader, const std::string& above) {
    for (win::FoundEntry entry; reader.Next(entry);) {
      if (!above.empty() && entry.name.starts_with('.')) continue;
      names.insert(above + entry.name + (entry.isFolder ? "/" : "") + (entry.isLink ? "@" : ""));
      if (entry.isFolder && !entry.name.starts_with('.')) list(reader.Descend(entry), above + entry.name + "/");
    }
  };
  list(win::FolderReader(path), "");
  return testing::PrintToString(names);
}

const char* const kNames[] = {"",
                              "a",
                              "A",
                              "b.txt",
                              "B.TXT",
                              "dir",
                              "dir\\in",
                              "DIR\\in\\deep",
                              "dir\\new",
                              "readonly",
                              "dir\\*",
                              "link",
                              "link\\in",
                              "other",
                              "OTHER",
                              "none\\x",
                              "dir\\",
                              "folder2",
                              "b.txt. ",
                              "list.ini",
                              "dir\\in\\deep\\x",
                              "target",
                              "LINK\\more",
                              "chain",
                              "chain\\in",
                              "file",
                              "nowhere",
                              "dir\\up",
                              "dir\\UP\\a",
                              "dir\\up\\dir\\in",
                              "target\\more"};

struct RehearsalTest : testing::Test {
  // Makes files whose content is their name. One that ends in a slash is a folder, one that begins with `!` read-only.
  void MakeFiles(std::initializer_list<const char*> names,
                 std::initializer_list<std::pair<const char*, const char*>> links) {
    fs::remove_all(game);
    for (std::string name : names) {
      const bool readOnly = name.starts_with('!');
      name = name.substr(readOnly ? 1 : 0);
      fs::create_directories((game / name).parent_path());
      if (!name.ends_with('/')) WriteFile(game / name, name);
      if (readOnly) fs::permissions(game / name, fs::perms::owner_read);
    }
    for (const auto& [name, target] : links)
      fs::create_symlink(target, game / name);
  }

  // So many verbs on names of chance, and all that was answered and told.
  std::string ActMany(unsigned seed) {
    std::mt19937 random(seed);
    std::string answers;
    const win::OperationObserver observer([&](const win::FileOperation& operation) {
      answers += operation.target + " " + operation.source + " " + operation.why + "\n";
    });
    for (int i = 0; i < 25; ++i) {
      const std::string verb = kVerbs[random() % std::size(kVerbs)];
      const std::string one = root + kNames[random() % std::size(kNames)];
      const std::string two = root + kNames[random() % std::size(kNames)];
      answers += verb + " " + one + " " + two + ": " + Do(verb, one, two) + "\n";
    }
    return answers;
  }

  const test::Sandbox sandbox;
  const fs::path game = sandbox.Install();
  const std::string root = sandbox.InstallText();
};

// Each row: steps of verb, path, second path and answer, and what they leave different, null for what is gone.
TEST_F(RehearsalTest, AndTheDiskAnswerAsTheTableSays) {
  for (const auto& row : test::Cases("platform/system/vectors/files.jsonl")) {
    SCOPED_TRACE(row.dump());
    MakeFiles({"one.txt", "Other.txt", "Folder/inside", "!fixed.txt", "empty/", ".one.txt.new~", "Bin/a.dat",
               "Bin/B.DAT", "!Bin/b2.dat", "Bin/c.txt", "Bin/noext", "Bin/sub.dat/", "Data/File.txt", " lead", ".hid"},
              {{"dangling", "nowhere"}, {"link", "one.txt"}, {"way", "Folder"}});
    auto expected = test::Snapshot(game);
    const auto act = [&] {
      for (const std::vector<std::string> step : row["steps"])
        EXPECT_EQ(Do(step[0], root + step[1], root + step[2]), step[3]) << testing::PrintToString(step);
    };
    {
      win::Rehearsal rehearsal;
      act();
    }
    EXPECT_EQ(test::Snapshot(game), expected);
    act();
    for (const auto& [name, content] : row["left"].items()) {
      expected.erase(name);
      if (!content.is_null()) expected[name] = content;
    }
    EXPECT_EQ(test::Snapshot(game), expected);
  }
}

TEST_F(RehearsalTest, AnswersAsTheDiskWouldAndChangesNothing) {
  for (unsigned seed = 1; seed <= 100 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    MakeFiles({"a", "b.txt", "dir/in/deep", "dir/file", "!readonly", "target/in", "target/more/x", "list.ini"},
              {{"link", "target"}, {"chain", "link/more"}, {"file", "b.txt"}, {"gap", "nowhere"}, {"dir/up", ".."}});
    const auto before = test::Snapshot(game);
    std::string rehearsed;
    std::set<std::string> told;
    {
      win::Rehearsal rehearsal;
      rehearsed = ActMany(seed);
      for (const win::PathDifference& difference : rehearsal.Differences(root))
        told.insert(difference.path.substr(root.size()));
    }
    EXPECT_EQ(test::Snapshot(game), before);
    EXPECT_EQ(rehearsed, ActMany(seed));
    const auto names = test::NamesThatDiffer(before, test::Snapshot(game));
    EXPECT_TRUE(test::AreTold(names, told)) << testing::PrintToString(names) << testing::PrintToString(told);
  }
}

TEST_F(RehearsalTest, StoresNothingAndStartsNothing) {
  const fs::path text = game / "text", tool = game / "tool", ran = game / "ran";
  WriteFile(text, "#!/bin/sh\n");
  test::WriteScript(tool, "touch '" + ran.string() + "'");
  const auto settings = [] { return win::GetSetting("App", "s", "kept") + win::GetSetting("App", "s", "further"); };
  win::SaveSetting("App", "s", "kept", "old");
  {
    win::Rehearsal rehearsal;
    EXPECT_TRUE(win::SaveSetting("App", "s", "kept", "new") && win::SaveSetting("App", "s", "further", "x"));
    EXPECT_EQ(settings(), "newx");
    EXPECT_FALSE(win::ShellExecute(text.string()));  // it may not be executed
    EXPECT_TRUE(win::ShellExecute(tool.string()) && !win::ShellExecute(tool.string() + "2"));
    EXPECT_TRUE(rehearsal.Differences(root).empty());
  }
  EXPECT_EQ(settings(), "old");
  EXPECT_FALSE(fs::exists(ran));
  using namespace std::string_literals;
  for (const std::string& name : {""s, "\0"s, "\0a\\"s}) {  // a name ends at its first NUL
    const std::string listed = Do("list", name, "");
    win::Rehearsal rehearsal;
    EXPECT_EQ(Do("list", name, ""), listed);
    EXPECT_FALSE(win::FindFirstFileSucceeds(name) || win::MakeFolder(name));
  }
}

}  // namespace
