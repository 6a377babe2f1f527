#include "platform/system/launch.h"

#include <gtest/gtest.h>

#include "platform/system/paths.h"
#include "platform/system/process.h"
#include "tests/harness/sandbox.h"

namespace {

namespace fs = std::filesystem;
using List = std::vector<std::string>;

constexpr std::uint32_t k32 = 0x14c, k64 = 0x8664, kArm = 0xaa64;

// The head of a Windows program whose PE header, for a processor, stands at an offset.
std::string Program(std::uint32_t offset, std::uint32_t processor) {
  std::string head = "MZ" + std::string(0x3a, '\0') + std::string(reinterpret_cast<const char*>(&offset), 4);
  if (offset < 0x1000) head.resize(offset, '\0');
  return head + "PE" + std::string(2, '\0') + std::string(reinterpret_cast<const char*>(&processor), 2);
}

struct LaunchTest : testing::Test {
  test::Sandbox sandbox;
  const std::string program = (sandbox.Install() / "bzone.exe").string();
};

TEST_F(LaunchTest, TheStarterIsOneThatTheProgramsPrefixCanRun) {
  const std::string starter32 = BINARY_DIR "/varnik-start32.exe", starter64 = BINARY_DIR "/varnik-start64.exe";
  if (!fs::exists(starter32) || !fs::exists(starter64)) GTEST_SKIP() << "the Windows programs were not built";
  setenv("VARNIK_RUNNER", "runner --fast", 1);
  const auto prepared = [&](const std::string& content) {
    test::WriteFile(program, content);
    return win::PrepareLaunch(program, " a  b ").arguments;
  };
  const List direct{"runner", "--fast", program, "a", "b"};
  EXPECT_EQ(prepared(Program(0x80, k32)), direct);  // the prefix is not set up yet
  test::WriteFile(sandbox.Home() / "wine/drive_c/windows/system32/kernel32.dll", "");
  EXPECT_EQ(prepared(Program(0x80, k32)), (List{"runner", "--fast", starter32, program, "a", "b"}));
  EXPECT_EQ(prepared(Program(0xf8, k64)), (List{"runner", "--fast", starter64, program, "a", "b"}));
  for (const std::string& other :
       {Program(0x80, kArm), Program(0x80, k32).substr(0, 0x85), Program(0xffff'ffff, k32), "MZ" + std::string(600, 0)})
    EXPECT_EQ(prepared(other), direct);
}

TEST_F(LaunchTest, ARunnerThatCannotRunAProgramIsKnownBeforehand) {
  const struct {
    std::uint32_t processor;
    const char *runner, *said;  // the runner's file name and a part of the problem
    List files;                 // of the installation around the runner
  } cases[] = {
      {k32, "wine", "lacks", {"lib/wine/x86_64-windows/ntdll.dll"}},
      {k64, "wine-stable", "lacks", {"lib/wine/i386-windows/ntdll.dll"}},
      {k32, "wine", "", {"lib/wine/i386-windows/ntdll.dll", "lib64/wine/x86_64-windows/ntdll.dll"}},
      {k32, "wine", "", {"lib/wine/wine", "lib/wine/wine64"}},
      {k32, "wine", "wine32", {"lib/wine/wine64", "lib/x86_64-linux-gnu/wine/i386-windows/zlib1.dll"}},
      {k32, "wine", "", {"share/wine/ntdll.dll"}},
      {k32, "proton", "", {"lib/wine/x86_64-windows/ntdll.dll"}},
      {kArm, "wine", "", {"lib/wine/x86_64-windows/ntdll.dll"}},
  };
  const auto problem = [&] { return win::RunnerProblem("\"" + program + "\" /win"); };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.runner << " " << testing::PrintToString(c.files));
    fs::remove_all(sandbox.Root() / "opt");
    for (const std::string& file : c.files)
      test::WriteFile(sandbox.Root() / "opt" / file, "");
    const fs::path runner = sandbox.Root() / "opt/bin" / c.runner;
    test::WriteFile(runner, "");
    setenv("VARNIK_RUNNER", (runner.string() + " --fast").c_str(), 1);
    test::WriteFile(program, Program(0x80, c.processor));
    EXPECT_NE(problem().find("cannot be started"), std::string::npos);  // it may not be executed
    fs::permissions(runner, fs::perms::owner_all);
    EXPECT_TRUE(*c.said == '\0' ? problem().empty() : problem().find(c.said) != std::string::npos) << problem();
  }
  setenv("VARNIK_RUNNER", "no-such-runner", 1);
  EXPECT_NE(problem().find("no-such-runner"), std::string::npos);
  test::WriteFile(program, "#!/bin/sh\n");
  EXPECT_EQ(problem(), "");
  fs::remove(program);
  EXPECT_EQ(problem(), "");
}

// Makes a Wine prefix. A reason to skip the test where Wine or the Windows program is missing, else empty.
std::string PrepareWine() {
  if (std::system("command -v wine > /dev/null") != 0) return "Wine is not installed";
  if (!fs::exists(BINARY_DIR "/showline.exe")) return "the Windows programs were not built";
  for (const char* name : {"VARNIK_RUNNER", "DISPLAY", "WAYLAND_DISPLAY"})
    unsetenv(name);
  setenv("WINEDEBUG", "-all", 1);
  setenv("WINEDLLOVERRIDES", "mscoree,mshtml=", 1);
  return std::system("wine wineboot -i > /dev/null 2>&1") == 0 ? "" : "Wine makes no prefix here";
}

TEST(Wine, AProgramSeesItsLineToTheByteAndIsWaitedForWithAllThatItStarts) {
  const test::Sandbox sandbox;
  if (const std::string reason = PrepareWine(); !reason.empty()) GTEST_SKIP() << reason;
  const fs::path game = sandbox.Home() / "wine" / "drive_c" / "games" / "Battlezone II";
  fs::create_directories(game);
  fs::copy_file(BINARY_DIR "/showline.exe", game / "bzone.exe");
  const auto run = [&](const std::string& tail) {
    win::Process process = win::CreateProcess("\"" + game.string() + "\\bzone.exe\"" + tail, 32, game.string());
    EXPECT_EQ(process.Wait(60'000), win::WaitResult::kEnded);
    EXPECT_EQ(process.ExitStatus(), 7);
  };
  for (const std::string tail :
       {"", " ", "  \"my map.bzn\"  -x \"\" ", R"( a\ "b\\" \" d"e'*?%PATH%^& )", " \x81\xe9\xff", " caf\xc3\xa9"}) {
    SCOPED_TRACE(tail);
    run(tail);
    EXPECT_EQ(test::ReadFile(game / "line.txt"), R"("C:\games\Battlezone II\bzone.exe")" + tail);
  }
  run(" --again");
  EXPECT_EQ(test::ReadFile(game / "late.txt"), "bzone.exe --late");
  EXPECT_TRUE(win::FindNativePath("c:\\GAMES\\battlezone ii\\LATE.TXT"));
}

}  // namespace
