#include "support/sysinfo.h"

#include "platform/system/store/registry.h"
#include "support/registry.h"
#include "tests/modengine/modtest.h"

#include <stdlib.h>

#include <chrono>
#include <thread>

using namespace varnik;
using namespace std::string_literals;

namespace {

constexpr std::uint32_t kRegBinary = 3;

class SystemInfo : public test::ModTest {};

TEST_F(SystemInfo, ReadsTextsAndNumbers) {
  const struct {
    const char* what;
    std::uint32_t type;
    std::string data;
    bool read;
    const char* value;
  } kCases[] = {
      {"a text ends at its first NUL", win::kRegSz, "C:\\tool.exe\0junk\0"s, true, "C:\\tool.exe"},
      {"an empty text", win::kRegSz, "", true, ""},
      {"a number, its last byte first", win::kRegDword, "\x78\x56\x34\x12"s, true, "305419896"},
      {"small bytes are single digits", win::kRegDword, "\1\2\3\4"s, true, "17185"},
      {"a number ends at its first NUL", win::kRegDword, "\x10\0\0\1"s, true, "16"},
      {"a number of NULs", win::kRegDword, "\0\0\0\0"s, true, "0"},
      {"another type", kRegBinary, "abc", true, ""},
      {"as much as there is room for", win::kRegSz, std::string(1024, '\0'), true, ""},
      {"more than that", win::kRegSz, std::string(1025, '\0'), false, ""},
  };
  win::RegistryHandle key = 0;
  win::RegOpenKeyEx(win::kHkeyLocalMachine, kAboutUrlsKey, 0, 0, key);
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ASSERT_EQ(win::RegSetValueEx(key, "value", c.type, c.data), win::kErrorSuccess);
    std::string value = "old";
    EXPECT_EQ(ReadSharedToolsValue(win::kHkeyLocalMachine, kAboutUrlsKey, "value", value), c.read);
    EXPECT_EQ(value, c.value);
  }
  std::string value = "old";
  EXPECT_FALSE(ReadSharedToolsValue(win::kHkeyLocalMachine, kAboutUrlsKey, "other", value));
  EXPECT_FALSE(ReadSharedToolsValue(win::kHkeyLocalMachine, "SOFTWARE\\None", "value", value));
  EXPECT_EQ(value, "");
}

TEST_F(SystemInfo, StartsTheToolOrSaysThatThereIsNone) {
  const std::string path = getenv("PATH");
  const std::filesystem::path tool = InRoot("hardinfo"), started = InRoot("started");
  setenv("PATH", sandbox_.Install().c_str(), 1);
  test::WriteFile(tool, "#!/bin/sh\n: > '" + started.string() + "'\n");
  LaunchSystemInfo();  // nothing that may be run
  EXPECT_EQ(told_, "System Information Is Unavailable At This Time");
  told_.clear();
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  LaunchSystemInfo();
  setenv("PATH", path.c_str(), 1);
  for (int i = 0; i < 500 && !std::filesystem::exists(started); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_TRUE(std::filesystem::exists(started));
  EXPECT_EQ(told_, "");
}

}  // namespace
