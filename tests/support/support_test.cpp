#include "platform/system/files/files.h"
#include "platform/system/files/rehearsal.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/process/process.h"
#include "platform/system/store/registry.h"
#include "support/ini_sm.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"
#include "support/modshellwait.h"
#include "support/quips.h"
#include "support/registry.h"
#include "support/rememberedsearches.h"
#include "support/settings.h"
#include "support/sysinfo.h"
#include "tests/modengine/modtest.h"

#include <algorithm>
#include <regex>
#include <tuple>

using namespace varnik;
using namespace std::string_literals;

namespace {

using Support = test::ModTest;

// A line, and its value; "none" is the default.
const std::pair<std::string, std::string> kReads[] = {
    {"plain  Value", "plain  Value"},
    {"\" text\"x\" // comment", "text\"x"},
    {"\"http://host/path\"", "http:"},
    {"'\"text\"'", "text"},
    {"// only a comment", "none"},
    {"\"", "none"},
    {"\" \" // c", "none"},
    {"\t\"text\t\" // a // b", "text\t"},
    {std::string(252, 'x') + " // cut before the second slash", std::string(252, 'x') + " /"},
};

TEST_F(Support, ReadIniValueCleansAndPumpsEventsOnce) {
  std::size_t pumped = 0;
  OnEvents([&] { ++pumped; });
  for (const auto& [line, value] : kReads) {
    test::WriteFile(InRoot("game.ini"), "[s]\r\nk=" + line + "\r\n");
    EXPECT_EQ(ReadIniValue("s", "k", Root() + "game.ini", "none"), value) << line;
  }
  EXPECT_EQ(pumped, std::size(kReads));
}

// Type and data, then the status and the value of one reader and the value of the other.
const std::tuple<std::uint32_t, std::string, long, const char*, const char*> kFetches[] = {
    {win::kRegSz, "abc\0"s, 0, "abc", "abc"},
    {win::kRegSz, "abc", 0, "ab", "abc"},
    {win::kRegDword, "\xFE\xFF\xFF\xFF"s, 0, "-2", "4294967294"},
    {win::kRegDword, "\1\2\3\4"s, 0, "67305985", "17185"},  // small bytes are single digits
    {win::kRegDword, "\x10\0\0\1"s, 0, "16777232", "16"},   // up to the first NUL
    {win::kRegDword, "12345"s, 234, "", "228509037105"},
    {win::kRegBinary, "abc\0"s, -1, "", ""},
};

TEST_F(Support, FetchesOfTheRegistryFollowTheTypeOfTheValue) {
  win::RegistryHandle key = 0;
  win::RegOpenKeyEx(win::kHkeyLocalMachine, kAboutUrlsKey, 0, 0x3F, key);
  std::string value;
  const auto read = [&](const char* name) {
    return ReadSharedToolsValue(win::kHkeyLocalMachine, kAboutUrlsKey, name, value);
  };
  for (const auto& [type, data, status, typedValue, sharedToolsValue] : kFetches) {
    SCOPED_TRACE(data);
    win::RegSetValueEx(key, "Name", type, data);
    EXPECT_EQ(RegFetchTyped(key, "name", value), status);
    EXPECT_EQ(value, typedValue);
    EXPECT_TRUE(read("name"));
    EXPECT_EQ(value, sharedToolsValue);
  }
  for (const std::size_t size : {1024, 1025}) {
    win::RegSetValueEx(key, "Name", win::kRegSz, std::string(size, '\0'));
    EXPECT_EQ(read("name"), size == 1024);
  }
  value = "before";
  EXPECT_FALSE(read("other"));
  EXPECT_EQ(value, "");
  EXPECT_EQ(RegFetchTyped(0, "Name", value), win::kErrorInvalidHandle);
}

TEST_F(Support, RegReadValueGivesWhatWasStoredInUpperCase) {
  std::string read;
  for (const auto& [value, type] : {std::pair("abC 1", win::kRegSz),
                                    {"-2.5", win::kRegDword},
                                    {"4294967296", win::kRegDword},
                                    {"abc", win::kRegBinary}}) {
    RegWriteValue(win::kHkeyLocalMachine, kAboutUrlsKey, "Name", value, type);
    read += RegReadValue(win::kHkeyLocalMachine, kAboutUrlsKey, "Name") + "|";
  }
  RegRemoveValue(win::kHkeyLocalMachine, kAboutUrlsKey, "Name");
  EXPECT_EQ(read + RegReadValue(win::kHkeyLocalMachine, kAboutUrlsKey, "Name"), "ABC 1|-2|-2|-2|");
}

TEST_F(Support, OptionsHaveDefaultsAndAreOnForTheExactTextOnly) {
  EXPECT_EQ(ReadOption("MainTop"), "1000");
  EXPECT_TRUE(OptionIsOn("OldMods") && !OptionIsOn("RenameLog"));
  for (const char* text : {"on", "ON", " On", "-1", ""}) {
    StoreOption("OldMods", text);
    EXPECT_FALSE(OptionIsOn("OldMods")) << text;
  }
}

TEST_F(Support, SystemInfoStartsTheToolOrSaysThatThereIsNone) {
  const std::string path = getenv("PATH");
  setenv("PATH", sandbox_.Install().c_str(), 1);
  LaunchSystemInfo();
  EXPECT_EQ(told_, "System Information Is Unavailable At This Time");
  PutProgram("hardinfo", ": > '" + InRoot("started").string() + "'");
  LaunchSystemInfo();
  setenv("PATH", path.c_str(), 1);
  EXPECT_TRUE(Appears("started"));
}

TEST_F(Support, ShellAndWaitPumpsEventsWhileTheGameRunsInItsFolder) {
  int pumped = 0;
  OnEvents([&] {
    EXPECT_TRUE(GameRunning);
    if (++pumped == 3) Put("enough=");
  });
  PutProgram("bzone.exe", "pwd > here; until [ -f enough ]; do sleep 0.1; done; exit 4");
  EXPECT_EQ(ShellAndWait("\"" + Root() + "bzone.exe\" ", win::kNormalPriorityClass).status, 4);
  EXPECT_FALSE(GameRunning);
  EXPECT_EQ(Content("here"), sandbox_.Install().string() + "\n");
}

TEST_F(Support, AGameThatARunnerDoesNotStartIsSaid) {
  const struct {
    const char *content, *runner, *said;
  } cases[] = {
      {"#!/bin/sh\necho why >&2; exit 127", "", "status 127"},
      {"#!/bin/sh\nexit 1", "", ""},
      {"MZ", "echo lost; seq 2000; echo why; exit 3", "status 3"},
      {"MZ", "exit 0", ""},
      {"MZ", "sleep 2.1; exit 127", ""},
  };
  const std::filesystem::path runner = sandbox_.Root() / "my runner";
  setenv("VARNIK_RUNNER", ("\"" + runner.string() + "\" --fast").c_str(), 1);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.said);
    PutProgram("bzone.exe", "");
    test::WriteFile(InRoot("bzone.exe"), c.content);
    test::WriteScript(runner, c.runner);
    testing::internal::CaptureStderr();
    const std::string said = ShellAndWait("\"" + Root() + "bzone.exe\" -a", win::kNormalPriorityClass).earlyEnd;
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_EQ(said.empty(), *c.said == '\0') << said;
    if (said.empty()) continue;
    EXPECT_NE(said.find(c.said), std::string::npos) << said;
    EXPECT_NE(said.find("bzone.exe -a\r\n"), std::string::npos) << said;
    EXPECT_TRUE(said.ends_with("why\n") && said.find("lost") == std::string::npos) << said;
    EXPECT_TRUE(printed.ends_with("why\n")) << printed;
    EXPECT_EQ(printed.starts_with("lost\n1\n") && said.find("--fast") < said.find("bzone.exe"), *c.runner != '\0');
  }
  unsetenv("VARNIK_RUNNER");
}

