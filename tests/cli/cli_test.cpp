#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <stdlib.h>
#include <sys/wait.h>

#include <regex>

namespace {

using Json = nlohmann::ordered_json;
using test::ReadFile;
using test::WriteFile;

struct CliResult {
  int status = -1;
  std::string out, err;
};

std::string Replaced(const std::string& text, const std::string& from, const std::string& to) {
  return std::regex_replace(text, std::regex(from), to);
}

// The real varnik-cli, run as a script runs it, with an install of its own.
class Cli : public testing::Test {
 protected:
  Cli() {
    sandbox_.MakeInstall("1.2");
    WriteFile(sandbox_.Install() / "plain.odf", "plain");
    WriteMod("plain.bzm", "rename(plain.odf,modded.odf);\r\nfold(extra);\r\n");
    WriteFile(sandbox_.Install() / "keep.odf", "keep");
    WriteMod("keep.bzm", "activated();\r\nactivatedfile(kept.odf);\r\nrename(keep.odf,kept.odf);\r\npak(keep);\r\n");
  }

  // `arguments` go through a shell. In them and in what comes back, `@` stands for the install.
  CliResult RunCli(const std::string& arguments) const {
    const std::string out = sandbox_.Root() / "out", err = sandbox_.Root() / "err";
    const std::string given = Replaced(arguments, "@", root_);
    const int status = system((program_ + " " + given + " >" + out + " 2>" + err + " </dev/null").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Replaced(ReadFile(out), root_, "@"),
            Replaced(ReadFile(err), root_, "@")};
  }

  // The answer in JSON, with that install; a status other than 0 fails the test.
  Json Ask(const std::string& arguments) const {
    const CliResult result = RunCli("--json --root @ " + arguments);
    EXPECT_EQ(result.status, 0) << arguments << "\n" << result.err;
    return Json::parse(result.out);
  }

  void WriteMod(const std::string& name, const std::string& lines) const {
    WriteFile(sandbox_.Install() / name, "BZ2HALD5\r\n" + lines);
  }

