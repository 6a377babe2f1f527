#include "definition/crashmarker.h"
#include "modengine/deactivation.h"
#include "platform/system/store/registry.h"
#include "support/install.h"
#include "support/registry.h"
#include "tests/legacy/legacytest.h"

using namespace varnik;

namespace {

class LegacyActivation : public test::LegacyTest {
 protected:
  // Everything below the root, as for Put.
  std::string Files() const {
    std::string files;
    for (const auto& [name, content] : test::Snapshot(sandbox_.Install()))
      if (!name.ends_with('/')) files += (files.empty() ? "" : " ") + name + "=" + content;
    return files;
  }
};

using LegacyLoader = LegacyActivation;

// What is tried, the files, the lines; the files while the mod is active and afterwards.
const char* const kWalks[][5] = {
    {"the first configuration counts", "bzone.cfg=own c=1 d=2",
     "predefined @rootdir\\c\npredefined @rootdir\\d\ndynamic", "bzone.cfg=1 bzone.tmp.old=own d=2",
     "bzone.cfg=own c=1 d=2"},
    {"a missing configuration", "bzone.cfg=own", "predefined @rootdir\\c", "bzone.tmp.old=own", "bzone.cfg=own"},
    {"an old one beside it", "bzone.cfg=own bzone.tmp.old=x", "nobzonecfg\ndynamic\npak p",
     "bzone.cfg=own bzone.tmp.old=x", "bzone.cfg=own bzone.tmp.old=x"},
    {"the first folders count", "m/p/a=1 m/s/c=3 saved/d=4 x/e=5",
     "pilots @rootdir\\m\\p\nsaved @rootdir/m/s/\npilots @rootdir\\x\nsaved @rootdir\\none",
     "pilots/a=1 saved.orig/d=4 saved/c=3 x/e=5", "m/p/a=1 m/s/c=3 saved/d=4 x/e=5"},
    {"parking names", "a=1 b=2 c=3 d=4 e=5",
     "remove @rootdir\\a\nmove @rootdir\\b,@rootdir\\m\nreplace @rootdir\\c, @rootdir\\d\nremove  @rootdir\\e",
     "c=4 m=2 tempstuff/1=1 tempstuff/2=3 tempstuff/3=5", "a=1 b=2 c=3 d=4 e=5"},
    {"a missing file takes a name", "b=2", "remove @rootdir\\a\nremove @rootdir\\b", "tempstuff/2=2", "b=2"},
    {"undone from the top", "a=1", "move @rootdir\\a,@rootdir\\b\nmove @rootdir\\b,@rootdir\\c", "c=1", "b=1"},
    {"a taken place", "a=1 b=2", "remove @rootdir\\a\nmove @rootdir\\b,@rootdir\\a", "a=2 tempstuff/1=1",
     "b=2 tempstuff/1=1"},
};

TEST_F(LegacyActivation, ChangesFilesAndPutsThemBack) {
  for (const auto& [what, files, lines, active, afterwards] : kWalks) {
    SCOPED_TRACE(what);
    StartWith(files);
    const std::string definition = DefineLegacy(lines);
    EXPECT_TRUE(ActivateLegacyMod(definition));
    EXPECT_EQ(Files(), active);
    DeactivateLegacyMod(definition, Root());
    EXPECT_EQ(Files(), afterwards);
    EXPECT_EQ(ReadCrashMarker().root, "");
    EXPECT_EQ(RegReadValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue), "");
  }
}

TEST_F(LegacyActivation, GeneratesAConfiguration) {
  StartWith("bzone.cfg=own");
  EXPECT_TRUE(ActivateLegacyMod(DefineLegacy("pak early\ndynamic\npak foo\npak b.PAK\nfold @rootdir\\m \ndynamic")));
  EXPECT_EQ(Content("bzone.cfg"), test::ReadFile(SOURCE_DIR "/tests/legacy/generated.cfg"));
  Expect("bzone.tmp.old=own");
}

