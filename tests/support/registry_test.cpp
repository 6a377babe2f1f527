#include "support/registry.h"

#include "platform/system/program.h"
#include "platform/system/registry.h"
#include "support/runstate.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using varnik::RegReadValue;

constexpr std::uint32_t kRoot = win::kHkeyLocalMachine;

struct FetchCase {
  std::uint32_t type;
  std::string data;
  long status;
  const char* value;
};

const FetchCase kFetches[] = {
    {win::kRegSz, "abc\0"s, 0, "abc"},
    {win::kRegSz, "abc", 0, "ab"},
    {win::kRegSz, "\0"s, 0, ""},
    {win::kRegSz, "", 0, ""},
    {win::kRegDword, "\xFE\xFF\xFF\xFF"s, 0, "-2"},
    {win::kRegDword, "\x07"s, 0, "7"},
    {win::kRegDword, "12345"s, 234, ""},
    {win::kRegBinary, "abc\0"s, -1, ""},
};

TEST(RegFetchTyped, FollowsTheTypeOfTheValue) {
  test::Sandbox sandbox;
  win::RegistryHandle key = 0;
  win::RegOpenKeyEx(kRoot, varnik::kAboutUrlsKey, 0, 0x3F, key);
  for (const FetchCase& c : kFetches) {
    SCOPED_TRACE(std::to_string(c.type) + c.data);
    win::RegSetValueEx(key, "Name", c.type, c.data);
    std::string value = "before";
    EXPECT_EQ(varnik::RegFetchTyped(key, "name", value), c.status);
    EXPECT_EQ(value, c.value);
  }
  std::string value = "before";
  EXPECT_EQ(varnik::RegFetchTyped(key, "missing", value), win::kErrorFileNotFound);
  EXPECT_EQ(varnik::RegFetchTyped(0, "Name", value), win::kErrorInvalidHandle);
  EXPECT_EQ(value, "");
}

struct StoreCase {
  std::uint32_t type;
  const char* value;
  const char* read;
};

const StoreCase kStores[] = {
    {win::kRegSz, "abC 1", "ABC 1"},    {win::kRegDword, "42", "42"},     {win::kRegDword, "-2.5", "-2"},
    {win::kRegDword, "4294967296", ""}, {win::kRegBinary, "ignored", ""},
};

TEST(RegWriteValue, StoresTextAndNumbersAndReadsThemInUpperCase) {
  test::Sandbox sandbox;
  for (const StoreCase& c : kStores) {
    SCOPED_TRACE(c.value);
    varnik::RegWriteValue(kRoot, varnik::kAboutUrlsKey, varnik::kAboutUrlsValue, c.value, c.type);
    EXPECT_EQ(RegReadValue(kRoot, varnik::kAboutUrlsKey, varnik::kAboutUrlsValue), c.read);
    varnik::RegRemoveValue(kRoot, varnik::kAboutUrlsKey, varnik::kAboutUrlsValue);
    EXPECT_EQ(RegReadValue(kRoot, varnik::kAboutUrlsKey, varnik::kAboutUrlsValue), "");
  }
}

TEST(RegWriteValue, DoesNotMakeAKey) {
  test::Sandbox sandbox;
  varnik::RegWriteValue(kRoot, "Software\\Other", "Name", "value", win::kRegSz);
  EXPECT_EQ(RegReadValue(kRoot, "Software\\Other", "Name"), "");
  varnik::RegRemoveValue(kRoot, "Software\\Other", "Name");
}

TEST(StartCommands, NameTheProgramInItsFolder) {
  varnik::AppPath = "C:\\Some Folder\\";
  const std::string program = "\"C:\\Some Folder\\" + win::ExecutableName() + ".exe\" ";
  EXPECT_EQ(varnik::RunOnceCommand(), program + "/crash");
  EXPECT_EQ(varnik::AutoloadCommand(), program + "/boot");
  varnik::AppPath.clear();
}

}  // namespace
