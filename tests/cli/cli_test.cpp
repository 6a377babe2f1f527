#include "tests/harness/cases.h"
#include "tests/modengine/modtest.h"

#include <stdlib.h>
#include <sys/wait.h>

#include <csignal>
#include <regex>
#include <tuple>

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
class Cli : public test::ModTest {
 protected:
  Cli() {
    Put("plain.odf=plain keep.odf=keep");
    Define("rename(plain.odf,modded.odf);\r\nfold(extra);\r\n", "plain.bzm");
    Define("activated();\r\nactivatedfile(kept.odf);\r\nrename(keep.odf,kept.odf);\r\npak(keep);\r\n", "keep.bzm");
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

  const std::string root_ = sandbox_.Install().string();
  const std::string program_ = BINARY_DIR "/varnik-cli";
};

// Each step of the table runs on what those before it left. `error` is the last line of standard error, `names` a part
// of it.
TEST_F(Cli, AnswersStepByStep) {
  WriteFile(sandbox_.App() / "varnik.cmd", "*/nointro\r\n/win:3\r\n");
  WriteFile(InRoot("p.inc"), "Rename( \"a, b\" );// why\r\n; no directive\r\n");
  Put("v4.bzm=BZ2HALD4");
  Define("dname(Caf\xE9);\r\npak(a)\r\nimage(\x1B[2J);", "bad.bzm");
  Define("version(9.9);", "old.bzm");
  Define("activated();\r\naddrecy(mine,1);", "list.bzm");
  Define("writeid(..\\x);\r\nrename(no,b);", "idle.bzm");
  Define("requireexe(taker.exe);", "taker.bzm");
  WriteFile(InRoot("taker.exe"), "#!/bin/sh\n");
  Define("writeid(made);\nrequireexe(win.exe,/undo);", "win.bzm");
  WriteFile(InRoot("win.exe"), "MZ");
  WriteFile(InRoot("old-exec.bzm"), "bz2hald1\ndesc Old\n\n\n\nexec @rootdir\\win.exe");
  setenv("VARNIK_RUNNER", "no-such-runner", 1);
  std::filesystem::copy(root_, root_ + "2", std::filesystem::copy_options::recursive);
  const std::string log = sandbox_.Root() / "seen";
  PutProgram("bzone.exe", "echo noise; { pwd; ls *.odf; echo \"[$1] [$2] [$3]\"; } >>" + log + "; exit 5");
  const auto before = test::Snapshot(sandbox_.Install());
  for (const test::Case& step : test::Cases("cli/steps.jsonl")) {
    SCOPED_TRACE(step);
    const CliResult result = RunCli("--json " + step.value("run", ""));
    EXPECT_EQ(result.status, step.value("status", 0)) << result.err;
    const auto answer = test::Case::parse(result.out, nullptr, false);
    if (step.contains("answer")) {
      EXPECT_EQ(answer, step["answer"]);
    } else if (step.contains("last")) {
      EXPECT_EQ(answer.at(answer.size() - 1), step["last"]);
    } else if (step.contains("names")) {
      EXPECT_NE(result.err.find(step["names"]), std::string::npos) << result.err;
    } else {
      EXPECT_TRUE((result.out + result.err).ends_with("varnik-cli: " + step.value("error", "") + "\n")) << result.err;
    }
  }
  EXPECT_EQ(ReadFile(log),
            root_ + "\nkeep.odf\nmodded.odf\n[a b.bzn] [/win] [1]\n" + root_ + "\nkeep.odf\nmodded.odf\n[] [] []\n");
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
}

TEST_F(Cli, ListsModsWithTheirKeysInOrder) {
  Define("dname(Caf\xE9);\ndescription(Text);\nimage(a.bmp);\nsplash(s.bmp);\nrename(x.odf,y.odf);\nfold(extra);",
         "a.bzm");
  const Json expected = Json::parse(R"({"Name":"Café","Description":"Text","Image":"a.bmp","Splash":"s.bmp",
    "DefinitionFile":"@\\a.bzm","State":0,"Standard":true,"ExeDeactivates":false,"Legacy":false,"MarkedX":false,
    "Folders":["extra","addon","data"],"Renames":[["x.odf","y.odf"]]})");
  EXPECT_EQ(Ask("mods")[0].dump(), expected.dump());
}

