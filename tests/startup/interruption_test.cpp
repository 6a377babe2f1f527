#include "definition/crashmarker.h"
#include "journal/journal.h"
#include "tests/harness/crash.h"
#include "tests/modengine/modtest.h"

// Runs of the real program that end in the middle: whatever a kill or a full disk leaves, everything comes back.
namespace varnik {
namespace {

namespace fs = std::filesystem;

class Interruption : public test::ModTest, public testing::WithParamInterface<const char*> {
 protected:
  void Prepare() {
    MakeInstall("1.3");
    fs::copy_file(SOURCE_DIR "/tests/startup/" + std::string(GetParam()) + ".bzm", mod_);
    Put("a=a b=b new/b=modded hidden/x=x pilots/b=2 saved/d=4 m/p/a=1 m/s/c=3 m/a=mods m/n=n r=r "
        "RaceName_A.txt=player");
    test::WriteFile(InRoot("RecyList.txt"), "first 1\nmod own");
    test::WriteFile(InRoot("gameprefs.ini"), "[UserPrefs]\nDefaultSessionName=Mine\n");
    for (const char* folder : {"config", "state"})
      fs::remove_all(sandbox_.Home() / folder);
    before_ = test::Snapshot(sandbox_.Install());
  }

  test::Command Cli(std::vector<std::string> words) const {
    words.insert(words.begin(), {BINARY_DIR "/varnik-cli", "--root", sandbox_.Install().string()});
    return {words};
  }

  void ExpectAsBefore() const {
    EXPECT_EQ(test::Snapshot(sandbox_.Install()), before_);
    EXPECT_TRUE(ReadCrashMarker().root.empty());
    EXPECT_TRUE(ReadJournals().empty());
  }

  const std::string mod_ = InRoot("mod.bzm").string();
  std::map<std::string, std::string> before_;
};

INSTANTIATE_TEST_SUITE_P(OfAMod, Interruption, testing::Values("current", "older"),
                         [](const auto& of) { return std::string(of.param); });

TEST_P(Interruption, AKillAtAnyOperationIsRepaired) {
  const auto prepare = [this] { Prepare(); };
  test::SweepKills(Cli({"run", mod_, "--options", ""}), prepare, [this] {
    EXPECT_EQ(test::Run(Cli({"recover"})).exitStatus, 0);
    EXPECT_EQ(test::Run(Cli({"doctor", "--fix"})).exitStatus, 0);
    ExpectAsBefore();
  });
}

TEST_P(Interruption, AFullDiskLosesNothing) {
  const auto prepare = [this] { Prepare(); };
  test::SweepFullDisk(Cli({"run", mod_, "--options", ""}), prepare, [this] {
    test::Run(Cli({"recover"}));
    EXPECT_EQ(test::Run(Cli({"doctor", "--fix"})).exitStatus, 0);
    ExpectAsBefore();
  });
}

}  // namespace
}  // namespace varnik
