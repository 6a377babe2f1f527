#include "platform/system/process/process.h"

#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <thread>

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

  fs::path Script(const fs::path& path, const std::string& body) {
    test::WriteFile(path, "#!/bin/bash\n" + body + "\n");
    fs::permissions(path, fs::perms::owner_exec, fs::perm_options::add);
    return path;
  }

  // A program of the install that records what `body` prints.
  std::string Program(const std::string& body) {
    Script(sandbox.Install() / "bzone.exe", "{\n" + body + "\n} > \"$OUT\"");
    return "\"" + sandbox.InstallText() + "BZONE.exe\"";
  }

  win::Process Start(const std::string& line, unsigned flags = win::kNormalPriorityClass) {
    return win::CreateProcess(line, flags, sandbox.InstallText());
  }

  std::string Run(const std::string& line, unsigned flags = win::kNormalPriorityClass) {
    win::Process process = Start(line, flags);
    EXPECT_EQ(process.Wait(kLong), WaitResult::kEnded);
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
}

TEST_F(ProcessTest, AChildStartsFromACleanSlate) {
  const int open = ::open("/dev/null", O_RDONLY);  // without O_CLOEXEC
  signal(SIGINT, SIG_IGN);
  signal(SIGCHLD, SIG_IGN);
  const std::string program = Program(
      "grep SigIgn /proc/$$/status\n"
      "[ -e /proc/$$/fd/" +
      std::to_string(open) +
      " ] && echo inherited\n"
      "read -r line && echo 'has input'\n"
      "cut -d' ' -f1,5,6 /proc/$$/stat; exit 5");
  win::Process process = Start(program);
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

TEST_F(ProcessTest, AClosedStandardErrorDoesNotKeepAProgramFromStarting) {
  const std::string program = Program("echo started; echo complaint >&2");
  const int kept = dup(STDERR_FILENO);
  close(STDERR_FILENO);
  EXPECT_EQ(Run(program), "started\n");
  dup2(kept, STDERR_FILENO);
  close(kept);
}

TEST_F(ProcessTest, AFailedStartEndsTheWaitAndSaysWhy) {
  const struct {
    const char *what, *file, *content, *reason;
  } kCases[] = {
      {"missing", "bzone.exe", nullptr, "No such file"},
      {"a script that may not be run", "bzone.exe", "#!/bin/sh\n", "Permission denied"},
      {"neither a program of this system nor of Windows", "bzone.exe", "+text", "Exec format error"},
      {"a folder", "bzone.exe/x", "", "Permission denied"},
      {"a missing runner", "bzone.exe", "MZ", "/no/such/runner"},
      {"a missing interpreter", "bzone.exe", "+#!/no/such\n", "No such file"},
  };
  setenv("VARNIK_RUNNER", "/no/such/runner", 1);
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    fs::remove_all(sandbox.Install() / "bzone.exe");
    const std::string content = c.content ? c.content : "";
    const bool executable = content.starts_with('+');
    if (c.content) test::WriteFile(sandbox.Install() / c.file, content.substr(executable));
    if (executable) fs::permissions(sandbox.Install() / c.file, fs::perms::owner_all);
    testing::internal::CaptureStderr();
    win::Process process = Start("\"" + sandbox.InstallText() + "bzone.exe\" -win");
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(process.Started());
    EXPECT_EQ(process.Wait(kLong), WaitResult::kFailed);
    EXPECT_EQ(process.ExitStatus(), -1);
    EXPECT_NE(said.find((sandbox.Install() / "bzone.exe").string()), std::string::npos) << said;
    EXPECT_NE(said.find(c.reason), std::string::npos) << said;
    EXPECT_EQ(said.find('\n'), said.size() - 1);
  }
}

TEST_F(ProcessTest, AMissingStartFolderFailsTheStart) {
  const std::string program = Program("true");
  EXPECT_FALSE(win::CreateProcess(program, win::kNormalPriorityClass, sandbox.InstallText() + "gone\\").Started());
  EXPECT_FALSE(win::CreateProcess(program, win::kNormalPriorityClass, "").Started());
  EXPECT_FALSE(fs::exists(sandbox.Root() / "out"));
}

TEST_F(ProcessTest, TheWaitIsForAllThatIsLeftInTheSession) {
  const fs::path late = sandbox.Root() / "late";
  win::Process process =
      Start(Program("set -m; (sleep 0.3; (sleep 0.3; echo > " + late.string() + ") & ) & kill -SEGV $$"));
  EXPECT_EQ(process.Wait(150), WaitResult::kTimedOut);
  EXPECT_EQ(process.ExitStatus(), 128 + SIGSEGV);
  EXPECT_EQ(process.Wait(kLong), WaitResult::kEnded);
  EXPECT_TRUE(fs::exists(late));
  EXPECT_EQ(process.ExitStatus(), 128 + SIGSEGV);
}

TEST_F(ProcessTest, TheWaitSleepsAndWakesAtOnce) {
  const auto start = std::chrono::steady_clock::now();
  const std::clock_t worked = std::clock();
  win::Process process = Start(Program("sleep 0.5"));
  EXPECT_EQ(process.Wait(200), WaitResult::kTimedOut);
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(200));
  EXPECT_EQ(process.Wait(kLong), WaitResult::kEnded);
  EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(5000));
  EXPECT_LT(std::clock() - worked, CLOCKS_PER_SEC / 10);
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