const std::pair<const char*, bool> kExecs[] = {
    {"pak p\nfold f\nreplace @rootdir\\a,@rootdir\\b\nexec none.exe", false},
    {"pilots @rootdir\\p\nexec none.exe", true},
    {"remove @rootdir\\a\nexec none.exe", true},
    {"nobzonecfg\nexec none.exe", true},
};

TEST_F(LegacyActivation, AProgramTakesOverBeforeAnyChangeButReplace) {
  for (const auto& [lines, activates] : kExecs) {
    StartWith("");
    RemoveCrashMarker();
    EXPECT_EQ(ActivateLegacyMod(DefineLegacy(lines)), activates) << lines;
    EXPECT_EQ(ReadCrashMarker().root, activates ? Root() : "") << lines;
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
    EXPECT_EQ(DeactivateByMarker(marker.definitionFile, marker.root), UndoOutcome::kDone);
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

// What follows line 1, and the row.
const std::pair<const char*, const char*> kHeaders[] = {
    {"desc ", "mod|addon|data"},
    {"  DESC My  Mod  // first", "My  Mod|addon|data"},
    {"// takes its number\ndesc X", "mod|addon|data"},
    {"desc X\ndfile  @RootDir/Text.txt", "X Told.|addon|data"},
    {"desc X\ndfile @rootdir\\none.txt\nsplashimg a\nsplashimg @rootdir\\b //", "X splashimg @rootdir\\b|addon|data"},
};

// What follows the header, and the row.
const std::pair<const char*, const char*> kLines[] = {
    {"dynamic\nFOLD  @rootdir\\Mods/x // why\nfold @rootdir/y", "M|addon|data|Mods/x|y"},
    {"fold x\nnobzonecfg\nfold y\ndynamic\nfold z", "M|addon|data"},
    {"predefined @rootdir/c.cfg\nfold x", "M|mods\\a|@rootdir/b"},
    {"dynamic\npredefined @rootdir\\c.cfg\nmove @rootdir.a,b", "M @rootdir.a>b|addon|data"},
    {"predefined @rootdir\\empty.cfg\nmove a,b", "M a>b|addon|data"},
    {"move a,b\npredefined none.cfg\nmove c,d", "M a>b|addon|data"},
    {"Replace @ROOTDIR\\a , @rootdir/b", "M b>a a>XXXXXXXXXXXXX|addon|data"},
    {";move a,b\n//move a,b\nmoves a,b\nmove", "M|addon|data"},
    {"move @rootdir\\a,b\nremove  @rootdir\\a,b\nmove c", "M a>b a,b>XXXXXXXXXXXXX a>move c|addon|data"},
    {"pilots p\nsaved s\nfold f\npak p\nexec x.exe", "M exe|addon|data"},
    {"move a,b\nexec x.exe\nmove c,d", "M a>b c>d|addon|data"},
};

TEST_F(LegacyLoader, ReadsTheHeaderByPositionAndLines) {
  StartWith("text.txt=Told. empty.cfg=AddPack");
  test::WriteFile(InRoot("c.cfg"), "AddDirRecurse(\"@RootDir\\mods\\a\"); // x\n adddirrecurse(\" @rootdir/b\");\n");
  for (const auto& [lines, row] : kHeaders) {
    EXPECT_EQ(RowOf(DefineText("bz2hald2\n" + std::string(lines))), row);
    EXPECT_TRUE(ModList[1].DefinitionFile.ends_with("/mod.bzm") && ModList[1].Legacy && ModList[1].MarkedX);
  }
  for (const auto& [lines, row] : kLines)
    EXPECT_EQ(RowOf(DefineLegacy(lines)), row) << lines;
}

// Without a name the file is opened again by its bare name, from wherever the program was started.
TEST_F(LegacyLoader, WithoutANameLooksForTheLinesInTheWorkingFolder) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(sandbox_.Home());
  const std::string definition = DefineText("bz2hald1\n\n\n\n\nmove a,b");
  EXPECT_EQ(RowOf(definition), "mod|addon|data");
  test::WriteFile(sandbox_.Home() / "mod.bzm", "move c,d");
  EXPECT_EQ(RowOf(definition), "mod c>d|addon|data");
  std::filesystem::current_path(before);
}

}  // namespace
