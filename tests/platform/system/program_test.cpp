#include "platform/system/program.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/system/services.h"
#include "tests/harness/sandbox.h"

namespace {

namespace fs = std::filesystem;

struct ProgramTest : testing::Test {
  test::Sandbox sandbox;
  const std::string home = sandbox.Home().string();
  const std::string name = "varnik-test-" + std::to_string(getpid());
};

TEST_F(ProgramTest, TheCommandLineQuotesWhatHoldsBlanks) {
  const char* arguments[] = {"varnik", "/bz2dir", "C:\\BZ 2\\", "", "a\tb", "/x \"C:\\a b\""};
  win::SetCommandLine(6, arguments);
  EXPECT_EQ(win::CommandLine(), "/bz2dir \"C:\\BZ 2\\\" \"\" \"a\tb\" /x \"C:\\a b\"");
}

TEST_F(ProgramTest, ItsFoldersFollowTheXdgVariablesAndAreForTheUserAlone) {
  setenv("XDG_CONFIG_HOME", (home + "/c/deep").c_str(), 1);
  EXPECT_EQ(win::ConfigFolder(), home + "/c/deep/varnik");
  EXPECT_EQ(fs::status(home + "/c/deep/varnik").permissions(), fs::perms::owner_all);
  setenv("XDG_CONFIG_HOME", "relative", 1);
  EXPECT_EQ(win::ConfigFolder(), home + "/.config/varnik");
  EXPECT_EQ(win::AutostartFolder(), home + "/.config/autostart");
  win::SetProgram({name, "", ""});
  const std::string own = "/tmp/" + name + "-" + std::to_string(getuid());
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_EQ(win::RuntimeFolder(), own);
  fs::permissions(own, fs::perms::all);
  EXPECT_EQ(win::RuntimeFolder(), win::ConfigFolder());
  fs::remove(own);
  fs::create_directory_symlink(home, own);
  EXPECT_EQ(win::RuntimeFolder(), win::ConfigFolder());
  fs::remove(own);
}

TEST_F(ProgramTest, ItsDataFolderIsTheGivenOneOrThatOfAPortableCopy) {
  setenv("VARNIK_HOME", "here", 1);
  EXPECT_EQ(win::ProgramFolder("varnik.cmd"), (fs::current_path() / "here").string() + "\\");
  unsetenv("VARNIK_HOME");
  const fs::path program = win::ExecutablePath();
  EXPECT_EQ(win::ProgramFolder(program.filename().string()), program.parent_path().string() + "\\");
}

TEST_F(ProgramTest, ItsDataFolderIsFilledOnceAndNeverReplacesAFile) {
  win::SetProgram({name, "", ""});
  const fs::path shipped = fs::path(win::ExecutablePath()).parent_path().parent_path() / "share" / name;
  for (const char* file : {"start.cmd", "mods/a.bzm", "mods/b.bzm"})
    test::WriteFile(shipped / file, "shipped");
  fs::permissions(shipped / "mods/b.bzm", fs::perms::owner_read);
  const fs::path data = sandbox.Home() / "data" / name;
  test::WriteFile(data / "mods/a.bzm", "the user's");
  EXPECT_EQ(win::ProgramFolder("start.cmd"), data.string() + "\\");
  const std::map<std::string, std::string> full = {
      {"mods/", ""}, {"mods/a.bzm", "the user's"}, {"mods/b.bzm", "shipped"}, {"start.cmd", "shipped"}};
  EXPECT_EQ(test::Snapshot(data), full);
  EXPECT_NE(fs::status(data / "mods/b.bzm").permissions() & fs::perms::owner_write, fs::perms::none);
  fs::remove(data / "mods/b.bzm");
  win::ProgramFolder("start.cmd");
  EXPECT_FALSE(fs::exists(data / "mods/b.bzm"));
  fs::remove_all(shipped);
}

TEST_F(ProgramTest, WithoutAWindowAMessageIsSaidAndAQuestionGetsTheSafeAnswer) {
  const std::pair<int, win::Answer> kCases[] = {{win::kCritical, win::Answer::kOk},
                                                {win::kYesNoCancel + win::kCritical, win::Answer::kNo}};
  for (const auto& [style, answer] : kCases) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(win::MsgBox("100 % gone", style, "Title"), answer);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("100 % gone"), std::string::npos);
  }
  EXPECT_EQ(win::InputBox("Name?", "Title", "initial"), "");
}

}  // namespace
