#include "tests/cli/cliworld.h"

#include <gtest/gtest.h>

namespace {

using test::CliResult;
using test::CliWorld;
using test::Json;
using test::WriteFile;

class Cli : public testing::Test, public CliWorld {
 protected:
  Cli() { sandbox.MakeInstall("1.2"); }

  std::string Root() const { return sandbox.Install().string(); }
  void WriteMod(const std::string& name, const std::string& lines) const {
    WriteFile(sandbox.Install() / name, "BZ2HALD5\r\n" + lines);
  }
};

struct StatusCase {
  const char* arguments;  // @ stands for the install
  int status;
  const char* said;  // on standard error
};

const StatusCase kStatuses[] = {
    {"", 2, "required"},
    {"--version", 0, ""},
    {"run --help", 0, ""},
    {"bogus", 2, "required"},
    {"mods surplus", 2, "surplus"},
    {"mods", 1, "no install is selected"},
    {"--root @/nowhere mods", 1, "nowhere"},
    {"--root @ run", 2, "MOD"},
    {"--root @ run nomod.bzm", 1, "nomod.bzm: there is no such definition"},
    {"--root @ run old.bzm", 1, "old.bzm: does not fit"},
    {"--root @ activate -", 1, "stands for no mod"},
    {"--root @ deactivate v4.bzm", 1, "v4.bzm: is no definition"},
    {"--root @ line --tick 7", 1, "7: "},
    {"--root @ line --tick x", 2, "x"},
    {"--root @ maps --page Nowhere", 2, "Nowhere"},
    {"parse @/none.bzm", 1, "none.bzm: cannot be read"},
    {"parse @", 1, "cannot be read"},
    {"check @/none.bzm", 1, "none.bzm: cannot be read"},
    {"check @", 1, "cannot be read"},
    {"--root @/nowhere check @/old.bzm", 1, "there is no such folder"},
    {"installs remove 0", 1, "0: "},
    {"installs select 3", 1, "3: "},
    {"installs add @/addon", 1, "addon\\: no install"},
    {"settings set NoSuchKey On", 1, "NoSuchKey: "},
};

TEST_F(Cli, SaysWhatFailedAndWhy) {
  WriteMod("old.bzm", "version(9.9);\r\n");
  WriteFile(sandbox.Install() / "v4.bzm", "BZ2HALD4\r\n");
  for (const StatusCase& c : kStatuses) {
    SCOPED_TRACE(c.arguments);
    std::string arguments = c.arguments;
    if (const auto at = arguments.find('@'); at != std::string::npos) arguments.replace(at, 1, Root());
    const CliResult result = RunCli(arguments);
    EXPECT_EQ(result.status, c.status);
    EXPECT_NE(result.err.find(c.said), std::string::npos) << result.err;
    EXPECT_EQ(result.out.empty(), c.status != 0) << result.out;
  }
}

TEST_F(Cli, SaysWhatReadersPassOver) {
  WriteMod("bad.bzm", "dname(Caf\xE9);\r\nimage(\x1B[2J);\r\npak(a)");
  const std::string file = Root() + "/bad.bzm";
  const CliResult text = RunCli("--root " + Root() + " check " + file);
  EXPECT_EQ(text.status, 1);
  EXPECT_EQ(text.out.substr(0, text.out.find('\n')),
            file + ":3: warning: `?[2J` is neither in the install nor in the program's folder of mods [missing-extra]");
  const CliResult alone = RunCli("check " + file);
  EXPECT_NE(alone.err.find("no install is selected"), std::string::npos) << alone.err;
  EXPECT_EQ(alone.out.find("missing-"), std::string::npos) << alone.out;
  const CliResult other = RunCli("--root " + Root() + "/addon check " + file);
  EXPECT_NE(other.err.find("lies in another one"), std::string::npos) << other.err;
  const CliResult json = RunCli("--json --root " + Root() + " check " + file);
  EXPECT_EQ(json.status, 1);
  const Json findings = Json::parse(json.out);
  ASSERT_EQ(findings.size(), 3u);
  EXPECT_EQ(findings[1].dump(), R"({"Line":4,"Severity":"error","Code":"close-in-argument",)"
                                R"("Message":"`)` without `;` at the end of the line: its last argument is `a)`"})");
}

TEST_F(Cli, ListsModsWithTheirKeysInOrder) {
  WriteMod("a.bzm",
           "dname(Caf\xE9);\r\ndescription(Text);\r\nimage(a.bmp);\r\nsplash(s.bmp);\r\n"
           "rename(x.odf,y.odf);\r\nfold(extra);\r\n");
  const Json expected = Json::parse(R"([{"Name":"Café","Description":"Text","Image":"a.bmp","Splash":"s.bmp",
    "DefinitionFile":"","State":0,"Standard":true,"ExeDeactivates":false,"Legacy":false,"MarkedX":false,
    "Folders":["extra","addon","data"],"Renames":[["x.odf","y.odf"]]}])");
  Json mods = Ask("mods");
  ASSERT_EQ(mods.size(), 1u);
  EXPECT_EQ(mods[0]["DefinitionFile"], Root() + "\\a.bzm");
  mods[0]["DefinitionFile"] = "";
  EXPECT_EQ(mods.dump(), expected.dump());
}

