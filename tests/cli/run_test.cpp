#include "tests/cli/cliworld.h"

#include <gtest/gtest.h>

namespace {

using test::CliResult;
using test::CliWorld;
using test::Json;
using test::ReadFile;
using test::Snapshot;
using test::WriteFile;

class CliRun : public testing::Test, public CliWorld {
 protected:
  CliRun() {
    sandbox.MakeInstall("1.2");
    WriteFile(sandbox.Install() / "plain.odf", "plain");
    WriteFile(sandbox.Install() / "plain.bzm", "BZ2HALD5\r\nrename(plain.odf,modded.odf);\r\nfold(extra);\r\n");
    WriteFile(sandbox.Install() / "keep.odf", "keep");
    WriteFile(sandbox.Install() / "keep.bzm",
              "BZ2HALD5\r\nactivated();\r\nactivatedfile(kept.odf);\r\nrename(keep.odf,kept.odf);\r\npak(keep);\r\n");
    WriteFile(sandbox.Install() / "taker.bzm", "BZ2HALD5\r\nrequireexe(taker.exe);\r\n");
    WriteFile(sandbox.Install() / "taker.exe", "#!/bin/sh\nexit 0\n");
  }

  bool Exists(const char* name) const { return std::filesystem::exists(sandbox.Install() / name); }
  CliResult RunHere(const std::string& arguments) const {
    return RunCli("--root " + sandbox.Install().string() + " " + arguments);
  }
};

TEST_F(CliRun, RunsTheGameAndPutsEverythingBack) {
  const std::string log = sandbox.Root() / "seen";
  WriteGame("echo noise; pwd >" + log + "; ls >>" + log + "; echo \"[$1] [$2] [$3]\" >>" + log + "; exit 5");
  const auto before = Snapshot(sandbox.Install());
  const Json run = Ask("run PLAIN.bzm --options '/win 1' --map 'a b.bzn'");
  const std::string game = sandbox.InstallText() + "bzone.exe";
  EXPECT_EQ(
      run.dump(),
      Json(
          {{"Ran", true}, {"Program", game}, {"CommandLine", "\"" + game + "\" \"a b.bzn\" /win 1"}, {"ExitStatus", 5}})
          .dump());
  const std::string seen = ReadFile(log);
  EXPECT_TRUE(seen.starts_with(sandbox.Install().string() + "\n")) << seen;
  EXPECT_NE(seen.find("\nmodded.odf\n"), std::string::npos) << seen;
  EXPECT_NE(seen.find("[a b.bzn] [/win] [1]"), std::string::npos) << seen;
  EXPECT_EQ(Snapshot(sandbox.Install()), before);
}

TEST_F(CliRun, PutsEverythingBackWhenTheGameCannotStart) {
  std::filesystem::remove(sandbox.Install() / "bzone.exe");
  const auto before = Snapshot(sandbox.Install());
  const CliResult result = RunHere("run plain.bzm");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("bzone.exe"), std::string::npos);
  EXPECT_EQ(Snapshot(sandbox.Install()), before);
}

TEST_F(CliRun, NamesTheEditorThatIsMissing) {
  WriteFile(sandbox.Install() / "addon/localize.odf", "[Network]\r\nVersionStr=1.3\r\n");
  const CliResult result = RunHere("run - --map a.bzn --edit");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("bz2edit.exe"), std::string::npos) << result.err;
}

TEST_F(CliRun, LeavesPersistentModsToActivateAndDeactivate) {
  const auto before = Snapshot(sandbox.Install());
  EXPECT_NE(RunHere("run keep.bzm").err.find("`varnik-cli activate`"), std::string::npos);
  EXPECT_EQ(Ask("activate keep.bzm").dump(), R"({"Done":true})");
  EXPECT_TRUE(Exists("kept.odf"));
  EXPECT_TRUE(Stored("Crash").empty());
  EXPECT_NE(RunHere("run keep.bzm").err.find("`varnik-cli deactivate`"), std::string::npos);
  EXPECT_EQ(RunHere("activate keep.bzm").status, 1);  // its configuration would be activated twice
  EXPECT_EQ(Ask("deactivate " + sandbox.Install().string() + "/keep.bzm")["Done"], true);
  EXPECT_EQ(Snapshot(sandbox.Install()), before);
}

