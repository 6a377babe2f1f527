#include "definition/crashmarker.h"
#include "legacy/legacyactivation.h"
#include "legacy/legacydeactivation.h"
#include "modengine/applymod.h"
#include "platform/system/paths/workingfolder.h"
#include "platform/system/store/registry.h"
#include "support/install.h"
#include "support/registry.h"
#include "tests/harness/cases.h"
#include "tests/modengine/modtest.h"

using namespace varnik;

namespace {

class LegacyActivation : public test::ModTest {
 protected:
  // Writes a definition beside the install. Its name keeps the second open from going to the working folder.
  std::string DefineLegacy(const std::string& lines) { return DefineText("BZ2HALD3\ndesc M\n\n\n\n" + lines); }

  std::string DefineText(const std::string& content) {
    test::WriteFile(sandbox_.Root() / "mod.bzm", content);
    return (sandbox_.Root() / "mod.bzm").string();
  }

  // Everything below the root, as for Put.
  std::string Files() const {
    std::string files;
    for (const auto& [name, content] : test::Snapshot(sandbox_.Install()))
      if (!name.ends_with('/')) files += (files.empty() ? "" : " ") + name + "=" + content;
    return files;
  }
};

using LegacyLoader = LegacyActivation;

TEST_F(LegacyActivation, ChangesFilesAndPutsThemBack) {
  for (const test::Case& c : test::Cases("legacy/activations.jsonl")) {
    SCOPED_TRACE(c);
    StartWith(c.at("files"));
    const std::string definition = DefineLegacy(c.at("lines"));
    EXPECT_TRUE(ActivateLegacyMod(definition));
    EXPECT_EQ(Files(), c.at("active"));
    DeactivateLegacyMod(definition, Root());
    EXPECT_EQ(Files(), c.value("afterwards", c.at("files")));
    EXPECT_EQ(ReadCrashMarker().root, "");
    EXPECT_EQ(RegReadValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue), "");
  }
}

TEST_F(LegacyActivation, IsEndedWithoutItsDefinition) {
  std::filesystem::create_directory(InRoot("tempstuff"));
  WriteCrashMarker({Root(), "gone"});
  DeactivateLegacyMod("gone", Root());
  EXPECT_FALSE(std::filesystem::exists(InRoot("tempstuff")));
  EXPECT_EQ(ReadCrashMarker().root + RegReadValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue), "");
}

TEST_F(LegacyActivation, GeneratesAConfiguration) {
  StartWith("bzone.cfg=own");
  EXPECT_TRUE(ActivateLegacyMod(DefineLegacy("pak early\ndynamic\npak foo\npak b.PAK\nfold @rootdir\\m \ndynamic")));
  EXPECT_EQ(Content("bzone.cfg"), test::ReadFile(SOURCE_DIR "/tests/legacy/generated.cfg"));
  Expect("bzone.tmp.old=own");
}

TEST_F(LegacyActivation, AProgramTakesOverBeforeAnyChangeButReplace) {
  for (const test::Case& c : test::Cases("legacy/programs.jsonl")) {
    StartWith("");
    RemoveCrashMarker();
    EXPECT_EQ(test::Case(ActivateLegacyMod(DefineLegacy(c.at("lines")))), c.at("activates")) << c;
    EXPECT_EQ(ReadCrashMarker().root, c.at("activates") ? Root() : "") << c;
  }
}

// A start has no install selected, so the one that the marker names stands in for it.
TEST_F(LegacyActivation, EveryDirectiveComesBackAlsoAtAStart) {
  for (const bool selected : {true, false}) {
    StartWith("bzone.cfg=own pilots/b=2 saved/d=4 m/p/a=1 m/s/c=3 m/a=mods a=own m/n=new r=gone");
    const auto before = test::Snapshot(sandbox_.Install());
    ASSERT_TRUE(ActivateLegacyMod(
        DefineLegacy("dynamic\npak p\nfold f\npilots @rootdir\\m\\p\nsaved @rootdir\\m\\s\nremove @rootdir\\r\n"
                     "replace @rootdir\\a,@rootdir\\m\\a\nmove @rootdir\\m\\n,@rootdir\\n\nexec @rootdir\\x.exe")));
    const CrashMarker marker = ReadCrashMarker();
    if (!selected) SelectInstall(-1);
    EXPECT_EQ(RevertMod(marker.definitionFile, marker.root, false).end, RevertResult::End::kDone);
    EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
  }
}

TEST_F(LegacyActivation, AnotherSelectedInstallTakesTheLinesButNotTheConfiguration) {
  StartWith("bzone.cfg=own a=1");
  const std::string definition = DefineLegacy("dynamic\nmove @rootdir\\a,@rootdir\\b");
  ASSERT_TRUE(ActivateLegacyMod(definition));
  test::WriteFile(sandbox_.Home() / "b", "2");
  UseInstallFolder(sandbox_.Home().string());
  DeactivateLegacyMod(definition, Root());
  EXPECT_EQ(Files() + test::ReadFile(sandbox_.Home() / "a"), "b=1 bzone.cfg=own2");
}

TEST_F(LegacyLoader, ReadsTheHeaderByPositionAndLines) {
  StartWith("text.txt=Told. empty.cfg=AddPack");
  test::WriteFile(InRoot("c.cfg"), "AddDirRecurse(\"@RootDir\\mods\\a\"); // x\n adddirrecurse(\" @rootdir/b\");\n");
  for (const test::Case& c : test::Cases("legacy/definitions.jsonl")) {
    const std::string header = c.value("header", "desc M\n\n\n\n");
    EXPECT_EQ(RowOf(DefineText("bz2hald2\n" + header + c.value("lines", ""))), c.at("row")) << c;
    EXPECT_TRUE(ModList[1].DefinitionFile.ends_with("/mod.bzm") && ModList[1].Legacy && ModList[1].MarkedX);
  }
}

// Without a name the file is opened again by its bare name, from wherever the program was started.
TEST_F(LegacyLoader, WithoutANameLooksForTheLinesInTheWorkingFolder) {
  const win::ScopedWorkingFolder home(sandbox_.Home().string());
  const std::string definition = DefineText("bz2hald1\n\n\n\n\nmove a,b");
  EXPECT_EQ(RowOf(definition), "mod|addon|data");
  test::WriteFile(sandbox_.Home() / "mod.bzm", "move c,d");
  EXPECT_EQ(RowOf(definition), "mod c>d|addon|data");
}

}  // namespace
