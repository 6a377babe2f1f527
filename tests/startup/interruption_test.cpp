#include "definition/crashmarker.h"
#include "modengine/applymod.h"
#include "support/settings.h"
#include "tests/harness/crash.h"
#include "tests/modengine/modtest.h"

#include <algorithm>
#include <set>

// Runs that end in the middle: whatever a kill or a full disk leaves, nothing of the player's is lost.
namespace varnik {
namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

struct ModCase {
  const char* name;  // of the definition beside this file
  const char* files;
};

const ModCase kMods[] = {
    {"current", "a=a b=b new/b=modded hidden/x=x"},
    {"older", "bzone.cfg=own pilots/b=2 saved/d=4 m/p/a=1 m/s/c=3 m/a=mods a=own m/n=new r=gone"},
};

// What activation changes in place: a start has no install selected yet, and leaves them as they are.
const std::set<std::string> kPlayerFiles = {"gameprefs.ini", "RaceName_A.txt", "RecyList.txt", "tmp.recylist"};

class Interruption : public test::ModTest, public testing::WithParamInterface<ModCase> {
 protected:
  Interruption() { Prepare(); }

  void Prepare() {
    MakeInstall("1.3");
    fs::copy_file(SOURCE_DIR "/tests/startup/" + std::string(GetParam().name) + ".bzm", mod_);
    Put("RaceName_A.txt=player " + std::string(GetParam().files));
    test::WriteFile(InRoot("RecyList.txt"), "first 1\r\n");
    test::WriteFile(InRoot("gameprefs.ini"), "[UserPrefs]\r\nDefaultSessionName=Mine\r\n");
    for (const char* folder : {"config", "state"})
      fs::remove_all(sandbox_.Home() / folder);
    before_ = Install();
  }

  test::Command Cli(std::vector<std::string> words) const {
    words.insert(words.begin(), {BINARY_DIR "/varnik-cli", "--root", sandbox_.Install().string()});
    return {words};
  }
  // Without the player's files and what a broken write leaves beside its file.
  Files Install() const {
    Files files = test::Snapshot(sandbox_.Install());
    std::erase_if(files,
                  [](const auto& file) { return file.first.ends_with('~') || kPlayerFiles.contains(file.first); });
    return files;
  }

  bool HasMarker() const { return !ReadCrashMarker().root.empty() && !ReadCrashMarker().definitionFile.empty(); }

  // Every content is there under some name, and what a mod overwrites is there or in the backup.
  void ExpectNothingLost(const char* list) const {
    std::multiset<std::string> before, now;
    for (const auto& [name, content] : before_)
      before.insert(content);
    for (const auto& [name, content] : Install())
      now.insert(content);
    EXPECT_TRUE(std::includes(now.begin(), now.end(), before.begin(), before.end())) << testing::PrintToString(now);
    EXPECT_TRUE(Content(list).value_or("gone").starts_with("first 1\r\n"));
    EXPECT_TRUE(Content("RaceName_A.txt").value_or("").starts_with("player") ||
                ReadStored(kBackupSection, "RacenameA") == "player");
    EXPECT_TRUE(Content("gameprefs.ini").value_or("").find("=Mine") != std::string::npos ||
                ReadStored(kBackupSection, "DefaultSessionName") == "Mine");
  }

  const std::string mod_ = InRoot("mod.bzm").string();
  Files before_;
};

INSTANTIATE_TEST_SUITE_P(OfAMod, Interruption, testing::ValuesIn(kMods), [](const auto& of) { return of.param.name; });

TEST_P(Interruption, AKillAtAnyOperationIsRepairedFromTheMarkerOn) {
  bool markerSeen = false;
  const auto judge = [&] {
    ExpectNothingLost(Content("RecyList.txt") ? "RecyList.txt" : "tmp.recylist");
    markerSeen = markerSeen || HasMarker();
    const Files atKill = Install();
    EXPECT_EQ(test::Run(Cli({"recover"})).exitStatus, 0);
    EXPECT_EQ(Install(), markerSeen ? before_ : atKill);
    EXPECT_TRUE(Content("RecyList.txt").value_or("gone").starts_with("first 1\r\n"));
    EXPECT_FALSE(HasMarker());
    EXPECT_EQ(ReadStored(kBackupSection, "RacenameA"), "");
    if (!markerSeen) test::Run(Cli({"deactivate", mod_}));
    Put("bzonevarnik.cfg newbzone.tmp");  // half written, it waits for the next activation
    EXPECT_EQ(Install(), before_);
  };
  const auto prepare = [this] { Prepare(); };
  test::SweepKills(Cli({"run", mod_, "--options", ""}), prepare, judge);
  EXPECT_TRUE(markerSeen);
}

TEST_P(Interruption, ARecoveryThatIsKilledIsFinishedByTheNextOne) {
  const auto prepare = [this] {
    Prepare();
    ASSERT_TRUE(ApplyMod(mod_, GetParam().name == std::string("older")).active);
  };
  test::SweepKills(Cli({"recover"}), prepare, [this] {
    test::Run(Cli({"recover"}));
    EXPECT_EQ(Install(), before_);
    EXPECT_FALSE(HasMarker());
  });
}

TEST_P(Interruption, AFullDiskLosesNothing) {
  const auto prepare = [this] { Prepare(); };
  test::SweepFullDisk(Cli({"run", mod_, "--options", ""}), prepare, [this] {
    ExpectNothingLost("RecyList.txt");
    EXPECT_EQ(Install(), before_);
  });
}

}  // namespace
}  // namespace varnik
