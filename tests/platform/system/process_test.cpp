#include "platform/system/process/process.h"

#include "platform/system/paths/paths.h"
#include "platform/system/process/launch.h"
#include "platform/system/text/text.h"
#include "tests/harness/cases.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <ctime>
#include <thread>

namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using win::WaitResult;
using List = std::vector<std::string>;

constexpr int kLong = 20'000;

struct ProcessTest : testing::Test {
  ProcessTest() {
    setenv("OUT", out.c_str(), 1);
    unsetenv("VARNIK_RUNNER");
  }

  // A program of the install that records what `body` prints.
  std::string Program(const std::string& body) {
    test::WriteScript(program, "{\n" + body + "\n} > \"$OUT\"");
    return quoted;
  }
  win::Process Start(const std::string& line) {
    return win::CreateProcess(line, win::kNormalPriorityClass, sandbox.InstallText());
  }
  std::string Run(const std::string& line) {
    EXPECT_EQ(Start(line).Wait(kLong), WaitResult::kEnded);
    return test::ReadFile(out);
  }

  test::Sandbox sandbox;
  const fs::path out = sandbox.Root() / "out";
  const std::string program = (sandbox.Install() / "bzone.exe").string();
  const std::string quoted = "\"" + sandbox.InstallText() + "BZONE.exe\"";
};

TEST_F(ProcessTest, ANativeProgramGetsItsArgumentsFolderAndEnvironment) {
  setenv("GIVEN", "from us", 1);
  Program(R"(printf '<%s>' "$@" "$GIVEN" "$PWD")");
  EXPECT_EQ(Run(quoted + R"(  "my map.bzn"  -x "" C:\a\ )"),
            R"(<my map.bzn><-x><><C:\a\><from us><)" + sandbox.Install().string() + ">");
  for (const std::string& folder : {sandbox.InstallText() + "gone\\", std::string()})
    EXPECT_FALSE(win::CreateProcess(quoted, win::kNormalPriorityClass, folder).Started());
}

TEST_F(ProcessTest, AChildStartsFromACleanSlate) {
  const int open = ::open("/dev/null", O_RDONLY);  // without O_CLOEXEC
  signal(SIGINT, SIG_IGN);
  signal(SIGCHLD, SIG_IGN);
  win::Process process =
      Start(Program("grep SigIgn /proc/$$/status | tail -c 6; read -r line && echo has input\n"
                    "[ -e /proc/$$/fd/" +
                    std::to_string(open) +
                    " ] && echo inherited\n"
                    "echo $$ $(cut -d' ' -f5,6 /proc/$$/stat) | tr ' ' '\\n' | uniq | wc -l; exit 5"));
  EXPECT_EQ(process.Wait(kLong), WaitResult::kEnded);
  EXPECT_EQ(process.ExitStatus(), 5);
  EXPECT_EQ(test::ReadFile(out), "00000\n1\n");  // leads its group and its session
  signal(SIGINT, SIG_DFL);
  signal(SIGCHLD, SIG_DFL);
  ::close(open);
}

TEST_F(ProcessTest, AFailedStartEndsTheWaitAndSaysWhy) {
  setenv("VARNIK_RUNNER", "/no/such/runner", 1);
  const std::tuple<const char*, const char*, fs::perms> cases[] = {
      {"#!/bin/sh\n", "Permission denied", fs::perms(0600)},
      {"neither a program of this system nor of Windows", "Exec format error", fs::perms(0700)},
      {"MZ", "/no/such/runner", fs::perms(0700)},
      {"#!/no/such\n", "No such file", fs::perms(0700)}};
  for (const auto& [content, reason, permissions] : cases) {
    test::WriteFile(program, content);
    fs::permissions(program, permissions);
    testing::internal::CaptureStderr();
    win::Process process = Start(quoted + " -win");
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(process.Started());
    EXPECT_EQ(process.Wait(kLong), WaitResult::kFailed);
    for (const std::string& text : {program, std::string(reason)})
      EXPECT_NE(said.find(text), std::string::npos) << said;
    EXPECT_EQ(said.find('\n'), said.size() - 1);
  }
}

