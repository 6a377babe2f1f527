#include "tests/harness/wine.h"

#include "platform/system/process/process.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <filesystem>

// With the real Wine and a Windows program, where both are there.
namespace {

namespace fs = std::filesystem;

struct Wine : testing::Test {
  void SetUp() override {
    if (const std::string reason = test::PrepareWine(sandbox, game); !reason.empty()) GTEST_SKIP() << reason;
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
