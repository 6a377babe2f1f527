#include "definition/bzonecfg.h"
#include "definition/crashmarker.h"
#include "modengine/deactivation.h"
#include "platform/system/store/registry.h"
#include "support/install.h"
#include "support/registry.h"
#include "tests/legacy/legacytest.h"

using namespace varnik;

namespace {

using LegacyActivation = test::LegacyTest;

bool HasMarker() {
  return !ReadCrashMarker().definitionFile.empty() ||
         !RegReadValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue).empty();
}

// What is tried, the files, the lines; the files while the mod is active and afterwards.
const char* const kWalks[][5] = {
    {"the first configuration counts", "bzone.cfg=own c=1 d=2",
     "predefined @rootdir\\c\npredefined @rootdir\\d\ndynamic", "bzone.cfg=1 bzone.tmp.old=own d=2",
     "bzone.cfg=own c=1 d=2"},
    {"a missing configuration", "bzone.cfg=own", "predefined @rootdir\\c", "bzone.tmp.old=own", "bzone.cfg=own"},
    {"an untouched one", "bzone.cfg=own", "nobzonecfg\ndynamic\npak p", "bzone.cfg=own", "bzone.cfg=own"},
    {"an old one beside it", "bzone.cfg=own bzone.tmp.old=x", "nobzonecfg\ndynamic", "bzone.cfg=own bzone.tmp.old=x",
     "bzone.cfg=own bzone.tmp.old=x"},
    {"the first folders count", "m/p/a=1 m/s/c=3 saved/d=4 x/e=5",
     "pilots @rootdir\\m\\p\nsaved @rootdir/m/s/\npilots @rootdir\\x\nsaved @rootdir\\none",
     "pilots/a=1 saved.orig/d=4 saved/c=3 x/e=5", "m/p/a=1 m/s/c=3 saved/d=4 x/e=5"},
    {"parking names", "a=1 b=2 c=3 d=4 e=5",
     "remove @rootdir\\a\nmove @rootdir\\b,@rootdir\\m\nreplace @rootdir\\c, @rootdir\\d\nremove  @rootdir\\e",
     "c=4 m=2 tempstuff/1=1 tempstuff/2=3 tempstuff/3=5", "a=1 b=2 c=3 d=4 e=5"},
    {"a missing file takes its name", "b=2", "remove @rootdir\\a\nremove @rootdir\\b", "tempstuff/2=2", "b=2"},
    {"a name that is taken", "a=1 b=2", "move @rootdir\\a,@rootdir\\b", "a=1 b=2", "a=1 b=2"},
    {"undone from the first line on", "a=1", "move @rootdir\\a,@rootdir\\b\nmove @rootdir\\b,@rootdir\\c", "c=1",
     "b=1"},
    {"a place that is taken", "a=1 b=2", "remove @rootdir\\a\nmove @rootdir\\b,@rootdir\\a", "a=2 tempstuff/1=1",
     "b=2 tempstuff/1=1"},
    {"no comma", "a=1 b=2", "move @rootdir\\a,@rootdir\\c\nmove @rootdir\\b", "b=2 c=1", "a=1 b=2"},
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
    EXPECT_FALSE(HasMarker());
  }
}

TEST_F(LegacyActivation, GeneratesAConfiguration) {
  StartWith("bzone.cfg=own");
  EXPECT_TRUE(ActivateLegacyMod(DefineLegacy("pak early\ndynamic\npak foo\npak b.PAK\nfold @rootdir\\m \ndynamic")));
  EXPECT_EQ(Content("bzone.cfg"), ConfigurationHead(true) +
                                      "\r\n\r\n"
                                      "                AddPack(\"foo.pak\");\r\n\r\n"
                                      "                AddPack(\"b.PAK\");\r\n\r\n"
                                      "                AddDirRecurse(\"@rootdir\\m\");\r\n\r\n" +
                                      std::string(kAddonEntries) + "\r\n\r\n" + std::string(kGamePacks) +
                                      "\r\n                AddDirRecurse(\"@rootdir\\data\");\r\n" +
                                      std::string(kConfigurationEnd) + "\r\n");
  EXPECT_EQ(Content("bzone.tmp.old"), "own");
}

const std::pair<const char*, bool> kExecs[] = {
    {"pak p\nfold f\nreplace @rootdir\\a,@rootdir\\b\nexec none.exe", false},
    {"pilots @rootdir\\p\nexec none.exe", true},
    {"saved @rootdir\\p\nexec none.exe", true},
    {"remove @rootdir\\a\nexec none.exe", true},
    {"nobzonecfg\nexec none.exe", true},
};

TEST_F(LegacyActivation, AProgramTakesOverBeforeAnyChangeButReplace) {
  for (const auto& [lines, activates] : kExecs) {
    StartWith("");
    RemoveCrashMarker();
    EXPECT_EQ(ActivateLegacyMod(DefineLegacy(lines)), activates) << lines;
    EXPECT_EQ(HasMarker(), activates) << lines;
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
    EXPECT_EQ(marker.root, Root());
    if (!selected) SelectInstall(-1);
    // The second time finds nothing to undo.
    for (const char* time : {"first", "second"}) {
      SCOPED_TRACE(time);
      EXPECT_EQ(DeactivateByMarker(marker.definitionFile, marker.root), UndoOutcome::kDone);
      EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
    }
  }
}

TEST_F(LegacyActivation, AnotherSelectedInstallTakesTheLinesButNotTheConfiguration) {
  StartWith("bzone.cfg=own a=1");
  const std::string definition = DefineLegacy("dynamic\nmove @rootdir\\a,@rootdir\\b");
  ASSERT_TRUE(ActivateLegacyMod(definition));
  test::WriteFile(sandbox_.Home() / "b", "2");
  UseInstallFolder(sandbox_.Home().string());
  DeactivateLegacyMod(definition, Root());
  EXPECT_EQ(Files(), "b=1 bzone.cfg=own");
  EXPECT_EQ(test::ReadFile(sandbox_.Home() / "a"), "2");
}

}  // namespace
