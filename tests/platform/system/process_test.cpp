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
    setenv("OUT", (sandbox.Root() / "out").c_str(), 1);
    unsetenv("VARNIK_RUNNER");
  }

  // A program of the install that records what `body` prints.
  std::string Program(const std::string& body) {
    test::WriteScript(sandbox.Install() / "bzone.exe", "{\n" + body + "\n} > \"$OUT\"");
    return "\"" + sandbox.InstallText() + "BZONE.exe\"";
  }

  win::Process Start(const std::string& line, unsigned flags = win::kNormalPriorityClass) {
    return win::CreateProcess(line, flags, sandbox.InstallText());
  }

  std::string Run(const std::string& line, unsigned flags = win::kNormalPriorityClass) {
    EXPECT_EQ(Start(line, flags).Wait(kLong), WaitResult::kEnded);
    return Output();
  }

  std::string Output() const { return test::ReadFile(sandbox.Root() / "out"); }

  test::Sandbox sandbox;
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
  signal(SIGINT, SIG_IGN);
  signal(SIGCHLD, SIG_IGN);
  win::Process process =
      Start(Program("grep SigIgn /proc/$$/status\n[ -e /proc/$$/fd/" + std::to_string(open) +
                    " ] && echo inherited\nread -r line && echo 'has input'\ncut -d' ' -f1,5,6 /proc/$$/stat; exit 5"));
  EXPECT_EQ(process.Wait(kLong), WaitResult::kEnded);
  EXPECT_EQ(process.ExitStatus(), 5);
  signal(SIGINT, SIG_DFL);
  ::close(open);
  unsigned long ignored = 0;
  int id = 0, group = 0, session = 0;
  const std::string output = Output();
  EXPECT_EQ(std::sscanf(output.c_str(), "SigIgn: %lx %d %d %d", &ignored, &id, &group, &session), 4) << output;
  EXPECT_EQ(ignored & (1u << (SIGINT - 1) | 1u << (SIGCHLD - 1)), 0);
  EXPECT_EQ(id, group);
  EXPECT_EQ(id, session);
}

TEST_F(ProcessTest, AFailedStartEndsTheWaitAndSaysWhy) {
  const struct {
    const char *what, *content;
    fs::perms mode;
    const char* reason;
  } kCases[] = {
      {"a script that may not be run", "#!/bin/sh\n", fs::perms(0600), "Permission denied"},
      {"neither a program of this system nor of Windows", "text", fs::perms(0700), "Exec format error"},
      {"a missing runner", "MZ", fs::perms(0600), "/no/such/runner"},
      {"a missing interpreter", "#!/no/such\n", fs::perms(0700), "No such file"},
  };
  setenv("VARNIK_RUNNER", "/no/such/runner", 1);
  const fs::path program = sandbox.Install() / "bzone.exe";
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    test::WriteFile(program, c.content);
    fs::permissions(program, c.mode);
    testing::internal::CaptureStderr();
    win::Process process = Start("\"" + sandbox.InstallText() + "bzone.exe\" -win");
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(process.Started());
    EXPECT_EQ(process.Wait(kLong), WaitResult::kFailed);
    EXPECT_EQ(process.ExitStatus(), -1);
    EXPECT_NE(said.find(program.string()), std::string::npos) << said;
    EXPECT_NE(said.find(c.reason), std::string::npos) << said;
    EXPECT_EQ(said.find('\n'), said.size() - 1);
  }
}

TEST_F(ProcessTest, TheWaitSleepsUntilAllOfTheSessionHasEnded) {
  const fs::path go = sandbox.Root() / "go", late = sandbox.Root() / "late";
  win::Process process = Start(Program("( (until [ -e " + go.string() + " ]; do sleep 0.05; done; echo > " +
                                       late.string() + ") & ) & kill -SEGV $$"));
  for (int i = 0; i < 1000 && process.ExitStatus() == -1; ++i)
    EXPECT_EQ(process.Wait(10), WaitResult::kTimedOut);
  const auto start = std::chrono::steady_clock::now();
  const std::clock_t worked = std::clock();
  EXPECT_EQ(process.Wait(500), WaitResult::kTimedOut);
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(500));
  EXPECT_LT(std::clock() - worked, CLOCKS_PER_SEC / 4);
  test::WriteFile(go, "");
  EXPECT_EQ(process.Wait(kLong), WaitResult::kEnded);
  EXPECT_TRUE(fs::exists(late));
  EXPECT_EQ(process.ExitStatus(), 128 + SIGSEGV);
}

TEST_F(ProcessTest, HighPriorityIsAskedForAndARefusalIsNoMatter) {
  const int own = getpriority(PRIO_PROCESS, 0);
  const bool allowed = setpriority(PRIO_PROCESS, 0, -5) == 0;
  setpriority(PRIO_PROCESS, 0, own);
  const std::string program = Program("nice");
  EXPECT_EQ(Run(program, win::kHighPriorityClass), std::to_string(allowed ? -5 : own) + "\n");
  EXPECT_EQ(Run(program), std::to_string(own) + "\n");
  EXPECT_EQ(getpriority(PRIO_PROCESS, 0), own);
}

