#include "tests/harness/crash.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

// The harness has to be right for the tests that rely on it to mean anything.
namespace {

TEST(CrashHarness, InterferesAtEachOperationOfTheProgramItself) {
  const test::Sandbox sandbox;
  const test::Command command{{"/bin/dash", "-c",
                               "cd \"$0\"; read -r line < /proc/version; echo > /dev/null; /bin/mkdir c; /bin/rmdir c; "
                               "echo to a pipe; echo x > a; echo y > b; echo end",
                               sandbox.Install().string()}};
  std::vector<std::map<std::string, std::string>> left;
  const auto prepare = [&] {
    for (const char* name : {"a", "b"})
      std::filesystem::remove(sandbox.Install() / name);
  };
  const auto judge = [&] { left.push_back(test::Snapshot(sandbox.Install())); };
  test::SweepKills(command, prepare, judge);
  EXPECT_EQ(left, (decltype(left){{}, {{"a", ""}}, {{"a", "x\n"}}, {{"a", "x\n"}, {"b", ""}}}));
  left.clear();
  test::SweepFullDisk(command, prepare, judge);
  const decltype(left)::value_type early{{"a", ""}, {"b", ""}}, late{{"a", "x\n"}, {"b", ""}};
  EXPECT_EQ(left, (decltype(left){early, early, late, late}));
  EXPECT_EQ(test::Run(command).output, "to a pipe\nend\n");
}

}  // namespace
