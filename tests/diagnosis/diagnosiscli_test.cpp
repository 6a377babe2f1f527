#include "tests/cli/cliworld.h"

#include <gtest/gtest.h>

namespace {

using test::CliResult;
using test::Json;
using test::ReadFile;
using test::Snapshot;
using test::WriteFile;

class DiagnosisCli : public testing::Test, public test::CliWorld {
 protected:
  DiagnosisCli() {
    sandbox.MakeInstall("1.2");
    WriteFile(sandbox.Install() / "a.odf", "a");
    WriteFile(sandbox.Install() / "mod.bzm",
              "BZ2HALD5\r\nrename(a.odf,b.odf);\r\nrename(none,c.odf);\r\naddrecy(mine,1);\r\nfold(extra);\r\n");
    WriteFile(sandbox.Install() / "bare.bzm", "BZ2HALD5\r\ndname(Bare);\r\n");
  }

  CliResult RunHere(const std::string& arguments) const {
    return RunCli("--root " + sandbox.Install().string() + " " + arguments);
  }
};

TEST_F(DiagnosisCli, PlansWithoutTouchingAnything) {
  const auto before = Snapshot(sandbox.Install());
  const Json plan = Ask("plan mod.bzm --after");
  EXPECT_EQ(plan[0].dump(), R"({"Line":2,"Step":"rename","Target":"b.odf","Source":"a.odf","Works":true,"Why":null})");
  EXPECT_EQ(
      plan[1].dump(),
      R"({"Line":3,"Step":"rename","Target":"c.odf","Source":"none","Works":false,"Why":"there is no such file or folder"})");
  EXPECT_EQ(
      plan.back().dump(),
      R"({"Line":null,"Step":"put back","Target":"RecyList.txt","Source":null,"Works":false,"Why":"it would be left over"})");
  const std::string configuration = RunHere("plan mod.bzm --config").out;
  EXPECT_EQ(Ask("plan mod.bzm --config")["Configuration"], configuration);
  EXPECT_EQ(RunHere("plan bare.bzm --config").status, 1);
  EXPECT_EQ(Snapshot(sandbox.Install()), before);
  EXPECT_TRUE(Stored("Crash").empty());
  EXPECT_EQ(RunHere("activate mod.bzm").status, 0);
  EXPECT_EQ(ReadFile(sandbox.Install() / "bzone.cfg"), configuration);
  EXPECT_NE(RunHere("plan mod.bzm").err.find("is active"), std::string::npos);
}

TEST_F(DiagnosisCli, SaysWhatItFoundAndWhatItMended) {
  EXPECT_EQ(Ask("doctor").dump(), "[]");
  WriteFile(sandbox.Install() / "bzonevarnik.bak", "own");
  WriteFile(sandbox.Install() / "tempstuff/1", "x");
  const CliResult look = RunHere("--json doctor");
  EXPECT_EQ(look.status, 1);
  EXPECT_EQ(Json::parse(look.out)[0]["Fixable"], true);
  EXPECT_EQ(Json::parse(look.out)[0]["Fixed"], false);
  const CliResult fix = RunHere("--json doctor --fix");
  EXPECT_EQ(fix.status, 1);
  EXPECT_NE(fix.err.find("bzonevarnik.bak: It becomes bzone.cfg again."), std::string::npos) << fix.err;
  EXPECT_EQ(Json::parse(fix.out)[0]["Fixed"], true);
  EXPECT_EQ(ReadFile(sandbox.Install() / "bzone.cfg"), "own");
  std::filesystem::remove_all(sandbox.Install() / "tempstuff");
  WriteFile(sandbox.Install() / "bzonevarnik.cfg", "stale");
  EXPECT_EQ(RunHere("doctor --fix").status, 0);
  EXPECT_EQ(RunHere("doctor").status, 0);
}

}  // namespace