class FindFilesTest : public test::ModTest {
 protected:
  FindFilesTest() {
    StartWith("a.bzm= b.txt= Sub/C.BZM= Sub/Deep/d.bzm= .dot/e.bzm= .f.bzm= Folder.bzm/none.txt=");
    params_.Recurse = true;
    params_.Pattern = "*.bzm";
  }

  // Sorted, below the install, with a blank behind each.
  std::string Find(const std::string& below = "", bool stopAtFirst = false) {
    FindFiles(Root() + below, params_, results_, stopAtFirst);
    std::vector<std::string> found(results_.begin() + 1, results_.end());
    std::sort(found.begin(), found.end());
    std::string names;
    for (const std::string& path : found)
      names += path.substr(Root().size()) + " ";
    return names;
  }

  FileSearchParams params_;
  FileSearchResults results_{1};
};

TEST_F(FindFilesTest, EntersAllButDotFoldersAndPumpsEventsInEach) {
  int pumped = 0;
  OnEvents([&] { ++pumped; });
  EXPECT_EQ(Find(), ".f.bzm Sub\\C.BZM Sub\\Deep\\d.bzm a.bzm ");
  EXPECT_EQ(pumped, 4);
  EXPECT_EQ(params_.FoundCount, 4);
  EXPECT_EQ(params_.SearchedCount, 8 + 4 + 3 + 3);  // `.` and `..` of each folder included
  params_ = {};
  params_.Pattern = "*.bzm";
  params_.MatchSense = 0;
  EXPECT_EQ(Find(), "b.txt ");  // in this folder, and what does not match
}

