#include "tests/harness/crash.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <signal.h>

// The harness has to be right for the tests that rely on it to mean anything.
namespace {

using List = std::vector<std::string>;

struct CrashHarness : testing::Test {
  // Commands with a path of their own are programs that the shell starts; `exec` makes one the program itself.
  test::Command Shell(const std::string& text) const {
    return {{"/bin/dash", "-c", "cd \"$0\"; " + text, sandbox.Install().string()}, {}};
  }
  List Names() const {
    List names;
    for (const auto& [name, content] : test::Snapshot(sandbox.Install()))
      names.push_back(name + "=" + content);
    return names;
  }
  test::Sandbox sandbox;
};

TEST_F(CrashHarness, CountsWhatTheProgramItselfDoes) {
  const struct {
    const char* text;
    int operations;
  } kCases[] = {
      {"read -r line < /proc/version; echo to a pipe; echo > /dev/null", 0},
      {"echo x > a", 2},
      {"echo x > a; echo y >> a", 4},
      {"/bin/mkdir b; /bin/mv b c", 0},
      {"exec /bin/mkdir d", 1},
      {"exec /bin/mv a e", 1},
      {"exec /bin/rm e", 1},
      {"exec /bin/chmod 700 d", 1},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(test::CountOperations(Shell(c.text)), c.operations);
  }
}

TEST_F(CrashHarness, KillsBeforeTheOperation) {
  const std::string text = "echo x > a; echo y > b";
  const List left[] = {{}, {"a="}, {"a=x\n"}, {"a=x\n", "b="}};
  for (int n = 1; n <= 4; ++n) {
    for (const char* name : {"a", "b"})
      std::filesystem::remove(sandbox.Install() / name);
    const test::Outcome outcome = test::RunKilledAt(n, Shell(text));
    EXPECT_EQ(outcome.exitStatus, 128 + SIGKILL);
    EXPECT_EQ(outcome.operations, n);
    EXPECT_EQ(Names(), left[n - 1]) << outcome.lastOperation;
  }
  const test::Outcome outcome = test::RunKilledAt(5, Shell(text + "; echo done"));
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.output, "done\n");
}

TEST_F(CrashHarness, OnAFullDiskWritesFailAndTheRestGoesOn) {
  const test::Outcome outcome = test::RunWithFullDisk(3, Shell("echo x > a; echo y > b; echo z > c; echo end"));
  EXPECT_EQ(Names(), (List{"a=x\n", "b=", "c="}));
  EXPECT_TRUE(outcome.output.ends_with("end\n")) << outcome.output;
}

}  // namespace
