#include "modengine/activation.h"

#include "definition/crashmarker.h"
#include "legacy/legacyactivation.h"
#include "legacy/legacydeactivation.h"
#include "modengine/deactivation.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/workingfolder.h"
#include "platform/system/store/registry.h"
#include "support/install.h"
#include "support/registry.h"
#include "support/settings.h"
#include "tests/harness/cases.h"
#include "tests/harness/failingreads.h"
#include "tests/modengine/modtest.h"

#include <random>
#include <regex>

namespace varnik {
namespace {

using test::WriteFile;

class Activation : public test::ModTest {
 protected:
  bool Activate(const std::string& lines) { return ActivateMod(Define(lines)); }
  bool Deactivate(const std::string& lines) { return DeactivateMod(Define(lines), Root()); }
};

using Deactivation = Activation;

// Version, files, lines, and the bzone.cfg that comes of them.
TEST_F(Activation, GeneratesTheConfigurationToTheByte) {
  const std::string full = test::ReadFile(SOURCE_DIR "/tests/modengine/generated12.cfg");
  const std::string appended =
      "stale          AddDirRecurse(\"@rootdir\\x\");\r\n\r\n" + full.substr(full.find("        // Look in"));
  const std::string cases[][4] = {
      {"1.2", "", "pak(foo);\nfold(My Dir);\npak(foo.pak);\npak(FOO.PAK);", full},
      {"1.3", "", "fold(x);\npak(y);", test::ReadFile(SOURCE_DIR "/tests/modengine/generated13.cfg")},
      {"1.2", "bzonevarnik.cfg=stale", "fold(x);", appended},
      {"1.2", "bzone.cfg=own bzonevarnik.bak=other", "fold(x);", "own"},
      {"1.2", "bzone.cfg=own a=a", "rename(a,b);", "own"},
  };
  for (const auto& [version, files, lines, active] : cases) {
    SCOPED_TRACE(files + lines);
    MakeInstall(version);
    Put(files);
    EXPECT_TRUE(Activate(lines));
    EXPECT_EQ(Content("bzone.cfg"), active);
    EXPECT_EQ(Content("bzonevarnik.bak") == "// the game's own\r\n", active != "own");
    EXPECT_EQ(Content("bzonevarnik.cfg").has_value(), Content("bzonevarnik.bak") == "other");
  }
}

TEST_F(Activation, LeavesAMarkerUnlessTheModIsPersistent) {
  Put("inner=activated();");
  for (const test::Case& c : test::Cases("modengine/persistence.jsonl")) {
    SCOPED_TRACE(c);
    RemoveCrashMarker();
    EXPECT_TRUE(Activate(c.at("lines")));
    const bool persistent = c.at("persistent");
    const CrashMarker marker = ReadCrashMarker();
    EXPECT_EQ(marker.root + marker.definitionFile, persistent ? "" : Root() + Root() + "mod.bzm");
    EXPECT_EQ(RegReadValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue).empty(), persistent);
  }
  EXPECT_FALSE(ActivateMod(Root() + "missing.bzm"));
}

TEST_F(Activation, HandsOverToAnExeOnlyAboveTheFirstAction) {
  Put("bzonevarnik.cfg=stale early=requireexe(tool,/undo);");
  PutProgram("tool", ": > '" + InRoot("ran").string() + "'$#");
  EXPECT_FALSE(Activate("requireexe(missing);\nwriteid(id);\ninclude(early);\nwriteid(late);"));
  Expect("id= late bzonevarnik.cfg");
  EXPECT_EQ(ReadCrashMarker().root, "");
  EXPECT_TRUE(Appears("ran0"));
  EXPECT_TRUE(Activate("rename(a,b);\nrequireexe(tool);"));
}

// A folder beside the install, with links to it in the install. `$` stands for the folder above both, which is the
// working folder. With `allow` the player allows the folder.
TEST_F(Activation, NothingOutsideTheInstallIsChangedOrStarted) {
  namespace fs = std::filesystem;
  const fs::path outside = sandbox_.Root() / "outside", ini = sandbox_.Home() / "config/varnik/platform.ini";
  const win::ScopedWorkingFolder above(sandbox_.Root().string());
  for (const test::Case& c : test::Cases("modengine/outside.jsonl")) {
    SCOPED_TRACE(c);
    MakeInstall("1.2");
    Put("g=g dir/f=f ../outside/f=f ../outside/list.txt=mod1 ../outside/dir/f=f");
    test::WriteScript(outside / "tool", ": > ran");
    fs::create_symlink(outside, InRoot("link"));
    for (const auto& [name, target] : {std::pair("leak", "f"), {"tool", "tool"}})
      fs::create_symlink(outside / target, InRoot(name));
    WriteFile(ini, c.contains("allow") ? "Allow=/nowhere\nallow = " + outside.string() : "");
    std::string lines = c.contains("legacy") ? "BZ2HALD3\ndesc M\n\n\n\n" : "BZ2HALD5\n";
    for (const std::string line : c["lines"])
      lines += std::regex_replace(line, std::regex("\\$"), sandbox_.Root().string() + "\\") + "\n";
    WriteFile(InRoot("mod.bzm"), lines);
    const auto own = test::Snapshot(outside);
    int refused = 0, started = 0;
    const win::OperationObserver observer([&](const win::FileOperation& operation) {
      if (operation.why == "it lies outside the install") ++refused;
      if (operation.kind == win::Operation::kStart && operation.done) ++started;
    });
    EXPECT_TRUE(c.contains("legacy") ? ActivateLegacyMod(Root() + "mod.bzm") : ActivateMod(Root() + "mod.bzm"));
    EXPECT_EQ(test::Snapshot(outside) == own, !c.contains("allow"));
    c.contains("legacy") ? DeactivateLegacyMod(Root() + "mod.bzm", Root())
                         : void(DeactivateMod(Root() + "mod.bzm", Root()));
    EXPECT_EQ(test::Snapshot(outside) == own, !c.contains("allow"));
    EXPECT_EQ(refused == 0, c.contains("allow"));
    EXPECT_EQ(started, 0);
  }
}

TEST_F(Deactivation, BringsBackEveryByteOfTheInstall) {
  const std::string preferences = "[UserPrefs]\r\nDefaultSessionName=Mine\r\nDefaultPassword=p\r\nDefaultMessage=";
  const std::string everyDirective = test::ReadFile(SOURCE_DIR "/tests/modengine/everydirective.bzm");
  const std::string set = "[UserPrefs]\r\nDefaultSessionName=First\r\nDefaultPassword=p\r\nDefaultMessage=Mod\r\n";
  const std::pair<const char*, std::string> cases[] = {{"1.2", ""}, {"1.3", "activated();\n"}, {"1.3", ""}};
  for (const auto& [version, first] : cases) {
    SCOPED_TRACE(version + first);
    MakeInstall(version);
    Put("a=a hidden/x=x b=b new/b=modded dir/f=f new/dir/f=modded inc=i "
        "RaceName_A.txt=player more.inc=rename(inc,inc.off);");
    WriteFile(InRoot("list.txt"), "own\r\n");
    WriteFile(InRoot("RecyList.txt"), "first 1\r\nmodest 2\r\n");
    WriteFile(InRoot("gameprefs.ini"), preferences + "\r\n");
    const std::string mod = Define(first + everyDirective);
    auto before = test::Snapshot(sandbox_.Install());
    ASSERT_TRUE(ActivateMod(mod));
    Expect("b=modded dir.orig/f=f inc.off=i RaceName_B.txt");
    EXPECT_EQ(Content("RecyList.txt"), "first 1\r\nmodest 2\r\nmod line\r\n");
    // The player's own values are left alone before 1.3 and by a persistent mod. Two of them stay one-sided: a default
    // that was empty keeps the mod's, and a race name file grows by one line end.
    const bool changes = version == std::string("1.3") && first.empty();
    EXPECT_EQ(Content("gameprefs.ini"), changes ? set : preferences + "\r\n");
    EXPECT_EQ(Content("RaceName_A.txt"), changes ? "Mod\r\n" : "player");
    if (changes) before["gameprefs.ini"] = preferences + "Mod\r\n";
    if (changes) before["RaceName_A.txt"] = "player\r\n";
    EXPECT_TRUE(DeactivateMod(mod, Root()));
    EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
  }
}

TEST_F(Deactivation, UndoesLineByLine) {
  WriteFile(InMods("shared.inc"), "rename(a,b);");
  for (const test::Case& c : test::Cases("modengine/undo.jsonl")) {
    SCOPED_TRACE(c);
    MakeInstall("1.2");
    Put(c.at("files"));
    WriteCrashMarker({Root(), "file"});
    Store(kBackupSection, "RacenameA", "old");
    SelectedMapIndex = 4;
    if (c.value("install", "") == "none") SelectInstall(-1);  // no program, list or race name is found
    const std::string outcome = c.value("outcome", "undone");
    EXPECT_EQ(Deactivate(c.at("lines")), outcome != "exe took over");
    EXPECT_EQ(SelectedMapIndex, outcome == "exe took over" ? 4 : -1);
    Expect(c.at("after"));
    EXPECT_EQ(ReadCrashMarker().root, outcome == "undone" ? "" : Root());
    EXPECT_EQ(ReadStored(kBackupSection, "RacenameA", "none"), outcome == "undone" ? "none" : "old");
  }
  EXPECT_EQ(Content("RaceName_A.txt"), "old\r\n");  // in any version of the game
}

TEST_F(Deactivation, FiltersListsByTheirFirstWordAndLosesNoLine) {
  WriteFile(InRoot("RecyList.txt"), "mod 1\nMod 2\r\nmodest 3\rmod\r\n mod 4");
  const std::string kept = "Mod 2\r\nmodest 3\r\nmod\r\n mod 4\r\n";
  EXPECT_TRUE(Deactivate("addrecy(mod,anything);\naddrecy(x,y,no*);"));
  EXPECT_EQ(Content("RecyList.txt"), kept);
  std::filesystem::permissions(InRoot("RecyList.txt"), std::filesystem::perms::owner_read);
  EXPECT_TRUE(Deactivate("addrecy(Mod,2);"));
  EXPECT_EQ(Content("RecyList.txt"), kept);
  Expect("tmp.recylist");
}

TEST_F(Deactivation, LeavesAListAloneThatCannotBeReadToItsEnd) {
  const std::string list = std::string(200'000, 'x') + "\nmod 1\n";
  WriteFile(InRoot("RecyList.txt"), list);
  for (int n = 1; n <= 4; ++n) {
    const test::FailingReads disk("RecyList.txt", n);
    EXPECT_TRUE(Deactivate("addrecy(mod,1);"));
    EXPECT_TRUE(disk.HasFailed() && win::ReadWholeFile(Root() + "RecyList.txt") == list) << n;
  }
}

// Lists that are written once for all lines hold what they do when each line is undone by a definition of its own.
TEST_F(Deactivation, FiltersAListInOnePassAsLineByLine) {
  std::mt19937 random(1);
  const auto any = [&](auto& texts) { return std::string(texts[random() % std::size(texts)]); };
  const char* const pieces[] = {"A ", "AB ", "A B ", " ", "a x", "A", "B ", "\r\n", "\r\n", "\n", "\r", "C D"};
  const char* const lines[] = {"addrecy(A,x);",
                               "addrecy(AB,x);",
                               "addrecy(A B,x);",
                               "addrecy(B,x,other);",
                               "addrecy(C,x,tmp.recylist);",
                               "addrecy(,x);",
                               "rename(other,RecyList.txt);",
                               "include(inc);"};
  Put("inc=addrecy(a,x);");
  for (int round = 0; round < 200; ++round) {
    std::map<std::string, std::string> content = {{"RecyList.txt", ""}, {"other", ""}, {"tmp.recylist", ""}};
    std::vector<std::string> definition;
    for (auto& [name, text] : content)
      for (unsigned left = random() % 12; left > 0; --left)
        text += any(pieces);
    for (unsigned left = 1 + random() % 6; left > 0; --left)
      definition.push_back(any(lines) + "\n");
    std::map<std::string, std::string> left[2];
    for (auto& result : left) {
      for (const auto& [name, text] : content)
        text.empty() ? Put(name) : WriteFile(InRoot(name), text);
      std::string whole;
      for (const std::string& line : definition)
        &result == left ? void(whole += line) : void(Deactivate(line));
      Deactivate(whole);
      result = test::Snapshot(sandbox_.Install());
      result.erase("mod.bzm");
    }
    EXPECT_EQ(left[0], left[1]) << testing::PrintToString(content) << testing::PrintToString(definition);
  }
}

}  // namespace
}  // namespace varnik