TEST_F(FindFilesTest, SearchesAddUpAndTheFirstHitEndsOneAfterItsFolder) {
  Put("top/One/x.bzm= top/One/y.bzm= flat/x.bzm= flat/y.bzm=");
  Find("none\\");
  EXPECT_EQ(Find("top\\", true), "top\\One\\x.bzm top\\One\\y.bzm ");
  EXPECT_EQ(Find("sub\\deep\\"), "sub\\deep\\d.bzm top\\One\\x.bzm top\\One\\y.bzm ");
  Find("", true);
  EXPECT_EQ(params_.FoundCount, 3);
  params_.FoundCount = 0;
  results_.assign(1, "");
  Find("flat\\", true);
  EXPECT_EQ(results_.size(), 2u);
}

TEST_F(FindFilesTest, EachFolderIsEnteredOnceWhereverLinksLead) {
  const std::filesystem::path far = sandbox_.Root() / "far";
  test::WriteFile(far / "x.bzm", "");
  const std::pair<const char*, std::filesystem::path> links[] = {
      {"Sub/up", ".."}, {"again", "Sub"}, {"Sub/root", "/"}, {"Sub/above", sandbox_.Root()},
      {"in", ".dot"},   {"f1", far},      {"Sub/f2", far}};
  for (const auto& [name, target] : links)
    std::filesystem::create_directory_symlink(target, InRoot(name));
  std::filesystem::create_directory_symlink(sandbox_.Install(), far / "back");
  const std::string found = Find();
  EXPECT_EQ(std::regex_replace(found, std::regex(R"((f1|Sub\\f2)\\x.bzm )"), ""),
            ".f.bzm Sub\\C.BZM Sub\\Deep\\d.bzm a.bzm in\\e.bzm ");
  EXPECT_EQ(params_.FoundCount, 6) << found;
}

// In folders that are old enough to be trusted, and in rehearsals around and within.
TEST_F(FindFilesTest, ARememberedSearchFindsWhatANewOneFinds) {
  namespace fs = std::filesystem;
  const std::function<void()> changes[] = {
      [] {},
      [this] { win::RenameFile(Root() + "Sub\\Deep\\d.bzm", Root() + "Sub\\Deep\\e.txt"); },
      [this] { win::RenameFile(Root() + "Sub\\Deep\\e.txt", Root() + "Sub\\Deep\\d.bzm"); },
      [this] { win::WriteWholeFile(Root() + "Folder.bzm\\d.bzm", ""); },
      [this] { win::DeleteFiles(Root() + "Folder.bzm\\d.bzm"); },
      [this] { win::RenameFile(Root() + "Sub", Root() + "None"); },
      [this] { win::RenameFile(Root() + "b.txt", Root() + "D.BZM"); },
      [this] { fs::create_directory_symlink("None", InRoot("Link")), win::DeleteFiles(Root() + "D.BZM"); },
  };
  for (const auto& folder : {"", "Sub", "Sub/Deep", "Folder.bzm"})
    fs::last_write_time(InRoot(folder), fs::file_time_type::clock::now() - std::chrono::hours(1));
  const RememberedSearches remembered;
  const auto expectTheSame = [this](std::size_t change) {
    for (const std::string& folder : {Root(), Root() + "None\\"})
      for (const char* name : {"d.bzm", "c.bzm", "none"})
        EXPECT_EQ(RememberedSearches::FindFirstFile(folder, name), FindFirstFile(folder, name)) << change;
  };
  for (std::size_t i = 0; i < std::size(changes); ++i) {
    {
      const win::Rehearsal rehearsal;
      for (std::size_t ahead = i; ahead + 1 < std::size(changes); ++ahead)
        changes[ahead](), expectTheSame(ahead);
    }
    changes[i](), expectTheSame(i);
  }
}

TEST_F(FindFilesTest, SearchDirsAreSearchedFromTheOneGiven) {
  SearchDirs = {"", "none", "sub"};
  EXPECT_EQ(FindInSearchDirs("c.bzm", 1), Root() + "sub\\C.BZM");
  EXPECT_EQ(FindInSearchDirs("a.bzm", 1) + FindInSearchDirs("c.bzm", 9), "");
  SelectInstall(-1);
  EXPECT_EQ(FindInSearchDirs("c.bzm", 1), "");
}

TEST_F(FindFilesTest, FileExistsLooksPastBlanksAndASeparator) {
  for (const std::string& path :
       {Root(), "  " + Root() + "SUB \\ ", Root() + "sub/", Root() + "A.BZM", Root() + "*.b?m"})
    EXPECT_TRUE(FileExists(path)) << path;
  for (const std::string& path : {Root() + "sub\\\\", Root() + "none", std::string(), std::string("\\")})
    EXPECT_FALSE(FileExists(path)) << path;
}

TEST(Quips, TheFirstComesHalfAsOftenAndTheLastNever) {
  std::vector<int> shown(kQuipCount), expected(kQuipCount, 2);
  for (int i = 0; i < 36; ++i)
    ++shown[QuipIndex((i + 0.5) / 36)];
  expected[0] = 1;
  expected[17] = 3;
  expected[18] = 0;
  EXPECT_EQ(shown, expected);
}

}  // namespace