TEST_F(ProcessTest, TheRunnerIsNamedByTheEnvironmentThenTheFileThenWine) {
  const fs::path folder = sandbox.Root() / "path", runner = folder / "my runner";
  const fs::path ini = sandbox.Home() / "config" / "varnik" / "platform.ini";
  for (const fs::path& script : {folder / "wine", runner})
    test::WriteScript(script, R"(printf '<%s>' "${0##*/}" "$@" "$WINEPREFIX" > "$OUT")");
  test::WriteFile(sandbox.Install() / "bzone.exe", "MZ");
  const auto run = [&] { return Run("\"" + sandbox.InstallText() + "bzone.exe\" -a \"b c\""); };
  const std::string passed = "<" + (sandbox.Install() / "bzone.exe").string() + "><-a><b c><>";
  unsetenv("WINEPREFIX");
  const std::string path = getenv("PATH");
  setenv("PATH", (folder.string() + ":" + path).c_str(), 1);
  EXPECT_EQ(run(), "<wine>" + passed);
  test::WriteFile(ini, "[Wine]\r\n; runner of old\r\n runner = \"" + runner.string() + "\" --fast\r\n");
  EXPECT_EQ(run(), "<my runner><--fast>" + passed);
  test::WriteFile(ini, "Runner=/no/such\nRunner=/nor/this\n");
  EXPECT_FALSE(Start(sandbox.InstallText() + "bzone.exe").Started());
  setenv("VARNIK_RUNNER", runner.c_str(), 1);
  EXPECT_EQ(run(), "<my runner>" + passed);
  setenv("PATH", path.c_str(), 1);
}

TEST_F(ProcessTest, TheRunnerIsToldThePrefixThatTheProgramLiesIn) {
  test::WriteScript(sandbox.Root() / "runner", R"(printf '<%s>' "$WINEPREFIX" > "$OUT")");
  setenv("VARNIK_RUNNER", (sandbox.Root() / "runner").c_str(), 1);
  setenv("WINEPREFIX", "/the/default", 1);
  const fs::path prefix = sandbox.Root() / "pre fix";
  fs::create_directories(prefix / "dosdevices");
  fs::create_directory_symlink("../drive_c", prefix / "dosdevices" / "c:");
  fs::create_directory_symlink(prefix / "drive_c", sandbox.Root() / "link");
  for (const fs::path& folder : {prefix / "drive_c" / "drive_c", sandbox.Root() / "drive_c"})
    test::WriteFile(folder / "bzone.exe", "MZ");
  const std::pair<fs::path, std::string> kCases[] = {{prefix / "drive_c" / "drive_c", prefix},
                                                     {prefix / "dosdevices" / "c:" / "drive_c", prefix},
                                                     {sandbox.Root() / "link" / "drive_c", prefix},
                                                     {sandbox.Root() / "drive_c", "/the/default"}};
  for (const auto& [folder, told] : kCases)
    EXPECT_EQ(Run("\"" + folder.string() + "\\bzone.exe\""), "<" + told + ">") << folder;
}

TEST_F(ProcessTest, ShellExecuteTakesAnUnquotedExistingPathWholeAndLeavesNoZombie) {
  const auto awaitOutput = [&] {
    for (int i = 0; i < 1000 && !Output().ends_with("end\n"); ++i)
      std::this_thread::sleep_for(milliseconds(10));
    return Output();
  };
  test::WriteScript(sandbox.Install() / "a mod" / "set up.exe", R"(echo "$#" "$PWD" > "$OUT"; echo end >> "$OUT")");
  EXPECT_TRUE(win::ShellExecute(sandbox.InstallText() + "a mod\\Set up.exe"));
  EXPECT_EQ(awaitOutput(), "0 " + (sandbox.Install() / "a mod").string() + "\nend\n");
  fs::remove(sandbox.Root() / "out");
  EXPECT_TRUE(win::ShellExecute("\"" + sandbox.InstallText() + "a mod\\set up.exe\" x y", sandbox.InstallText()));
  EXPECT_EQ(awaitOutput(), "2 " + sandbox.Install().string() + "\nend\n");
  testing::internal::CaptureStderr();
  EXPECT_FALSE(win::ShellExecute(sandbox.InstallText() + "gone.exe"));
  EXPECT_NE(testing::internal::GetCapturedStderr().find("gone.exe"), std::string::npos);
  siginfo_t info;
  const auto childIsLeft = [&] { return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0; };
  for (int i = 0; i < 1000 && childIsLeft(); ++i)
    std::this_thread::sleep_for(milliseconds(10));
  EXPECT_FALSE(childIsLeft());
}

}  // namespace
