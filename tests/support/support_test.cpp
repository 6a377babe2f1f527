#include "platform/system/paths/program.h"
#include "platform/system/process/services.h"
#include "platform/system/store/registry.h"
#include "support/ini_sm.h"
#include "support/registry.h"
#include "support/runstate.h"
#include "support/settings.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

class Support : public testing::Test {
 protected:
  Support() { varnik::AppPath = sandbox_.AppText(); }
  ~Support() override { varnik::AppPath.clear(); }
  test::Sandbox sandbox_;
};

struct ReadCase {
  std::string line;
  std::string value;
};

const ReadCase kReads[] = {
    {"plain  Value", "plain  Value"},
    {"\"text\" // comment", "text"},
    {"\"text \" // comment", "text "},
    {"\" text\"x\" // comment", "text\"x"},
    {"\"http://host/path\"", "http:"},
    {"'\"text\"'", "text"},
    {"// only a comment", "none"},
    {"\"\"", "none"},
    {"\"", "none"},
    {"\" \" // c", "none"},
    {"\t\"text\t\" // a // b", "text\t"},
    {std::string(252, 'x') + " // cut before the second slash", std::string(252, 'x') + " /"},
};

TEST_F(Support, ReadIniValueCleansAndPumpsEventsOnce) {
  const std::string file = sandbox_.InstallText() + "game.ini";
  int pumped = 0;
  win::WindowServices services;
  services.doEvents = [&] { ++pumped; };
  win::SetWindowServices(services);
  for (const ReadCase& c : kReads) {
    test::WriteFile(sandbox_.Install() / "game.ini", "[s]\r\nk=" + c.line + "\r\n");
    EXPECT_EQ(varnik::ReadIniValue("s", "k", file, "none"), c.value) << c.line;
  }
  win::SetWindowServices({});
  EXPECT_EQ(pumped, static_cast<int>(std::size(kReads)));
}

struct FetchCase {
  std::uint32_t type;
  std::string data;
  long status;
  const char* value;
};

const FetchCase kFetches[] = {
    {win::kRegSz, "abc\0"s, 0, "abc"},
    {win::kRegSz, "abc", 0, "ab"},
    {win::kRegSz, "", 0, ""},
    {win::kRegDword, "\xFE\xFF\xFF\xFF"s, 0, "-2"},
    {win::kRegDword, "12345"s, 234, ""},
    {win::kRegBinary, "abc\0"s, -1, ""},
};

TEST_F(Support, RegFetchTypedFollowsTheTypeOfTheValue) {
  win::RegistryHandle key = 0;
  win::RegOpenKeyEx(win::kHkeyLocalMachine, varnik::kAboutUrlsKey, 0, 0x3F, key);
  std::string value;
  for (const FetchCase& c : kFetches) {
    win::RegSetValueEx(key, "Name", c.type, c.data);
    EXPECT_EQ(varnik::RegFetchTyped(key, "name", value), c.status) << c.data;
    EXPECT_EQ(value, c.value);
  }
  value = "before";
  EXPECT_EQ(varnik::RegFetchTyped(0, "Name", value), win::kErrorInvalidHandle);
  EXPECT_EQ(value, "");
}

TEST_F(Support, RegReadValueGivesWhatWasStoredInUpperCase) {
  const auto stored = [](const char* value, std::uint32_t type) {
    varnik::RegWriteValue(win::kHkeyLocalMachine, varnik::kAboutUrlsKey, "Name", value, type);
    return varnik::RegReadValue(win::kHkeyLocalMachine, varnik::kAboutUrlsKey, "Name");
  };
  EXPECT_EQ(stored("abC 1", win::kRegSz), "ABC 1");
  EXPECT_EQ(stored("-2.5", win::kRegDword), "-2");
  EXPECT_EQ(stored("4294967296", win::kRegDword), "-2");
  EXPECT_EQ(stored("abc", win::kRegBinary), "-2");
  varnik::RegRemoveValue(win::kHkeyLocalMachine, varnik::kAboutUrlsKey, "Name");
  EXPECT_EQ(varnik::RegReadValue(win::kHkeyLocalMachine, varnik::kAboutUrlsKey, "Name"), "");
}

TEST_F(Support, OptionsHaveDefaultsAndAreOnForTheExactTextOnly) {
  EXPECT_EQ(varnik::ReadOption("MainTop"), "1000");
  EXPECT_TRUE(varnik::OptionIsOn("OldMods"));
  EXPECT_FALSE(varnik::OptionIsOn("RenameLog"));
  for (const char* text : {"on", "ON", " On", "-1", ""}) {
    varnik::StoreOption("OldMods", text);
    EXPECT_FALSE(varnik::OptionIsOn("OldMods")) << text;
  }
}

}  // namespace