// A Windows program, by its first bytes.
struct RunnerTest : ProcessTest {
  RunnerTest() {
    test::WriteFile(sandbox.Install() / "bzone.exe", "MZ");
    runner = Script(sandbox.Root() / "my runner", R"(printf '<%s>' "$@" "$WINEPREFIX" > "$OUT")").string();
    unsetenv("WINEPREFIX");
  }
  std::string RunGame() { return Run("\"" + sandbox.InstallText() + "bzone.exe\" -a \"b c\""); }
  std::string Expected(const std::string& prefix = "") const {
    return "<" + (sandbox.Install() / "bzone.exe").string() + "><-a><b c><" + prefix + ">";
  }
  std::string runner;
};

TEST_F(RunnerTest, IsNamedByTheEnvironmentThenTheFileThenWine) {
  const std::string path = getenv("PATH");
  fs::create_directories(sandbox.Root() / "path");
  fs::copy_file(runner, sandbox.Root() / "path" / "wine");
  setenv("PATH", ((sandbox.Root() / "path").string() + ":" + path).c_str(), 1);
  EXPECT_EQ(RunGame(), Expected());
  const fs::path ini = sandbox.Home() / "config" / "varnik" / "platform.ini";
  test::WriteFile(ini, "[Wine]\r\n; runner of old\r\n runner = \"" + runner + "\" --fast\r\n");
  EXPECT_EQ(RunGame(), "<--fast>" + Expected());
  test::WriteFile(ini, "Runner=/no/such\nRunner=/nor/this\n");
  EXPECT_FALSE(Start(sandbox.InstallText() + "bzone.exe").Started());
  setenv("VARNIK_RUNNER", runner.c_str(), 1);
  EXPECT_EQ(RunGame(), Expected());
  setenv("PATH", path.c_str(), 1);
}

TEST_F(RunnerTest, IsToldThePrefixThatTheProgramLiesIn) {
  setenv("VARNIK_RUNNER", runner.c_str(), 1);
  setenv("WINEPREFIX", "/the/default", 1);
  const fs::path prefix = sandbox.Root() / "pre fix";
  fs::create_directories(prefix / "dosdevices");
  fs::create_directories(prefix / "drive_c" / "drive_c");
  fs::create_directory_symlink("../drive_c", prefix / "dosdevices" / "c:");
  fs::create_directory_symlink(prefix / "drive_c", sandbox.Root() / "link");
  test::WriteFile(prefix / "drive_c" / "drive_c" / "bzone.exe", "MZ");
  test::WriteFile(sandbox.Root() / "drive_c" / "bzone.exe", "MZ");
  const struct {
    fs::path folder;
    std::string prefix;
  } kCases[] = {{prefix / "drive_c" / "drive_c", prefix},
                {prefix / "dosdevices" / "c:" / "drive_c", prefix},
                {sandbox.Root() / "link" / "drive_c", prefix},
                {sandbox.Root() / "drive_c", "/the/default"},
                {sandbox.Install(), "/the/default"}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.folder);
    const std::string output = Run("\"" + c.folder.string() + "\\bzone.exe\"");
    EXPECT_TRUE(output.ends_with("<" + c.prefix + ">")) << output;
  }
}

struct ShellExecuteTest : ProcessTest {
  std::string AwaitOutput() const {
    for (int i = 0; i < 1000 && !Output().ends_with("end\n"); ++i)
      std::this_thread::sleep_for(milliseconds(10));
    return Output();
  }
};

TEST_F(ShellExecuteTest, TakesAnUnquotedExistingPathWhole) {
  Script(sandbox.Install() / "a mod" / "set up.exe", R"(echo "$#" "$PWD" > "$OUT"; echo end >> "$OUT")");
  EXPECT_TRUE(win::ShellExecute(sandbox.InstallText() + "a mod\\Set up.exe"));
  EXPECT_EQ(AwaitOutput(), "0 " + (sandbox.Install() / "a mod").string() + "\nend\n");
  fs::remove(sandbox.Root() / "out");
  EXPECT_TRUE(win::ShellExecute("\"" + sandbox.InstallText() + "a mod\\set up.exe\" x y", sandbox.InstallText()));
  EXPECT_EQ(AwaitOutput(), "2 " + sandbox.Install().string() + "\nend\n");
  testing::internal::CaptureStderr();
  EXPECT_FALSE(win::ShellExecute(sandbox.InstallText() + "gone.exe"));
  EXPECT_NE(testing::internal::GetCapturedStderr().find("gone.exe"), std::string::npos);
}

TEST_F(ShellExecuteTest, LeavesNoZombie) {
  EXPECT_TRUE(win::ShellExecute(Program("true")));
  siginfo_t info;
  int result = 0;
  for (int i = 0; i < 1000 && result == 0; ++i) {
    result = waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT);
    std::this_thread::sleep_for(milliseconds(10));
  }
  EXPECT_EQ(result, -1);
  EXPECT_EQ(errno, ECHILD);
}

}  // namespace