TEST_F(Cli, ParsesLinesAsReadersDo) {
  WriteMod("p.bzm", "Rename( \"a, b\" , c );// why\r\n; no directive\r\n");
  EXPECT_EQ(Ask("parse " + Root() + "/p.bzm").dump(),
            R"([{"Line":1,"Args":[""],"Comment":""},{"Line":2,"Args":["Rename","a, b","c"],"Comment":" why"},)"
            R"({"Line":3,"Args":[""],"Comment":""}])");
}

TEST_F(Cli, KeepsTheInstallList) {
  const std::string second = sandbox.Root() / "second";
  std::filesystem::copy(sandbox.Install(), second, std::filesystem::copy_options::recursive);
  EXPECT_EQ(RunCli("installs add " + Root() + " --description First").status, 0);
  EXPECT_NE(RunCli("installs add " + Root()).err.find("listed"), std::string::npos);
  EXPECT_EQ(RunCli("installs select 0").status, 0);
  const CliResult added = RunCli("--json installs add " + second + "/");
  const Json expected = Json::array({{{"Index", 0},
                                      {"Path", Root() + "\\"},
                                      {"Description", "First"},
                                      {"Version", "1.2"},
                                      {"Valid", true},
                                      {"Offered", true},
                                      {"Active", true}},
                                     {{"Index", 1},
                                      {"Path", second + "/"},
                                      {"Description", "(1.2)" + second + "/"},
                                      {"Version", "1.2"},
                                      {"Valid", true},
                                      {"Offered", true},
                                      {"Active", false}}});
  EXPECT_EQ(added.out, expected.dump(2) + "\n") << added.err;
  EXPECT_EQ(RunCli("mods").status, 0);
  EXPECT_EQ(Json::parse(RunCli("--json installs remove 0").out)[0]["Path"], second + "/");
  EXPECT_EQ(RunCli("mods").status, 1);  // a removal leaves no install selected
  EXPECT_EQ(RunCli("--json installs remove 0").out, "[]\n");
}

struct LineCase {
  const char* arguments;
  const char* line;
};

const LineCase kLines[] = {
    {"", "/nointro"},
    {"--tick 1 --untick 0", "/win 3"},
    {"--tick 1 --tick 2 --map 'my map.bzn'", "\"my map.bzn\" /nointro /win 3 -x"},
    {"--map a.bzn --edit", "/edit a.bzn /nointro"},
    {"--edit", "/nointro"},
};

TEST_F(Cli, BuildsTheCommandLine) {
  WriteFile(sandbox.App() / "varnik.cmd", "*/nointro\r\n/win:3\r\n-x\r\n");
  EXPECT_EQ(Ask("options").dump(),
            R"([{"Option":"/nointro","Ticked":true,"SubParam":null},{"Option":"/win","Ticked":false,"SubParam":"3"},)"
            R"({"Option":"-x","Ticked":false,"SubParam":null}])");
  for (const LineCase& c : kLines)
    EXPECT_EQ(Ask("line " + std::string(c.arguments))["Line"], c.line) << c.arguments;
}

TEST_F(Cli, StoresSettingsItKnows) {
  EXPECT_EQ(RunCli("settings set renamelog On").status, 0);
  for (const Json& row : Ask("settings")) {
    const bool isSet = row["Key"] == "RenameLog";
    EXPECT_EQ(row["Value"], isSet ? Json("On") : Json()) << row;
    EXPECT_TRUE(row["Default"].is_string()) << row;
  }
}

TEST_F(Cli, AnswersNoUnlessToldToConvertMaps) {
  sandbox.MakeInstall("1.3");
  const auto inf = sandbox.Install() / "addon/missions/multiplayer/duel.inf";
  WriteFile(sandbox.Install() / "addon/missions/multiplayer/duel.bzn", "");
  WriteFile(sandbox.Install() / "addon/missions/multiplayer/duel.odf", "Two players.");
  WriteFile(inf, "[DESCRIPTION]\r\nmissionName=Duel\r\n[NetVars]\r\nivar5=1\r\nivar7=2\r\n");
  const Json maps = Ask("maps --details");
  ASSERT_EQ(maps.size(), 1u);
  EXPECT_EQ(maps[0]["Pages"].dump(), R"(["RMap","CMap1","SMap1.1"])");
  EXPECT_EQ(maps[0]["Description"], Root() + "\\addon\\missions\\multiplayer\\duel.odf");
  EXPECT_TRUE(maps[0]["Picture"].is_null());
  EXPECT_EQ(test::ReadFile(inf).find("svar7"), std::string::npos);
  EXPECT_NE(RunCli("--root " + Root() + " maps").err.find("(taken as No)"), std::string::npos);
  EXPECT_EQ(Ask("maps --convert --page SMap1.1").size(), 1u);
  EXPECT_NE(test::ReadFile(inf).find("svar7=ctf"), std::string::npos);
  EXPECT_EQ(Ask("maps --page SMap1.2").size(), 0u);
}

}  // namespace
