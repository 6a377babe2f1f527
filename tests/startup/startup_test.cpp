#include "definition/crashmarker.h"
#include "modengine/runguard.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/instance.h"
#include "platform/system/store/registry.h"
#include "startup/commandline.h"
#include "startup/crashrecovery.h"
#include "support/install.h"
#include "support/registry.h"
#include "support/settings.h"
#include "tests/modengine/modtest.h"

namespace varnik {
namespace {

using Words = std::vector<std::string>;

struct SplitCase {
  const char* line;
  Words words;
};

const SplitCase kSplits[] = {
    {"", {}},
    {"  a\tb  ", {"a", "b"}},
    {"\"a b\" c", {"a b", "c"}},
    {"a\"b c\"d\"e\"", {"ab cde"}},
    {"a \"\" b", {"a", "", "b"}},
    {"a \"b c", {"a", "b c"}},
};

TEST(SplitCommandLine, DropsQuotesAndKeepsWhatTheyHold) {
  for (const SplitCase& c : kSplits) {
    SCOPED_TRACE(c.line);
    EXPECT_EQ(SplitCommandLine(c.line, 20), c.words);
  }
  EXPECT_EQ(SplitCommandLine("a b \"c d\" e", 3), (Words{"a", "b", "c d"}));
}

class Startup : public test::ModTest {
 protected:
  Startup() { SelectInstall(-1); }

  std::int16_t Start(const Words& words) {
    std::vector<const char*> argv = {"varnik"};
    for (const std::string& word : words)
      argv.push_back(word.c_str());
    win::SetCommandLine(static_cast<int>(argv.size()), argv.data());
    return ProcessCmdLine();
  }
};

TEST_F(Startup, TakesTheRunModeFromTheLastSwitch) {
  Words full(20, "x"), cut(21, "x");
  full.back() = cut.back() = "/crash";
  const std::pair<Words, int> cases[] = {
      {{}, 0},
      {{"/BOOT"}, 2},
      {{"/boot", "/Crash"}, 1},
      {{"/crash", "x", "/boot"}, 2},
      {{"/bz2dir", "/crash"}, 0},
      {{"/deactivate"}, 0},
      {{"/crash/boot"}, 0},
      {full, 1},
      {cut, 0},
  };
  for (const auto& [words, mode] : cases)
    EXPECT_EQ(Start(words), mode) << testing::PrintToString(words);
}

TEST_F(Startup, DeactivatesTheModThatTheCommandLineNames) {
  const std::string mod = Define("rename(a,b);");
  const std::string bare = Root().substr(0, Root().size() - 1);
  const std::pair<Words, const char*> cases[] = {
      {{"/bz2dir", bare, "/deactivate", mod}, "a=1 b"},
      {{"/DEACTIVATE", "other", "/bz2dir", "x", "/deactivate", mod, "/BZ2DIR", Root(), "/bz2dir"}, "a=1 b"},
      {{"/bz2dir", bare, "/deactivate"}, "a b=1"},
      {{"/bz2dir", bare, "/deactivate", Root() + "missing.bzm"}, "a b=1"},
      {{"/deactivate", mod}, "a b=1"},
  };
  for (const auto& [words, after] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    Put("a b=1");
    EXPECT_EQ(Start(words), 0);
    Expect(after);
  }
}

struct RecoveryCase {
  const char* what;
  std::string root, file;  // of the marker
  bool recovered, undone, markerStays, backupStays;
};

TEST_F(Startup, RecoversByTheMarker) {
  Define("rename(a,b);\nfold(x);");
  Define("activated();\nrename(a,b);", "persistent.bzm");
  Put("bad.bzm=text four.bzm=bz2hald4");
  const RecoveryCase cases[] = {
      {"an interrupted run", Root(), Root() + "mod.bzm", true, true, false, false},
      {"no marker", "", "", false, false, false, false},
      {"no root", "", Root() + "mod.bzm", false, false, false, false},
      {"a definition that has gone", Root(), Root() + "gone.bzm", false, false, false, false},
      {"a first line gone bad", Root(), Root() + "bad.bzm", true, false, true, true},
      {"a version that is no format", Root(), Root() + "four.bzm", true, false, true, true},
      {"a persistent mod by now", Root(), Root() + "persistent.bzm", true, true, true, true},
  };
  for (const RecoveryCase& c : cases) {
    SCOPED_TRACE(c.what);
    Put("a b=1 bzone.cfg=generated bzonevarnik.bak=own RaceName_A.txt=mod");
    WriteCrashMarker({c.root, c.file});
    Store(kBackupSection, "RacenameA", "old");
    EXPECT_EQ(RecoverFromCrash(), c.recovered);
    EXPECT_EQ(Content("a").has_value(), c.undone);
    EXPECT_EQ(ReadCrashMarker().root + ReadCrashMarker().definitionFile, c.markerStays ? c.root + c.file : "");
    EXPECT_EQ(RegReadValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue).empty(), !c.markerStays);
    EXPECT_EQ(ReadStored(kBackupSection, "RacenameA"), c.backupStays ? "old" : "");
    Expect("RaceName_A.txt=mod");  // no install is selected yet, so nothing is found
  }
}

TEST_F(Startup, LeavesTheRunOfALivingProcessAlone) {
  Put("b=1");
  const std::string mod = Define("rename(a,b);");
  WriteCrashMarker({Root(), mod});
  win::ExclusiveLock other("run");
  ASSERT_TRUE(other.TryAcquire());
  EXPECT_FALSE(RecoverFromCrash());
  Start({"/bz2dir", Root(), "/deactivate", mod});
  Expect("b=1");
  EXPECT_EQ(ReadCrashMarker().root, Root());
  EXPECT_EQ(told_, kRunRefused);
}

}  // namespace
}  // namespace varnik