  test::Sandbox sandbox_;
  const std::string root_ = sandbox_.Install().string();
  const std::string program_ = BINARY_DIR "/varnik-cli";
};

struct Step {
  const char* arguments;
  int status;
  const char* said;  // 0: all of standard output, 1: the last line of standard error, 2: part of it
};

constexpr char kNotSelected[] =
    "no install is selected: name one with --root DIR, or choose one with `varnik-cli installs select N`";
constexpr char kPlainIsIn[] =
    "@\\plain.bzm: is active: `varnik-cli deactivate` takes it out, or `varnik-cli recover` after a crash";

constexpr char kBad[] = "dname(Caf\xE9);\r\nimage(\x1B[2J);\r\npak(a)";

const Step kSteps[] = {
    {"", 2, "required"},
    {"run", 2, "MOD"},
    {"maps --page Nowhere", 2, "Nowhere"},
    {"mods", 1, kNotSelected},
    {"check @/bad.bzm", 1, "no install is selected: only the file itself was looked at"},
    {"--root @2 check @/bad.bzm", 1,
     "looked at with the install at @2\\, though the file lies in another one; --root chooses"},
    {"--root @/nowhere mods", 1, "@/nowhere\\: there is no such folder"},
    {"installs add @/addon", 1, "@/addon\\: no install: bzone.exe, data.pak and binkw32.dll are not all there"},
    {"installs add @ --description First", 0,
     R"([{"Index":0,"Path":"@\\","Description":"First","Version":"1.2","Valid":true,"Offered":true,"Active":false}])"},
    {"installs add @", 1, "@\\: is listed already"},
    {"installs select 1", 1, "1: the list has no install of this number"},
    {"installs select 0", 0,
     R"([{"Index":0,"Path":"@\\","Description":"First","Version":"1.2","Valid":true,"Offered":true,"Active":true}])"},
    {"installs add @2/ --description ''", 0,
     R"([{"Index":0,"Path":"@\\","Description":"First","Version":"1.2","Valid":true,"Offered":true,"Active":true},)"
     R"({"Index":1,"Path":"@2/","Description":"(1.2)@2/","Version":"1.2","Valid":true,"Offered":true,"Active":false}])"},
    {"settings set NoSuchKey On", 1, "NoSuchKey: there is no such setting; `varnik-cli settings` lists them"},
    {"options", 0,
     R"([{"Option":"/nointro","Ticked":true,"SubParam":null},{"Option":"/win","Ticked":false,"SubParam":"3"}])"},
    {"line --tick 1 --untick 0", 0, R"({"Line":"/win 3"})"},
    {"line --tick 1 --map 'my map.bzn'", 0, R"({"Line":"\"my map.bzn\" /nointro /win 3"})"},
    {"line --map a.bzn --edit", 0, R"({"Line":"/edit a.bzn /nointro"})"},
    {"line --tick 7", 1, "7: the option list has no row of this number"},
    {"parse @/p.inc", 0,
     R"([{"Line":1,"Args":["Rename","a, b"],"Comment":" why"},{"Line":2,"Args":[""],"Comment":""}])"},
    {"parse @", 1, "@: cannot be read"},
    {"check @/none.bzm", 1, "@/none.bzm: cannot be read"},
    {"plan old.bzm", 1, "old.bzm: does not fit this install, or is no definition"},
    {"plan taker.bzm --config", 1, "taker.bzm: would leave bzone.cfg as it is"},
    {"plan list.bzm --after", 0,
     R"([{"Line":3,"Step":"rename","Target":"b","Source":"none","Works":false,"Why":"there is no such file or folder"},)"
     R"({"Line":4,"Step":"append","Target":"RecyList.txt","Source":"mine 1","Works":true,"Why":null},)"
     R"({"Line":null,"Step":"put back","Target":"RecyList.txt","Source":null,"Works":false,"Why":"it would be left over"}])"},
    {"doctor", 0, "[]"},
    {"run nomod.bzm", 1, "nomod.bzm: there is no such definition"},
    {"--root @/addon run -", 1, "@/addon\\bzone.exe: could not be started; everything was put back"},
    {"run taker.bzm", 0, R"({"Ran":false,"Program":null,"CommandLine":null,"ExitStatus":null})"},
    {"activate taker.bzm", 0, R"({"Done":false})"},
    {"activate -", 1, "-: stands for no mod"},
    {"deactivate v4.bzm", 1, "@\\v4.bzm: is no definition"},
    {"deactivate old.bzm", 0, R"({"Done":true})"},  // it takes the definition alone
    {"run PLAIN.bzm --options '/win 1' --map 'a b.bzn'", 0,
     R"({"Ran":true,"Program":"@\\bzone.exe","CommandLine":"\"@\\bzone.exe\" \"a b.bzn\" /win 1","ExitStatus":5})"},
    {"run keep.bzm", 1, "@\\keep.bzm: is persistent and inactive: use `varnik-cli activate`"},
    {"activate keep.bzm", 0, R"({"Done":true})"},
    {"run keep.bzm", 1, "@\\keep.bzm: is persistent and active: use `varnik-cli deactivate`"},
    {"activate keep.bzm", 1, "@\\keep.bzm: is active already"},
    {"deactivate @/keep.bzm", 0, R"({"Done":true})"},
    {"activate plain.bzm", 0, R"({"Done":true})"},
    {"activate keep.bzm", 1, kPlainIsIn},
    {"run plain.bzm", 1, kPlainIsIn},
    {"plan keep.bzm", 1, kPlainIsIn},
    {"deactivate keep.bzm", 1, kPlainIsIn},
    {"run - --options ''", 0,
     R"({"Ran":true,"Program":"@\\bzone.exe","CommandLine":"\"@\\bzone.exe\" ","ExitStatus":5})"},
    {"deactivate plain.bzm", 0, R"({"Done":true})"},
    {"recover", 0, R"({"Recovered":false})"},
    {"installs remove 2", 1, "2: the list has no install of this number"},
    {"installs remove 0", 0,
     R"([{"Index":0,"Path":"@2/","Description":"(1.2)@2/","Version":"1.2","Valid":true,"Offered":true,"Active":false}])"},
    {"mods", 1, kNotSelected},
};

TEST_F(Cli, AnswersStepByStep) {
  WriteFile(sandbox_.App() / "varnik.cmd", "*/nointro\r\n/win:3\r\n");
  WriteFile(sandbox_.Install() / "p.inc", "Rename( \"a, b\" );// why\r\n; no directive\r\n");
  WriteFile(sandbox_.Install() / "v4.bzm", "BZ2HALD4\r\n");
  WriteMod("bad.bzm", kBad);
  WriteMod("old.bzm", "version(9.9);");
  WriteMod("list.bzm", "activated();\r\nrename(none,b);\r\naddrecy(mine,1);");
  WriteMod("taker.bzm", "requireexe(taker.exe);");
  WriteFile(sandbox_.Install() / "taker.exe", "#!/bin/sh\n");
  std::filesystem::copy(root_, root_ + "2", std::filesystem::copy_options::recursive);
  const std::string log = sandbox_.Root() / "seen";
  WriteFile(sandbox_.Install() / "bzone.exe",
            "#!/bin/sh\necho noise; { pwd; ls *.odf; echo \"[$1] [$2] [$3]\"; } >>" + log + "; exit 5");
  const auto before = test::Snapshot(sandbox_.Install());
  for (const Step& step : kSteps) {
    SCOPED_TRACE(step.arguments);
    const CliResult result = RunCli("--json " + std::string(step.arguments));
    EXPECT_EQ(result.status, step.status) << result.err;
    if (step.status == 0)
      EXPECT_EQ(Json::parse(result.out, nullptr, false).dump(), step.said);
    else if (step.status == 1)
      EXPECT_TRUE((result.out + result.err).ends_with("varnik-cli: " + std::string(step.said) + "\n")) << result.err;
    else
      EXPECT_NE(result.err.find(step.said), std::string::npos) << result.err;
  }
  EXPECT_EQ(ReadFile(log),
            root_ + "\nkeep.odf\nmodded.odf\n[a b.bzn] [/win] [1]\n" + root_ + "\nkeep.odf\nmodded.odf\n[] [] []\n");
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
}

