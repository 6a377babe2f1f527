#include "definition/crashmarker.h"
#include "modengine/runguard.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/instance.h"
#include "platform/system/store/registry.h"
#include "startup/commandline.h"
#include "startup/crashrecovery.h"
#include "startup/maintenance.h"
#include "support/install.h"
#include "support/registry.h"
#include "support/settings.h"
#include "tests/harness/cases.h"
#include "tests/harness/failingreads.h"
#include "tests/modengine/modtest.h"

#include <regex>

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

// In the tables `@` stands for the install's folder.
class Startup : public test::ModTest {
 protected:
  Startup() { SelectInstall(-1); }

  std::string Expanded(const std::string& text) const {
    return std::regex_replace(text, std::regex("@"), sandbox_.Install().string());
  }
  void SetArguments(const Words& words) const {
    Words expanded = {"varnik"};
    for (const std::string& word : words)
      expanded.push_back(Expanded(word));
    std::vector<const char*> argv;
    for (const std::string& word : expanded)
      argv.push_back(word.c_str());
    win::SetCommandLine(static_cast<int>(argv.size()), argv.data());
  }
};

TEST_F(Startup, ActsByTheWordsOfTheCommandLine) {
  Define("rename(a,b);");
  for (const test::Case& c : test::Cases("startup/command_lines.jsonl")) {
    SCOPED_TRACE(c);
    Put("a b=1");
    SetArguments(c["words"]);
    EXPECT_EQ(ProcessCmdLine(), c.value("mode", 0));
    Expect(c.value("after", "a b=1"));
  }
}

TEST_F(Startup, RecoversByTheMarker) {
  Define("rename(a,b);\nfold(x);");
  Define("activated();\nrename(a,b);", "persistent.bzm");
  Put("bad.bzm=text four.bzm=bz2hald4");
  for (const test::Case& c : test::Cases("startup/recoveries.jsonl")) {
    SCOPED_TRACE(c);
    Put("a b=1 bzone.cfg=generated bzonevarnik.bak=own RaceName_A.txt=mod");
    const CrashMarker marker{Expanded(c["root"]), Expanded(c["definition"])};
    WriteCrashMarker(marker);
    Store(kBackupSection, "RacenameA", "old");
    const bool staysMarked = c["stays marked"];
    EXPECT_EQ(RecoverFromCrash().acted, c["recovered"]);
    EXPECT_EQ(Content("a").has_value(), c["deactivated"]);
    EXPECT_EQ(ReadCrashMarker().root + ReadCrashMarker().definitionFile,
              staysMarked ? marker.root + marker.definitionFile : "");
    EXPECT_EQ(RegReadValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue).empty(), !staysMarked);
    EXPECT_EQ(ReadStored(kBackupSection, "RacenameA"), staysMarked ? "old" : "");
    Expect("RaceName_A.txt=mod");  // no install is selected yet, so nothing is found
  }
}

// Whichever reading of the settings fails: the run is undone, or can still be.
TEST_F(Startup, DoesNotTakeUnreadableSettingsForNone) {
  UseInstallFolder(Root());
  Put("b=1 RaceName_A.txt=mod");
  WriteCrashMarker({Root(), Define("rename(a,b);")});
  Store(kBackupSection, "RacenameA", "old");
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    const test::FailingReads disk("settings.json", n);
    const Recovery recovery = RecoverFromCrash();
    if (!disk.HasFailed()) break;
    EXPECT_TRUE(recovery.acted || !recovery.isDone);
    EXPECT_TRUE(recovery.acted || !ReadCrashMarker().root.empty());
    const auto name = win::ReadWholeFile(Root() + "RaceName_A.txt");
    EXPECT_TRUE(name == "old\r\n" || ReadStored(kBackupSection, "RacenameA") == "old") << *name;
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
  EXPECT_FALSE(RecoverFromCrash().acted);
  SetArguments({"/bz2dir", Root(), "/deactivate", mod});
  ProcessCmdLine();
  Expect("b=1");
  EXPECT_EQ(ReadCrashMarker().root, Root());
  EXPECT_EQ(told_, kRunRefused);
}

}  // namespace
}  // namespace varnik
