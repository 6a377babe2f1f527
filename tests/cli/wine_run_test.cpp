#include "tests/cli/cliworld.h"
#include "tests/harness/wine.h"

#include <gtest/gtest.h>

namespace {

// A whole run with a Windows program for a game, through the real Wine.
class CliWine : public testing::Test, public test::CliWorld {};

TEST_F(CliWine, RunsAWindowsGameWithAModAndPutsAllBack) {
  std::filesystem::path game;
  if (const std::string reason = test::PrepareWine(sandbox, game); !reason.empty()) GTEST_SKIP() << reason;
  for (const char* name : {"data.pak", "binkw32.dll", "addon/Plain.odf"})
    test::WriteFile(game / name, name);
  test::WriteFile(game / "mod.bzm", "BZ2HALD5\r\nrename(addon\\plain.odf, addon\\Modded.odf);\r\n");
  const test::CliResult run =
      RunCli("--json --root '" + game.string() + "' run mod.bzm --options '-win \"a  b\" --look --again'");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(test::Json::parse(run.out)["ExitStatus"], 7);
  EXPECT_EQ(test::ReadFile(game / "line.txt"), R"("C:\games\Battlezone II\bzone.exe" -win "a  b" --look --again)");
  EXPECT_EQ(test::ReadFile(game / "seen.txt"), "addon/Plain.odf");
  EXPECT_EQ(test::ReadFile(game / "late.txt"), "bzone.exe --late");
  EXPECT_EQ(test::ReadFile(game / "addon" / "plain.odf") + test::ReadFile(game / "addon" / "Plain.odf"),
            "addon/Plain.odf");
}

}  // namespace
