#include "platform/system/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <chrono>
#include <ctime>
#include <thread>

#include "tests/harness/sandbox.h"

namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using win::WaitResult;

constexpr int kLong = 20'000;

struct ProcessTest : testing::Test {
  ProcessTest() {
    setenv("OUT", out.c_str(), 1);
    setenv("WINEPREFIX", "/default", 1);
    unsetenv("VARNIK_RUNNER");
  }

  // A program of the install that records what `body` prints.
  std::string Program(const std::string& body) {
    test::WriteScript(sandbox.Install() / "bzone.exe", "{\n" + body + "\n} > \"$OUT\"");
    return quoted;
  }
  win::Process Start(const std::string& line, unsigned flags = win::kNormalPriorityClass) {
    return win::CreateProcess(line, flags, sandbox.InstallText());
  }
  std::string Run(const std::string& line, unsigned flags = win::kNormalPriorityClass) {
    EXPECT_EQ(Start(line, flags).Wait(kLong), WaitResult::kEnded);
    return test::ReadFile(out);
  }

  test::Sandbox sandbox;
  const fs::path out = sandbox.Root() / "out";
  const std::string quoted = "\"" + sandbox.InstallText() + "BZONE.exe\"";
};

TEST_F(ProcessTest, ANativeProgramGetsItsArgumentsFolderAndEnvironment) {
  setenv("GIVEN", "from us", 1);
  const std::string program = Program(R"(printf '<%s>' "$@" "$GIVEN" "$PWD")");
  EXPECT_EQ(Run(program + R"(  "my map.bzn"  -x "" C:\a\ )"),
            R"(<my map.bzn><-x><><C:\a\><from us><)" + sandbox.Install().string() + ">");
  for (const std::string& folder : {sandbox.InstallText() + "gone\\", std::string()})
    EXPECT_FALSE(win::CreateProcess(program, win::kNormalPriorityClass, folder).Started());
}

TEST_F(ProcessTest, AChildStartsFromACleanSlate) {
  const int open = ::open("/dev/null", O_RDONLY);  // without O_CLOEXEC
  for (const int ignored : {SIGINT, SIGCHLD})
    signal(ignored, SIG_IGN);
  win::Process process =
      Start(Program("grep SigIgn /proc/$$/status; read -r line && echo has input\n"
                    "[ -e /proc/$$/fd/" +
                    std::to_string(open) +
                    " ] && echo inherited\n"
                    "echo $$ $(cut -d' ' -f5,6 /proc/$$/stat) | tr ' ' '\\n' | uniq | wc -l; exit 5"));
  EXPECT_EQ(process.Wait(kLong), WaitResult::kEnded);
  EXPECT_EQ(process.ExitStatus(), 5);
  EXPECT_EQ(test::ReadFile(out), "SigIgn:\t0000000000000000\n1\n");  // leads its group and its session
  signal(SIGINT, SIG_DFL);
  ::close(open);
}

TEST_F(ProcessTest, AFailedStartEndsTheWaitAndSaysWhy) {
  setenv("VARNIK_RUNNER", "/no/such/runner", 1);
  const struct {
    const char *content, *reason;
    int mode = 0700;
  } kCases[] = {{"#!/bin/sh\n", "Permission denied", 0600},
                {"neither a program of this system nor of Windows", "Exec format error"},
                {"MZ", "/no/such/runner"},
                {"#!/no/such\n", "No such file"}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.content);
    test::WriteFile(sandbox.Install() / "bzone.exe", c.content);
    fs::permissions(sandbox.Install() / "bzone.exe", fs::perms(c.mode));
    testing::internal::CaptureStderr();
    win::Process process = Start(quoted + " -win");
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(process.Started());
    EXPECT_EQ(process.Wait(kLong), WaitResult::kFailed);
    EXPECT_NE(said.find((sandbox.Install() / "bzone.exe").string()), std::string::npos) << said;
    EXPECT_NE(said.find(c.reason), std::string::npos) << said;
    EXPECT_EQ(said.find('\n'), said.size() - 1);
  }
}

TEST_F(ProcessTest, TheWaitSleepsUntilAllOfTheSessionHasEnded) {
  win::Process process = Start(Program("( (until [ -e go ]; do sleep 0.05; done; echo > late) & ) & kill -SEGV $$"));
  for (int i = 0; i < 1000 && process.ExitStatus() == -1; ++i)
    EXPECT_EQ(process.Wait(10), WaitResult::kTimedOut);
  const auto start = std::chrono::steady_clock::now();
  const std::clock_t worked = std::clock();
  EXPECT_EQ(process.Wait(500), WaitResult::kTimedOut);
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(500));
  EXPECT_LT(std::clock() - worked, CLOCKS_PER_SEC / 4);
  test::WriteFile(sandbox.Install() / "go", "");
  EXPECT_EQ(process.Wait(kLong), WaitResult::kEnded);
  EXPECT_TRUE(fs::exists(sandbox.Install() / "late"));
  EXPECT_EQ(process.ExitStatus(), 128 + SIGSEGV);
}