TEST_F(CliRun, GuardsTheModThatIsStillToBeUndone) {
  const auto before = Snapshot(sandbox.Install());
  EXPECT_EQ(Ask("activate plain.bzm")["Done"], true);
  EXPECT_EQ(Stored("Crash")["bz2loc"], sandbox.InstallText());
  for (const char* command : {"activate keep.bzm", "run plain.bzm", "deactivate keep.bzm"}) {
    const CliResult refused = RunHere(command);
    EXPECT_EQ(refused.status, 1) << command;
    EXPECT_NE(refused.err.find("plain.bzm: is active"), std::string::npos) << refused.err;
  }
  EXPECT_EQ(Ask("run -")["Ran"], true);
  EXPECT_EQ(Ask("deactivate plain.bzm")["Done"], true);
  EXPECT_EQ(Snapshot(sandbox.Install()), before);
  EXPECT_TRUE(Stored("Crash").empty());
}

TEST_F(CliRun, TakesOutAModThatNoLongerFits) {
  EXPECT_EQ(Ask("activate plain.bzm")["Done"], true);
  WriteFile(sandbox.Install() / "plain.bzm", "BZ2HALD5\r\nversion(9.9);\r\nrename(plain.odf,modded.odf);\r\n");
  EXPECT_EQ(RunHere("activate plain.bzm").status, 1);
  EXPECT_EQ(Ask("deactivate plain.bzm")["Done"], true);
  EXPECT_TRUE(Exists("plain.odf"));
}

TEST_F(CliRun, RecoversARunThatWasKilled) {
  const auto before = Snapshot(sandbox.Install());
  WriteGame("kill -9 $PPID");
  const CliResult killed = RunHere("run plain.bzm");
  EXPECT_EQ(killed.status, 128 + 9);
  EXPECT_TRUE(Exists("modded.odf"));
  EXPECT_EQ(Ask("recover").dump(), R"({"Recovered":true})");
  EXPECT_TRUE(Exists("plain.odf"));
  EXPECT_FALSE(Exists("bzonevarnik.bak"));
  EXPECT_EQ(Ask("recover")["Recovered"], false);
}

TEST_F(CliRun, RefusesASecondOneMeanwhile) {
  const std::string log = sandbox.Root() / "statuses";
  std::string script;
  for (const char* command : {"run -", "activate keep.bzm", "deactivate plain.bzm", "recover", "mods"})
    script += program + " --root . " + command + "; echo $? >>" + log + "\n";
  WriteGame(script);
  EXPECT_EQ(Ask("run plain.bzm")["ExitStatus"], 0);
  EXPECT_EQ(ReadFile(log), "1\n1\n1\n1\n0\n");
  EXPECT_TRUE(Exists("plain.odf"));
}

TEST_F(CliRun, TellsThatAnExeTookOver) {
  EXPECT_EQ(Ask("run taker.bzm").dump(), R"({"Ran":false,"Program":null,"CommandLine":null,"ExitStatus":null})");
  EXPECT_EQ(Ask("activate taker.bzm").dump(), R"({"Done":false})");
  WriteFile(sandbox.Install() / "taker.bzm", "BZ2HALD5\r\nversion(9.9);\r\nrequireexe(taker.exe,/undo);\r\n");
  EXPECT_EQ(Ask("deactivate taker.bzm").dump(), R"({"Done":false})");
}

// The demo's mods use every directive of both formats between them.
TEST_F(CliRun, TakesEveryModOfTheDemoInAndOut) {
  const std::string demo = sandbox.Root() / "demo";
  ASSERT_EQ(system((SOURCE_DIR "/tools/make-demo.sh " + demo).c_str()), 0);
  setenv("XDG_CONFIG_HOME", (demo + "/config").c_str(), 1);
  setenv("VARNIK_HOME", (demo + "/app").c_str(), 1);
  setenv("DEMO_SECONDS", "0", 1);
  for (const char* name : {"bz2-1.3", "bz2-1.2"}) {
    const std::string root = demo + "/games/" + name;
    const std::string cli = "--json --root " + root;
    for (const Json& mod : Json::parse(RunCli(cli + " mods").out)) {
      const std::string file = mod["DefinitionFile"].get<std::string>();
      SCOPED_TRACE(file);
      const std::string path = " '" + file + "'";
      EXPECT_EQ(RunCli(cli + " check" + path).status, 0);
      const auto before = Snapshot(root);
      const bool isIn = mod["State"] == 1;
      const CliResult first = RunCli(cli + (isIn ? " deactivate" : " activate") + path);
      EXPECT_EQ(first.status, 0) << first.err;
      if (!Json::parse(first.out)["Done"]) continue;  // an EXE of its own took over
      const CliResult second = RunCli(cli + (isIn ? " activate" : " deactivate") + path);
      EXPECT_EQ(second.status, 0) << second.err;
      if (file.ends_with("league.bzm")) continue;  // a race's name comes back with a further line end
      EXPECT_EQ(Snapshot(root), before);
    }
  }
}

}  // namespace
