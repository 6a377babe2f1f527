#include "support/modshellwait.h"

#include "installs/installlist.h"
#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "support/runstate.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

struct ShellAndWaitTest : testing::Test {
  ShellAndWaitTest() {
    sandbox.MakeInstall();
    varnik::UseInstallFolder(sandbox.InstallText());
  }
  ~ShellAndWaitTest() override { win::SetWindowServices({}); }

  int Run(const std::string& body) {
    test::WriteFile(sandbox.Install() / "bzone.exe", "#!/bin/sh\n" + body + "\n");
    return varnik::ShellAndWait("\"" + sandbox.InstallText() + "bzone.exe\" ", win::kNormalPriorityClass);
  }

  test::Sandbox sandbox;
};

TEST_F(ShellAndWaitTest, PumpsEventsWhileTheGameRunsInItsFolder) {
  int pumped = 0;
  win::SetWindowServices({[&pumped] {
                            ++pumped;
                            EXPECT_TRUE(varnik::GameRunning);
                          },
                          nullptr, nullptr});
  EXPECT_EQ(Run("pwd > here; sleep 1.2; exit 4"), 4);
  EXPECT_FALSE(varnik::GameRunning);
  EXPECT_GE(pumped, 3);
  EXPECT_LE(pumped, 6);
  EXPECT_EQ(test::ReadFile(sandbox.Install() / "here"), sandbox.Install().string() + "\n");
}

TEST_F(ShellAndWaitTest, AFailedStartEndsAtOnce) {
  EXPECT_EQ(varnik::ShellAndWait("\"" + sandbox.InstallText() + "gone.exe\" ", 32), -1);
  EXPECT_FALSE(varnik::GameRunning);
}

}  // namespace