TEST_F(ProcessTest, HighPriorityIsAskedForAndARefusalIsNoMatter) {
  const int own = getpriority(PRIO_PROCESS, 0);
  const bool allowed = setpriority(PRIO_PROCESS, 0, -5) == 0;
  setpriority(PRIO_PROCESS, 0, own);
  const std::string program = Program("nice");
  EXPECT_EQ(Run(program, win::kHighPriorityClass), std::to_string(allowed ? -5 : own) + "\n");
  EXPECT_EQ(Run(program), std::to_string(own) + "\n");
}

TEST_F(ProcessTest, TheRunnerIsNamedByTheEnvironmentThenTheFileThenWine) {
  const fs::path folder = sandbox.Root() / "path", runner = folder / "my runner";
  const fs::path ini = sandbox.Home() / "config" / "varnik" / "platform.ini";
  for (const fs::path& script : {folder / "wine", runner})
    test::WriteScript(script, R"(printf '<%s>' "${0##*/}" "$@" > "$OUT")");
  test::WriteFile(sandbox.Install() / "bzone.exe", "MZ");
  const std::string line = quoted + " -a \"b c\"";
  const std::string passed = "<" + (sandbox.Install() / "bzone.exe").string() + "><-a><b c>";
  const std::string path = getenv("PATH");
  setenv("PATH", (folder.string() + ":" + path).c_str(), 1);
  EXPECT_EQ(Run(line), "<wine>" + passed);
  setenv("PATH", path.c_str(), 1);
  test::WriteFile(ini, "[Wine]\r\n; runner of old\r\n runner = \"" + runner.string() + "\" --fast\r\n");
  EXPECT_EQ(Run(line), "<my runner><--fast>" + passed);
  test::WriteFile(ini, "Runner=/no/such\nRunner=/nor/this\n");
  EXPECT_FALSE(Start(line).Started());
  setenv("VARNIK_RUNNER", runner.c_str(), 1);
  EXPECT_EQ(Run(line), "<my runner>" + passed);
}

TEST_F(ProcessTest, TheRunnerIsToldThePrefixThatTheProgramLiesIn) {
  test::WriteScript(sandbox.Root() / "runner", R"(printf %s "$WINEPREFIX" > "$OUT")");
  setenv("VARNIK_RUNNER", (sandbox.Root() / "runner").c_str(), 1);
  const fs::path prefix = sandbox.Root() / "pre fix", outside = sandbox.Root() / "drive_c";
  fs::create_directories(prefix / "dosdevices");
  fs::create_directory_symlink("../drive_c", prefix / "dosdevices/c:");
  fs::create_directory_symlink(prefix / "drive_c", sandbox.Root() / "link");
  for (const fs::path& folder : {prefix / "drive_c/drive_c", outside})
    test::WriteFile(folder / "bzone.exe", "MZ");
  for (const fs::path& folder :
       {prefix / "drive_c/drive_c", prefix / "dosdevices/c:/drive_c", sandbox.Root() / "link/drive_c"})
    EXPECT_EQ(Run("\"" + folder.string() + "\\bzone.exe\""), prefix.string()) << folder;
  EXPECT_EQ(Run("\"" + outside.string() + "\\bzone.exe\""), "/default");
}

TEST_F(ProcessTest, ShellExecuteTakesAnUnquotedExistingPathWholeAndLeavesNoZombie) {
  const auto await = [](const std::function<bool()>& condition) {
    for (int i = 0; i < 1000 && !condition(); ++i)
      std::this_thread::sleep_for(milliseconds(10));
    return condition();
  };
  const auto prints = [&](const std::string& text) { return await([&] { return test::ReadFile(out) == text; }); };
  test::WriteScript(sandbox.Install() / "a mod" / "set up.exe", R"(echo "$#" "$PWD" > "$OUT")");
  EXPECT_TRUE(win::ShellExecute(sandbox.InstallText() + "a mod\\Set up.exe"));
  EXPECT_TRUE(prints("0 " + (sandbox.Install() / "a mod").string() + "\n"));
  EXPECT_TRUE(win::ShellExecute("\"" + sandbox.InstallText() + "a mod\\set up.exe\" x y", sandbox.InstallText()));
  EXPECT_TRUE(prints("2 " + sandbox.Install().string() + "\n"));
  EXPECT_FALSE(win::ShellExecute(sandbox.InstallText() + "gone.exe"));
  siginfo_t info;
  EXPECT_TRUE(await([&] { return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) != 0; }));
}

}  // namespace
