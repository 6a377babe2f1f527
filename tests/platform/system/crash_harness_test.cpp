#include "tests/harness/crash.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <signal.h>

// The harness has to be right for the tests that rely on it to mean anything.
namespace {

using Files = std::map<std::string, std::string>;

TEST(CrashHarness, InterferesAtEachOperationOfTheProgramItself) {
  const test::Sandbox sandbox;
  const auto files = [&] { return test::Snapshot(sandbox.Install()); };
  const auto shell = [&](const std::string& text) {
    return test::Command{{"/bin/dash", "-c", "cd \"$0\"; " + text, sandbox.Install().string()}};
  };
  const std::string reads = "read -r line < /proc/version; echo to a pipe; echo > /dev/null; ";
  EXPECT_TRUE(test::Operations(shell(reads + "/bin/mkdir b; /bin/rmdir b")).empty());
  const test::Command command = shell(reads + "echo x > a; echo y > b; echo end");
  const auto operations = test::Operations(command);
  const Files killed[] = {{}, {{"a", ""}}, {{"a", "x\n"}}, {{"a", "x\n"}, {"b", ""}}};
  ASSERT_EQ(operations.size(), std::size(killed));
  for (std::size_t i = 0; i < operations.size(); ++i) {
    for (const char* name : {"a", "b"})
      std::filesystem::remove(sandbox.Install() / name);
    EXPECT_EQ(test::RunKilledAt(operations[i], command).exitStatus, 128 + SIGKILL);
    EXPECT_EQ(files(), killed[i]) << operations[i].line;
  }
  EXPECT_EQ(test::RunWithFullDisk(operations[1], command).exitStatus, 1);
  EXPECT_EQ(files(), (Files{{"a", ""}, {"b", ""}}));
  EXPECT_EQ(test::Run(command).output, "to a pipe\nend\n");
}

}  // namespace
