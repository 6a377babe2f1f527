#include "platform/system/files/findfile.h"

#include "platform/system/text/wildcards.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <map>

namespace {

namespace fs = std::filesystem;

TEST(FindFile, OnePathIsTested) {
  const test::Sandbox sandbox;
  for (const char* file : {"Data/File.txt", " lead", ".hid"})
    test::WriteFile(sandbox.Install() / file, "");
  const struct {
    const char* path;
    bool found;
  } cases[] = {
      {"data", true},          {"data\\", false},    {"DATA\\FILE.TXT. .", true}, {"data\\file.txt\\", false},
      {"lead", false},         {" LEAD", true},      {"data\\*.TXT", true},       {"data\\*.bzm", false},
      {"data\\fil?.t*", true}, {"none\\*.*", false}, {"data\\*.*", true},         {"data\\file.txt\\x", false},
      {"d*\\file.txt", false}, {"*.hid", true},      {"data\\file.???", true},    {"data\\file.txt?", true},
  };
  for (const auto& c : cases)
    EXPECT_EQ(win::FindFirstFileSucceeds(sandbox.InstallText() + c.path), c.found) << c.path;
  EXPECT_FALSE(win::FindFirstFileSucceeds(""));
  EXPECT_FALSE(win::FindFirstFileSucceeds("\\"));
}

TEST(FindFile, WildcardsOfTheFileCalls) {
  const struct {
    const char *name, *pattern;
    bool match;
  } cases[] = {
      {"noext", "*.*", true}, {"noext", "*.", true},   {"a.b", "*.", false},       {"a", "a?", true},
      {"abc", "a?", false},   {"a.txt", "a?.*", true}, {"a.txt", "?.txt", true},   {"ab", "a?b", false},
      {"a.b", "a?b", false},  {"É.TXT", "é.*", true},  {"a.b.txt", "*.txt", true}, {"a.txt", "*.txt ", true},
  };
  for (const auto& c : cases)
    EXPECT_EQ(win::MatchesWildcards(c.name, c.pattern), c.match) << c.name << " " << c.pattern;
}

std::map<std::string, bool> Entries(win::FolderReader reader) {
  std::map<std::string, bool> entries;
  for (win::FoundEntry entry; reader.Next(entry);)
    entries[entry.name] = entry.isFolder;
  return entries;
}

TEST(FolderReader, ShowsEveryEntryAndFollowsLinks) {
  const test::Sandbox sandbox;
  const fs::path folder = sandbox.Install();
  test::WriteFile(folder / "Sub" / ".hid", "");
  fs::create_directory_symlink("Sub", folder / "link");
  fs::create_symlink("nowhere", folder / "broken");
  win::FolderReader reader(sandbox.InstallText());
  EXPECT_EQ(Entries(reader.Descend("link")), (std::map<std::string, bool>{{".", true}, {"..", true}, {".hid", false}}));
  EXPECT_FALSE(reader.Descend("none").IsOpen());
  EXPECT_FALSE(reader.Descend("broken").IsOpen());
  EXPECT_EQ(Entries(std::move(reader)),
            (std::map<std::string, bool>{{".", true}, {"..", true}, {"Sub", true}, {"link", true}, {"broken", false}}));
  EXPECT_FALSE(win::FolderReader(sandbox.InstallText() + "sub\\.hid").IsOpen());
}

}  // namespace