TEST_F(Cli, LeavesTheTerminalAlone) {
  const std::string bad = "\x1b]0;t\x07", safe = "\\x1b]0;t\\x07";
  Define("dname(" + bad + "\x7f\t\xC2\x9B);\nimage(none" + bad + ");\nrename(a" + bad + ",b);", "m.bzm");
  WriteFile(InRoot("addon/m" + bad + ".bzn"), "");
  WriteFile(InRoot("varnik.cmd"), bad);
  std::filesystem::copy(root_, root_ + bad, std::filesystem::copy_options::recursive);
  const std::string commands[] = {"mods",
                                  "parse @/m.bzm",
                                  "plan m.bzm",
                                  "maps",
                                  "options",
                                  "check '@/" + bad + "'",
                                  "installs add @'" + bad + "'",
                                  "run 'm" + bad + "'",
                                  "settings --all"};
  for (const std::string& command : commands) {
    const CliResult result = RunCli("--root @ " + command);
    const std::string said = result.out + result.err;
    EXPECT_NE(said.find(safe), std::string::npos) << command << said;
    for (const char c : said)
      EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= ' ') << command << said;
  }
  EXPECT_NE(RunCli("--root @ mods").out.find(safe + "\\x7f\\x09\\x9b"), std::string::npos);
}

TEST_F(Cli, StoresSettingsItKnows) {
  EXPECT_EQ(RunCli("settings set renamelog On").status, 0);
  for (const Json& row : Ask("settings")) {
    EXPECT_EQ(row["Value"], row["Key"] == "RenameLog" ? Json("On") : Json()) << row;
    EXPECT_TRUE(row["Default"].is_string()) << row;
  }
}

TEST_F(Cli, AnswersNoUnlessToldToConvertMaps) {
  MakeInstall("1.3");
  const auto folder = InRoot("addon/missions/multiplayer");
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

// The first signal reaches the game and what it has started, the second ends it. Every time all is put back.
TEST_F(Cli, EndsBySignalWithEverythingPutBack) {
  for (const auto& [game, status, name] :
       {std::tuple("trap 'exit 0' TERM; kill -HUP $PPID; while :; do sleep 0.1; done", 128 + SIGHUP, "HUP"),
        {"trap '' INT; kill -INT $PPID; sleep 1; kill -TERM $PPID; while :; do sleep 0.1; done", 128 + SIGINT,
         "INT"}}) {
    PutProgram("bzone.exe", game);
    const CliResult result = RunCli("--root @ run plain.bzm");
    EXPECT_EQ(result.status, status) << game;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.ends_with(std::string("varnik-cli: SIG") + name + ": everything was put back\n"));
    Expect("plain.odf=plain modded.odf bzonevarnik.bak");
  }
}

TEST_F(Cli, RefusesASecondOneMeanwhile) {
  const std::string log = sandbox_.Root() / "statuses";
  std::string script;
  for (const char* command : {"run -", "activate keep.bzm", "deactivate plain.bzm", "recover", "mods"})
    script += program_ + " --root . " + command + "; echo $? >>" + log + "\n";
  script += "export XDG_CONFIG_HOME=" + sandbox_.Root().string() + "/other\n";  // as another user has one
  for (const char* command : {"run -", "doctor", "mods"})
    script += program_ + " --root . " + command + " || echo refused >>" + log + "\n";
  PutProgram("bzone.exe", script);
  EXPECT_EQ(Ask("run plain.bzm")["ExitStatus"], 0);
  EXPECT_EQ(ReadFile(log), "1\n1\n1\n1\n0\nrefused\nrefused\n");
}

}  // namespace
