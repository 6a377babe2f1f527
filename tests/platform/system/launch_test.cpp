#include "platform/system/process/launch.h"

#include "platform/system/process/process.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using List = std::vector<std::string>;

std::string Number(std::uint32_t number, int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i)
    bytes += static_cast<char>(number >> 8 * i);
  return bytes;
}

// The head of a Windows program whose PE header, for a processor, stands at an offset.
std::string Program(std::uint32_t offset, std::uint32_t processor) {
  std::string head = "MZ" + std::string(0x3a, '\0') + Number(offset, 4);
  if (offset < 0x1000) head.resize(offset, '\0');
  return head + "PE" + Number(0, 2) + Number(processor, 2);
}

struct LaunchTest : testing::Test {
  LaunchTest() {
    setenv("VARNIK_RUNNER", "runner --fast", 1);
    test::WriteFile(sandbox.Home() / "wine" / "drive_c" / "windows" / "system32" / "kernel32.dll", "");
  }
  win::Launch Prepare(const std::string& content, const std::string& tail = " a  b ") {
    test::WriteFile(program, content);
    return win::PrepareLaunch(program, tail);
  }
  test::Sandbox sandbox;
  const std::string program = (sandbox.Install() / "bzone.exe").string();
};

TEST_F(LaunchTest, TheStarterIsOneThatTheProgramsPrefixCanRun) {
  const std::string starter32 = BINARY_DIR "/varnik-start32.exe", starter64 = BINARY_DIR "/varnik-start64.exe";
  if (!fs::exists(starter32) || !fs::exists(starter64)) GTEST_SKIP() << "the Windows programs were not built";
  const struct {
    const char* what;
    std::string content, starter;
  } kCases[] = {
      {"32 bits", Program(0x80, 0x14c), starter32},
      {"64 bits", Program(0xf8, 0x8664), starter64},
      {"another processor", Program(0x80, 0xaa64), ""},
      {"a header cut short", Program(0x80, 0x14c).substr(0, 0x85), ""},
      {"a header beyond the file", Program(0x7fff'ffff, 0x14c), ""},
      {"a header at the end of the numbers", Program(0xffff'ffff, 0x14c), ""},
      {"a DOS program", "MZ" + std::string(600, '\0'), ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    List expected{"runner", "--fast"};
    if (!c.starter.empty()) expected.push_back(c.starter);
    expected.insert(expected.end(), {program, "a", "b"});
    EXPECT_EQ(Prepare(c.content).arguments, expected);
  }
}

struct RunnerCase {
  const char* what;
  const char* files;   // of the installation around the runner
  const char* runner;  // its file name
  std::uint32_t processor;
  const char* said;  // part of the problem; empty: none
};

const RunnerCase kRunners[] = {
    {"no part for 32 bits", "lib/wine/x86_64-windows/ntdll.dll", "wine", 0x14c, "lacks"},
    {"no part for 64 bits", "lib/wine/i386-windows/ntdll.dll", "wine-stable", 0x8664, "lacks"},
    {"both parts", "lib/wine/i386-windows/ntdll.dll lib64/wine/x86_64-windows/ntdll.dll", "wine", 0x14c, ""},
    {"its own part", "lib/wine/x86_64-windows/ntdll.dll", "wine", 0x8664, ""},
    {"two loaders", "lib/wine/wine lib/wine/wine64", "wine", 0x14c, ""},
    {"one loader", "lib/wine/wine64 lib/x86_64-linux-gnu/wine/i386-windows/zlib1.dll", "wine", 0x14c, "wine32"},
    {"an unknown layout", "share/wine/ntdll.dll", "wine", 0x14c, ""},
    {"another runner", "lib/wine/x86_64-windows/ntdll.dll", "proton", 0x14c, ""},
    {"an unknown processor", "lib/wine/x86_64-windows/ntdll.dll", "wine", 0xaa64, ""},
};

TEST_F(LaunchTest, ARunnerThatCannotRunAProgramIsKnownBeforehand) {
  const auto problem = [&] { return win::RunnerProblem("\"" + program + "\" /win"); };
  for (const RunnerCase& c : kRunners) {
    SCOPED_TRACE(c.what);
    fs::remove_all(sandbox.Root() / "opt");
    std::istringstream files(c.files);
    for (std::string file; files >> file;)
      test::WriteFile(sandbox.Root() / "opt" / file, "");
    const fs::path runner = sandbox.Root() / "opt/bin" / c.runner;
    test::WriteFile(runner, "");
    setenv("VARNIK_RUNNER", (runner.string() + " --fast").c_str(), 1);
    test::WriteFile(program, Program(0x80, c.processor));
    EXPECT_NE(problem().find("cannot be started"), std::string::npos);  // it may not be executed
    fs::permissions(runner, fs::perms::owner_all);
    EXPECT_EQ(problem().empty(), *c.said == '\0') << problem();
    EXPECT_NE(problem().find(c.said), std::string::npos) << problem();
  }
  setenv("VARNIK_RUNNER", "no-such-runner", 1);
  EXPECT_NE(problem().find("no-such-runner"), std::string::npos);
  test::WriteFile(program, "#!/bin/sh\n");
  EXPECT_EQ(problem(), "");
  fs::remove(program);
  EXPECT_EQ(problem(), "");
}

TEST_F(LaunchTest, APrefixThatIsNotSetUpYetGetsTheProgramItself) {
  fs::remove_all(sandbox.Home() / "wine" / "drive_c" / "windows");
  EXPECT_EQ(Prepare(Program(0x80, 0x14c)).arguments, (List{"runner", "--fast", program, "a", "b"}));
}

}  // namespace
