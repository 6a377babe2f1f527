#include "support/settings.h"

#include "support/debuglog.h"
#include "support/runstate.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

namespace {

TEST(Options, HaveTheirDefaultsUntilStored) {
  test::Sandbox sandbox;
  EXPECT_EQ(varnik::kSettingKeys.size(), 10u);
  EXPECT_EQ(varnik::ReadOption("TrayIcon"), "0");
  EXPECT_EQ(varnik::ReadOption("MainTop"), "1000");
  EXPECT_TRUE(varnik::OptionIsOn("OldMods"));
  EXPECT_FALSE(varnik::OptionIsOn("RenameLog"));
  EXPECT_TRUE(varnik::OptionIsOn("StatusBar"));
  varnik::StoreOption("NoMapPic", "abc");
  EXPECT_EQ(varnik::ReadOption("NoMapPic"), "abc");
}

TEST(Options, AreOnForTheExactTextOnly) {
  test::Sandbox sandbox;
  for (const char* text : {"on", "ON", " On", "Yes", "-1", ""}) {
    varnik::StoreOption("OldMods", text);
    EXPECT_FALSE(varnik::OptionIsOn("OldMods")) << text;
  }
  varnik::StoreOption("OldMods", "On");
  EXPECT_TRUE(varnik::OptionIsOn("OldMods"));
}

TEST(Store, ForgetsAKeyOrItsSection) {
  test::Sandbox sandbox;
  varnik::Store(varnik::kCrashSection, "filename", "a");
  varnik::Store(varnik::kCrashSection, "bz2loc", "b");
  varnik::Store(varnik::kBackupSection, "x", "c");
  varnik::Forget(varnik::kCrashSection, "filename");
  EXPECT_EQ(varnik::ReadStored(varnik::kCrashSection, "filename"), "");
  EXPECT_EQ(varnik::ReadStored(varnik::kCrashSection, "bz2loc"), "b");
  varnik::Forget(varnik::kCrashSection);
  EXPECT_EQ(varnik::ReadStored(varnik::kCrashSection, "bz2loc", "none"), "none");
  EXPECT_EQ(varnik::ReadStored(varnik::kBackupSection, "x"), "c");
}

TEST(DebugLog, AppendsLinesWhileItIsOn) {
  test::Sandbox sandbox;
  varnik::AppPath = sandbox.AppText();
  varnik::LogLine("silent");
  EXPECT_FALSE(std::filesystem::exists(sandbox.App() / "error.log"));
  varnik::DebugLog = true;
  varnik::LogLine("one");
  varnik::LogLine("two");
  varnik::DebugLog = false;
  varnik::AppPath.clear();
  EXPECT_EQ(test::ReadFile(sandbox.App() / "error.log"), "one\r\ntwo\r\n");
}

}  // namespace
