#include "platform/system/paths/program.h"

#include "platform/system/paths/workingfolder.h"
#include "platform/system/process/instance.h"
#include "platform/system/process/services.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <unistd.h>

#include <memory>

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

TEST_F(ProgramTest, TheWorkingFolderIsReturnedToUnderAnyName) {
  const std::string before = win::WorkingFolder();
  const fs::path one = sandbox.Root() / "one", two = sandbox.Root() / "two";
  fs::create_directory(one);
  {
    const win::ScopedWorkingFolder outer(one.string());
    EXPECT_EQ(win::WorkingFolder(), one.string() + "\\");
    const win::ScopedWorkingFolder missing(two.string() + "\\");
    EXPECT_FALSE(missing.IsEntered());
    {
      const win::ScopedWorkingFolder inner("..\\HOME");
      EXPECT_TRUE(inner.IsEntered());
      fs::rename(one, two);
    }
    EXPECT_EQ(win::WorkingFolder(), two.string() + "\\");
  }
  EXPECT_EQ(win::WorkingFolder(), before);
}

TEST_F(ProgramTest, ItsDataFolderIsTheGivenOneOrFilledOnceAndNeverReplacesAFile) {
  setenv("VARNIK_HOME", "here", 1);
  EXPECT_EQ(win::ProgramFolder("varnik.cmd"), (fs::current_path() / "here").string() + "\\");
  unsetenv("VARNIK_HOME");
  const fs::path program = win::ExecutablePath();
  EXPECT_EQ(win::ProgramFolder(program.filename().string()), program.parent_path().string() + "\\");
  win::SetProgram({name, "", ""});
  const fs::path shipped = program.parent_path().parent_path() / "share" / name;
  const fs::path data = sandbox.Home() / "data" / name;
  for (const char* file : {"start.cmd", "mods/a.bzm", "mods/b.bzm"})
    test::WriteFile(shipped / file, "shipped");
  fs::permissions(shipped / "mods/b.bzm", fs::perms::owner_read);
  test::WriteFile(data / "mods/a.bzm", "the user's");
  EXPECT_EQ(win::ProgramFolder("start.cmd"), data.string() + "\\");
  std::map<std::string, std::string> full = {
      {"mods/", ""}, {"mods/a.bzm", "the user's"}, {"mods/b.bzm", "shipped"}, {"start.cmd", "shipped"}};
  EXPECT_EQ(test::Snapshot(data), full);
  EXPECT_NE(fs::status(data / "mods/b.bzm").permissions() & fs::perms::owner_write, fs::perms::none);
  fs::remove(data / "mods/b.bzm");
  full.erase("mods/b.bzm");
  win::ProgramFolder("start.cmd");
  EXPECT_EQ(test::Snapshot(data), full);
  fs::remove_all(shipped);
}

TEST_F(ProgramTest, WithoutAWindowAMessageIsSaidAndAQuestionGetsTheSafeAnswer) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(win::MsgBox("100 % gone", win::kCritical, "Title"), win::Answer::kOk);
  EXPECT_EQ(win::MsgBox("sure?", win::kYesNoCancel + win::kCritical, "Title"), win::Answer::kNo);
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(said.find("100 % gone") < said.find("sure?")) << said;
  EXPECT_EQ(win::InputBox("Name?", "Title", "initial"), "");
}

TEST(Instance, OnlyOneProcessPerDisplayHoldsThePlace) {
  const test::Sandbox sandbox;
  setenv("DISPLAY", ":7", 1);
  unsetenv("WAYLAND_DISPLAY");
  win::Instance mine;
  EXPECT_FALSE(mine.OtherIsRunning());
  const auto isRefused = [](const char* display, const char* wayland) {
    setenv("DISPLAY", display, 1);
    setenv("WAYLAND_DISPLAY", wayland, 1);
    return test::StatusOf(test::Fork([] { return win::Instance().OtherIsRunning() ? 1 : 0; })) == 1;
  };
  EXPECT_TRUE(isRefused(":7", "") && isRefused(":7.0", ""));
  EXPECT_FALSE(isRefused(":8", "") || isRefused(":7", "/run/wayland-1"));
}

TEST(Instance, ARequestReachesTheHolderOnceAndNeverItsSender) {
  const test::Sandbox sandbox;
  auto holder = std::make_unique<win::Instance>();
  int requests = 0;
  holder->OnCloseRequest([&requests] { ++requests; });
  pollfd wanted{holder->Descriptor(), POLLIN, 0};
  EXPECT_EQ(poll(&wanted, 1, 0), 0);
  win::Instance other;
  EXPECT_EQ(other.Descriptor(), -1);
  other.CloseOther();
  EXPECT_EQ(poll(&wanted, 1, 0), 1);
  other.CloseOther();
  holder->HandleRequests();
  holder->HandleRequests();
  EXPECT_EQ(requests, 1);
  other.CloseOther();
  holder.reset();
  EXPECT_FALSE(other.OtherIsRunning());
  other.OnCloseRequest([] { ADD_FAILURE() << "closed by its own request"; });
  other.HandleRequests();
}

}  // namespace
