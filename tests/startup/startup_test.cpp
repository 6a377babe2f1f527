#include "definition/crashmarker.h"
#include "modengine/runguard.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/instance.h"
#include "platform/system/store/registry.h"
#include "startup/commandline.h"
#include "startup/crashrecovery.h"
#include "startup/maintenance.h"
#include "support/install.h"
#include "support/registry.h"
#include "support/settings.h"
#include "tests/modengine/modtest.h"

namespace varnik {
namespace {

using Words = std::vector<std::string>;

TEST(SplitCommandLine, DropsQuotesAndKeepsWhatTheyHold) {
  const std::pair<const char*, Words> cases[] = {
      {"  a\tb  ", {"a", "b"}}, {"a\"b c\"d\"e\" f", {"ab cde", "f"}}, {"a \"\" \"b c", {"a", "", "b c"}}, {"", {}}};
  for (const auto& [line, words] : cases)
    EXPECT_EQ(SplitCommandLine(line, 3), words) << line;
  EXPECT_EQ(SplitCommandLine("a b \"c d\" e", 3), (Words{"a", "b", "c d"}));
}

class Startup : public test::ModTest {
 protected:
  Startup() { SelectInstall(-1); }

  static void SetArguments(const Words& words) {
    std::vector<const char*> argv = {"varnik"};
    for (const std::string& word : words)
      argv.push_back(word.c_str());
    win::SetCommandLine(static_cast<int>(argv.size()), argv.data());
  }
  static std::int16_t Start(const Words& words) {
    SetArguments(words);
    return ProcessCmdLine();
  }
};

TEST_F(Startup, TakesTheRunModeFromTheLastSwitch) {
  Words full(20, "x"), cut(21, "x");
  full.back() = cut.back() = "/crash";
  const std::pair<Words, int> cases[] = {
      {{"/BOOT"}, 2},
      {{"/boot", "/Crash"}, 1},
      {{"/crash", "x", "/boot"}, 2},
      {{"/bz2dir", "/crash"}, 0},
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

TEST_F(Startup, RecoversByTheMarker) {
  Define("rename(a,b);\nfold(x);");
  Define("activated();\nrename(a,b);", "persistent.bzm");
  Put("bad.bzm=text four.bzm=bz2hald4");
  const struct {
    std::string root, file;  // of the marker
    bool recovered, undone, staysMarked;
  } cases[] = {
      {Root(), Root() + "mod.bzm", true, true, false},       {"", "", false, false, false},
      {"", Root() + "mod.bzm", false, false, false},         {Root(), Root() + "gone.bzm", false, false, false},
      {Root(), Root() + "bad.bzm", true, false, true},       {Root(), Root() + "four.bzm", true, false, true},
      {Root(), Root() + "persistent.bzm", true, true, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.root + " " + c.file);
    Put("a b=1 bzone.cfg=generated bzonevarnik.bak=own RaceName_A.txt=mod");
    WriteCrashMarker({c.root, c.file});
    Store(kBackupSection, "RacenameA", "old");
    EXPECT_EQ(RecoverFromCrash(), c.recovered);
    EXPECT_EQ(Content("a").has_value(), c.undone);
    EXPECT_EQ(ReadCrashMarker().root + ReadCrashMarker().definitionFile, c.staysMarked ? c.root + c.file : "");
    EXPECT_EQ(RegReadValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue).empty(), !c.staysMarked);
    EXPECT_EQ(ReadStored(kBackupSection, "RacenameA"), c.staysMarked ? "old" : "");
    Expect("RaceName_A.txt=mod");  // no install is selected yet, so nothing is found
  }
}

TEST_F(Startup, ForgetsEverythingAtTheWordAloneOnly) {
  win::Instance instance;
  const std::tuple<Words, bool, bool> cases[] = {
      {{"x", "clearreg"}, false, true}, {{"close"}, true, true}, {{"ClearReg"}, true, false}};
  for (const auto& [words, answered, kept] : cases) {
    Store(kSettingsSection, "RenameLog", "On");
    PublishHomePage();
    SetArguments(words);
    EXPECT_EQ(AnswerMaintenanceWord(instance), answered);
    EXPECT_EQ(ReadOption("RenameLog") == "On", kept);
    EXPECT_EQ(RegReadValue(win::kHkeyLocalMachine, kAboutUrlsKey, kAboutUrlsValue).empty(), !kept);
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