TEST_F(ProcessTest, TheWaitSleepsUntilAllOfTheSessionHasEnded) {
  win::Process process =
      Start(Program("( (while [ -e bzone.exe ] && ! [ -e go ]; do sleep 0.05; done; echo > late) & ) & kill -SEGV $$"));
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

TEST_F(ProcessTest, TheRunnerIsNamedByTheEnvironmentThenTheFileThenWine) {
  const fs::path folder = sandbox.Root() / "path", runner = folder / "my runner";
  const fs::path ini = sandbox.Home() / "config" / "varnik" / "platform.ini";
  for (const fs::path& script : {folder / "wine", runner})
    test::WriteScript(script, R"(printf '<%s>' "${0##*/}" "$@" > "$OUT")");
  test::WriteFile(program, "MZ");
  const std::string line = quoted + " -a \"b c\"";
  const std::string passed = "<" + program + "><-a><b c>";
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
  setenv("WINEPREFIX", "/default", 1);
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
    EXPECT_TRUE(condition());
  };
  const auto awaitOutput = [&](const std::string& text) { await([&] { return test::ReadFile(out) == text; }); };
  test::WriteScript(sandbox.Install() / "a mod" / "set up.exe", R"(echo "$#" "$PWD" > "$OUT")");
  EXPECT_TRUE(win::ShellExecute(sandbox.InstallText() + "a mod\\Set up.exe"));
  awaitOutput("0 " + (sandbox.Install() / "a mod").string() + "\n");
  EXPECT_TRUE(win::ShellExecute("\"" + sandbox.InstallText() + "a mod\\set up.exe\" x y", sandbox.InstallText()));
  awaitOutput("2 " + sandbox.Install().string() + "\n");
  EXPECT_FALSE(win::ShellExecute(sandbox.InstallText() + "gone.exe"));
  siginfo_t info;
  await([&] { return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) != 0; });
}

// The head of a Windows program whose PE header, for a processor, stands at an offset.
std::string Head(const std::string& processor, std::uint32_t offset = 0x80) {
  const std::map<std::string, std::string> machines = {{"x86", "\x4c\x01"}, {"x64", "\x64\x86"}, {"arm", "\x64\xaa"}};
  std::string head = "MZ" + std::string(0x3a, '\0') + std::string(reinterpret_cast<const char*>(&offset), 4);
  if (offset < 0x1000) head.resize(offset, '\0');
  return head + "PE" + std::string(2, '\0') + machines.at(processor);
}

TEST_F(ProcessTest, TheStarterIsOneThatTheProgramsPrefixCanRun) {
  const std::string starter32 = BINARY_DIR "/varnik-start32.exe", starter64 = BINARY_DIR "/varnik-start64.exe";
  if (!fs::exists(starter32) || !fs::exists(starter64)) GTEST_SKIP() << "the Windows programs were not built";
  setenv("VARNIK_RUNNER", "runner --fast", 1);
  const auto prepared = [&](const std::string& content) {
    test::WriteFile(program, content);
    return win::PrepareLaunch(program, " a  b ").arguments;
  };
  const List direct{"runner", "--fast", program, "a", "b"};
  const fs::path wine = sandbox.Home() / "wine", drives = wine / "dosdevices";
  fs::create_directories(drives);
  fs::create_directory_symlink("/", drives / "z:");
  EXPECT_EQ(prepared(Head("x86")), direct);  // the prefix is not set up yet
  test::WriteFile(wine / "drive_c/windows/system32/kernel32.dll", "");
  EXPECT_EQ(prepared(Head("x86")), (List{"runner", "--fast", starter32, program, "a", "b"}));
  EXPECT_EQ(prepared(Head("x64", 0xf8)), (List{"runner", "--fast", starter64, program, "a", "b"}));
  for (const std::string& other :
       {Head("arm"), Head("x86").substr(0, 0x85), Head("x86", 0xffff'ffff), "MZ" + std::string(600, 0)})
    EXPECT_EQ(prepared(other), direct);
  const fs::path ini = sandbox.Home() / "config" / "varnik" / "platform.ini";
  test::WriteFile(ini, "starter = off\n");
  EXPECT_EQ(prepared(Head("x86")), direct);
  fs::remove(ini);
  fs::rename(drives / "z:", drives / "d:");
  setenv("VARNIK_RUNNER", "flatpak run wine", 1);
  EXPECT_EQ(prepared(Head("x86")), (List{"flatpak", "run", "wine", program, "a", "b"}));
  setenv("VARNIK_RUNNER", "runner --fast", 1);
  EXPECT_EQ(prepared(Head("x86"))[2], starter32);
  fs::remove(drives / "d:");
  for (const fs::path& seen : {fs::path(BINARY_DIR), sandbox.Install()}) {
    fs::create_directory_symlink(seen, drives / "d:");
    EXPECT_EQ(prepared(Head("x86")), direct) << seen;
    fs::remove(drives / "d:");
  }
}

// Each row: the program's processor, a runner's file name, the files of the installation around it, and what is said.
TEST_F(ProcessTest, ARunnerThatCannotRunAProgramIsKnownBeforehand) {
  const auto problem = [&] { return win::RunnerProblem(quoted + " /win"); };
  for (const auto& row : test::Cases("platform/system/vectors/runners.jsonl")) {
    SCOPED_TRACE(row.dump());
    const fs::path opt = sandbox.Root() / "opt", runner = opt / "bin" / row["runner"].get<std::string>();
    fs::remove_all(opt);
    for (const std::string file : row["files"])
      test::WriteFile(opt / file, "");
    test::WriteFile(runner, "");
    setenv("VARNIK_RUNNER", (runner.string() + " --fast").c_str(), 1);
    test::WriteFile(program, Head(row["processor"]));
    EXPECT_NE(problem().find("cannot be started"), std::string::npos);  // it may not be executed
    fs::permissions(runner, fs::perms::owner_all);
    EXPECT_NE(problem().find(row["said"]), std::string::npos) << problem();
    EXPECT_EQ(problem().empty(), row["said"] == "");
  }
  setenv("VARNIK_RUNNER", "no-such-runner", 1);
  EXPECT_NE(problem().find("no-such-runner"), std::string::npos);
  test::WriteFile(program, "#!/bin/sh\n");
  EXPECT_EQ(problem(), "");
  fs::remove(program);
  EXPECT_EQ(problem(), "");
}

TEST(Wine, AProgramSeesItsLineToTheByteAndIsWaitedForWithAllThatItStarts) {
  const test::Sandbox sandbox;
  for (const char* name : {"VARNIK_RUNNER", "DISPLAY", "WAYLAND_DISPLAY"})
    unsetenv(name);
  setenv("WINEDEBUG", "-all", 1);
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("WINEDLLOVERRIDES", "mscoree,mshtml=", 1);
  if (!fs::exists(BINARY_DIR "/showline.exe")) GTEST_SKIP() << "the Windows programs were not built";
  if (std::system("wine wineboot -i > /dev/null 2>&1") != 0) GTEST_SKIP() << "there is no Wine that makes a prefix";
  const fs::path game = sandbox.Home() / "wine" / "drive_c" / "games" / "Battlezone II";
  fs::create_directories(game);
  fs::copy_file(BINARY_DIR "/showline.exe", game / "bzone.exe");
  const fs::path ini = sandbox.Home() / "config" / "varnik" / "platform.ini";
  const auto run = [&](const std::string& tail) {
    win::Process process = win::CreateProcess("\"" + game.string() + "\\bzone.exe\"" + tail, 32, game.string());
    EXPECT_EQ(process.Wait(60'000), win::WaitResult::kEnded);
    EXPECT_EQ(process.ExitStatus(), 7);
  };
  const auto expectLine = [&](const std::string& tail) {
    run(tail);
    EXPECT_EQ(test::ReadFile(game / "line.txt"), R"("C:\games\Battlezone II\bzone.exe")" + win::Utf8FromBytes(tail));
  };
  const List everywhere = {" caf\xc3\xa9", " \x81\xe9\xff"};
  for (const std::string& tail : everywhere)
    expectLine(tail);
  for (const std::string tail : {"", " ", "  \"my map.bzn\"  -x \"\" ", R"( a\ "b\\" \" d"e'*?%PATH%^& )"})
    expectLine(tail);
  test::WriteFile(ini, "Starter=Off");
  for (const std::string& tail : everywhere)
    expectLine(tail);
  fs::remove(ini);
  run(" --again");
  EXPECT_EQ(test::ReadFile(game / "late.txt"), "bzone.exe --late");
  EXPECT_TRUE(win::FindNativePath("c:\\GAMES\\battlezone ii\\LATE.TXT"));
}

}  // namespace
