#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "platform/system/process.h"
#include "tests/harness/sandbox.h"

// With the real Wine and a Windows program, where both are there.
namespace {

namespace fs = std::filesystem;

struct Wine : testing::Test {
  void SetUp() override {
    if (std::system("command -v wine > /dev/null") != 0) GTEST_SKIP() << "Wine is not installed";
    if (!fs::exists(BINARY_DIR "/showline.exe")) GTEST_SKIP() << "the Windows programs were not built";
    for (const char* name : {"VARNIK_RUNNER", "DISPLAY", "WAYLAND_DISPLAY"})
      unsetenv(name);
    setenv("WINEDEBUG", "-all", 1);
    setenv("WINEDLLOVERRIDES", "mscoree,mshtml=", 1);
    ASSERT_EQ(std::system("wine wineboot -i > /dev/null 2>&1"), 0);
    game = sandbox.Home() / "wine" / "drive_c" / "games" / "Battlezone II";
    fs::create_directories(game);
    fs::copy_file(BINARY_DIR "/showline.exe", game / "bzone.exe");
  }

  int Run(const std::string& tail) {
    win::Process process = win::CreateProcess("\"" + game.string() + "\\bzone.exe\"" + tail, 32, game.string());
    EXPECT_EQ(process.Wait(60'000), win::WaitResult::kEnded);
    return process.ExitStatus();
  }

  test::Sandbox sandbox;
  fs::path game;
};

TEST_F(Wine, AProgramSeesItsLineToTheByteAndIsWaitedForWithAllThatItStarts) {
  const std::string program = R"("C:\games\Battlezone II\bzone.exe")";
  for (const std::string tail : {"", " ", " -win", "  \"my map.bzn\"  -x \"\" ", R"( a\ "b\\" \" d"e'*?%PATH%^& )",
                                 " \x81\xe9\xff", " caf\xc3\xa9"}) {
    SCOPED_TRACE(tail);
    EXPECT_EQ(Run(tail), 7);
    EXPECT_EQ(test::ReadFile(game / "line.txt"), program + tail);
  }
  EXPECT_EQ(Run(" --again"), 7);
  EXPECT_EQ(test::ReadFile(game / "late.txt"), "bzone.exe --late");
}

}  // namespace