TEST_F(Cli, SaysWhatReadersPassOver) {
  WriteMod("bad.bzm", kBad);
  const CliResult check = RunCli("--json --root @ check @/bad.bzm");
  EXPECT_EQ(check.status, 1);
  EXPECT_EQ(Json::parse(check.out)[0].dump(),
            R"({"Line":3,"Severity":"warning","Code":"missing-extra",)"
            R"("Message":"`?[2J` is neither in the install nor in the program's folder of mods"})");
}

TEST_F(Cli, ListsModsWithTheirKeysInOrder) {
  WriteMod("a.bzm",
           "dname(Caf\xE9);\r\ndescription(Text);\r\nimage(a.bmp);\r\nsplash(s.bmp);\r\n"
           "rename(x.odf,y.odf);\r\nfold(extra);\r\n");
  const Json expected = Json::parse(R"({"Name":"Café","Description":"Text","Image":"a.bmp","Splash":"s.bmp",
    "DefinitionFile":"@\\a.bzm","State":0,"Standard":true,"ExeDeactivates":false,"Legacy":false,"MarkedX":false,
    "Folders":["extra","addon","data"],"Renames":[["x.odf","y.odf"]]})");
  EXPECT_EQ(Ask("mods")[0].dump(), expected.dump());
}

TEST_F(Cli, StoresSettingsItKnows) {
  EXPECT_EQ(RunCli("settings set renamelog On").status, 0);
  for (const Json& row : Ask("settings")) {
    EXPECT_EQ(row["Value"], row["Key"] == "RenameLog" ? Json("On") : Json()) << row;
    EXPECT_TRUE(row["Default"].is_string()) << row;
  }
}

TEST_F(Cli, AnswersNoUnlessToldToConvertMaps) {
  sandbox_.MakeInstall("1.3");
  const auto folder = sandbox_.Install() / "addon/missions/multiplayer";
  WriteFile(folder / "duel.bzn", "");
  WriteFile(folder / "duel.odf", "Two players.");
  WriteFile(folder / "duel.inf", "[DESCRIPTION]\r\nmissionName=Duel\r\n[NetVars]\r\nivar5=1\r\nivar7=2\r\n");
  const Json maps = Ask("maps --details");
  ASSERT_EQ(maps.size(), 1u);
  EXPECT_EQ(maps[0]["Pages"].dump(), R"(["RMap","CMap1","SMap1.1"])");
  EXPECT_EQ(maps[0]["Description"], "@\\addon\\missions\\multiplayer\\duel.odf");
  EXPECT_TRUE(maps[0]["Picture"].is_null());
  EXPECT_NE(RunCli("--root @ maps").err.find("(taken as No)"), std::string::npos);
  EXPECT_EQ(ReadFile(folder / "duel.inf").find("svar7"), std::string::npos);
  EXPECT_EQ(Ask("maps --convert --page SMap1.1").size(), 1u);
  EXPECT_NE(ReadFile(folder / "duel.inf").find("svar7=ctf"), std::string::npos);
  EXPECT_EQ(Ask("maps --page SMap1.2").size(), 0u);
}

TEST_F(Cli, RefusesASecondOneMeanwhile) {
  const std::string log = sandbox_.Root() / "statuses";
  std::string script = "#!/bin/sh\n";
  for (const char* command : {"run -", "activate keep.bzm", "deactivate plain.bzm", "recover", "mods"})
    script += program_ + " --root . " + command + "; echo $? >>" + log + "\n";
  WriteFile(sandbox_.Install() / "bzone.exe", script);
  EXPECT_EQ(Ask("run plain.bzm")["ExitStatus"], 0);
  EXPECT_EQ(ReadFile(log), "1\n1\n1\n1\n0\n");
}

}  // namespace
