#include "platform/system/process/process.h"
#include "platform/system/store/registry.h"
#include "support/ini_sm.h"
#include "support/modshellwait.h"
#include "support/quips.h"
#include "support/registry.h"
#include "support/settings.h"
#include "support/sysinfo.h"
#include "tests/modengine/modtest.h"

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
  EXPECT_EQ(ShellAndWait("\"" + Root() + "bzone.exe\" ", win::kNormalPriorityClass), 4);
  EXPECT_FALSE(GameRunning);
  EXPECT_EQ(Content("here"), sandbox_.Install().string() + "\n");
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
