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

TEST_F(ProgramTest, ItsDataFolderIsTheGivenOneOrFollowsWhatIsShipped) {
  setenv("VARNIK_HOME", "here", 1);
  EXPECT_EQ(win::ProgramFolder("varnik.cmd"), (fs::current_path() / "here").string() + "\\");
  unsetenv("VARNIK_HOME");
  const fs::path program = win::ExecutablePath();
  EXPECT_EQ(win::ProgramFolder(program.filename().string()), program.parent_path().string() + "\\");
  const fs::path shipped = program.parent_path().parent_path() / "share" / name;
  const fs::path data = sandbox.Home() / "data" / name;
  const auto start = [&](const char* version, const std::map<std::string, std::string>& files) {
    win::SetProgram({name, "", "", version});
    for (const auto& [file, content] : files) {
      test::WriteFile(shipped / file, content);
      fs::permissions(shipped / file, fs::perms::owner_read);
    }
    testing::internal::CaptureStderr();
    EXPECT_EQ(win::ProgramFolder("start.cmd"), data.string() + "\\");
    fs::remove_all(shipped);
    return testing::internal::GetCapturedStderr();
  };
  const auto expect = [&](std::map<std::string, std::string> files) {
    auto found = test::Snapshot(data);
    EXPECT_EQ(found.erase(".shipped"), 1U);
    files["mods/"] = "";
    EXPECT_EQ(found, files);
  };
  test::WriteFile(data / "mods/own", "user's");
  EXPECT_EQ(start("1", {{"start.cmd", "1"}, {"mods/a", "1"}, {"mods/b", "1"}, {"mods/c", "1"}, {"mods/own", "1"}}), "");
  expect({{"start.cmd", "1"}, {"mods/a", "1"}, {"mods/b", "1"}, {"mods/c", "1"}, {"mods/own", "user's"}});
  test::WriteFile(data / "mods/b", "changed");
  fs::remove(data / "mods/c");
  start("1", {{"mods/a", "other"}, {"new", "1"}});  // the same version: nothing is looked at
  const std::map<std::string, std::string> second = {{"start.cmd", "2"}, {"mods/a", "2"},   {"mods/b", "2"},
                                                     {"mods/c", "2"},    {"mods/own", "1"}, {"new", "2"}};
  const std::string said = start("2", second);
  EXPECT_NE(said.find("mods/b: has been changed"), std::string::npos);
  EXPECT_EQ(said.find('\n'), said.size() - 1) << said;
  expect({{"start.cmd", "2"}, {"mods/a", "2"}, {"mods/b", "changed"}, {"mods/own", "user's"}, {"new", "2"}});
  start("1", {{"start.cmd", "1"}});
  EXPECT_EQ(start("2", {{"start.cmd", "2"}, {"mods/b", "2"}, {"mods/c", "2"}}), "");
  expect({{"start.cmd", "2"}, {"mods/a", "2"}, {"mods/b", "changed"}, {"mods/own", "user's"}, {"new", "2"}});
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
