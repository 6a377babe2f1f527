#include <unistd.h>

#include <set>

#include "modengine/activation.h"
#include "modengine/crashmarker.h"
#include "modengine/deactivation.h"
#include "support/settings.h"
#include "tests/harness/crash.h"
#include "tests/modengine/modtest.h"

// Runs that end in the middle: whatever a kill, a full disk or a locked folder leaves, nothing of the player's is lost.
namespace varnik {
namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

constexpr char kLines[] =
    "rename(a,hidden/a);\nreplace(b,new/b,b.orig);\npak(p);\nfold(new);\ndefaultname(Mod);\nracename(a,Mod);\n"
    "writeid(id);\naddrecy(mod,line);\n";

// What activation changes in place: a start has no install selected yet, and leaves them as they are.
const std::set<std::string> kPlayerFiles = {"gameprefs.ini", "RaceName_A.txt", "RecyList.txt", "tmp.recylist"};

class Interruption : public test::ModTest {
 protected:
  Interruption() { Prepare(); }

  void Prepare() {
    MakeInstall("1.3");
    Define(kLines);
    Put("a=a b=b new/b=modded hidden/x=x RaceName_A.txt=player");
    test::WriteFile(InRoot("RecyList.txt"), "first 1\r\n");
    test::WriteFile(InRoot("gameprefs.ini"), "[UserPrefs]\r\nDefaultSessionName=Mine\r\n");
    fs::remove_all(sandbox_.Home() / "config");
    before_ = Install();
  }

  test::Command Cli(std::vector<std::string> words) const {
    words.insert(words.begin(), {BINARY_DIR "/varnik-cli", "--root", sandbox_.Install().string()});
    return {words};
  }
  test::Command Run() const { return Cli({"run", "mod.bzm", "--options", ""}); }

  // Without what a broken write leaves beside its file.
  Files Install() const {
    Files files = test::Snapshot(sandbox_.Install());
    std::erase_if(files, [](const auto& file) { return file.first.ends_with('~'); });
    return files;
  }

  static Files WithoutPlayerFiles(Files files) {
    std::erase_if(files, [](const auto& file) { return kPlayerFiles.contains(file.first); });
    return files;
  }

  bool HasMarker() const { return !ReadCrashMarker().root.empty() && !ReadCrashMarker().definitionFile.empty(); }

  // Every content is there under some name, and what a mod overwrites is there or in the backup.
  void ExpectNothingLost(const char* list) const {
    Files now = Install();
    std::multiset<std::string> contents;
    for (const auto& [name, content] : now)
      contents.insert(content);
    for (const auto& [name, content] : WithoutPlayerFiles(before_)) {
      const auto found = contents.find(content);
      EXPECT_NE(found, contents.end()) << name;
      if (found != contents.end()) contents.erase(found);
    }
    EXPECT_TRUE(now[list].starts_with("first 1\r\n"));
    EXPECT_TRUE(now["RaceName_A.txt"].starts_with("player") || ReadStored(kBackupSection, "RacenameA") == "player");
    EXPECT_TRUE(now["gameprefs.ini"].find("=Mine") != std::string::npos ||
                ReadStored(kBackupSection, "DefaultSessionName") == "Mine");
  }

  Files before_;
};

TEST_F(Interruption, AKillAtAnyOperationIsRepairedFromTheMarkerOn) {
  bool markerSeen = false;
  const auto judge = [&] {
    ExpectNothingLost(Content("RecyList.txt") ? "RecyList.txt" : "tmp.recylist");
    markerSeen = markerSeen || HasMarker();
    const Files atKill = Install();
    EXPECT_EQ(test::Run(Cli({"recover"})).exitStatus, 0);
    EXPECT_EQ(WithoutPlayerFiles(Install()), WithoutPlayerFiles(markerSeen ? before_ : atKill));
    EXPECT_TRUE(Content("RecyList.txt").value_or("gone").starts_with("first 1\r\n"));
    EXPECT_FALSE(HasMarker());
    EXPECT_EQ(ReadStored(kBackupSection, "RacenameA"), "");
    if (!markerSeen) test::Run(Cli({"deactivate", "mod.bzm"}));
    Put("bzonevarnik.cfg");  // half written, it waits for the next activation
    EXPECT_EQ(WithoutPlayerFiles(Install()), WithoutPlayerFiles(before_));
  };
  test::SweepKills(
      Run(), [this] { Prepare(); }, judge);
  EXPECT_TRUE(markerSeen);
}

TEST_F(Interruption, ARecoveryThatIsKilledIsFinishedByTheNextOne) {
  const auto prepare = [this] {
    Prepare();
    ASSERT_TRUE(ActivateMod(Root() + "mod.bzm"));
  };
  test::SweepKills(Cli({"recover"}), prepare, [this] {
    test::Run(Cli({"recover"}));
    EXPECT_EQ(WithoutPlayerFiles(Install()), WithoutPlayerFiles(before_));
    EXPECT_FALSE(HasMarker());
  });
}

TEST_F(Interruption, AFullDiskLosesNothing) {
  const auto prepare = [this] { Prepare(); };
  test::SweepFullDisk(Run(), prepare, [this] {
    ExpectNothingLost("RecyList.txt");
    EXPECT_EQ(WithoutPlayerFiles(Install()), WithoutPlayerFiles(before_));
  });
}

TEST_F(Interruption, AFolderThatCannotBeChangedLosesNothing) {
  for (const auto& entry : fs::recursive_directory_iterator(sandbox_.Root()))
    fs::permissions(entry.path(), entry.is_directory() ? fs::perms::all : fs::perms(0666));
  fs::permissions(sandbox_.Root(), fs::perms::all);
  for (const char* folder : {"", "new", "hidden"})
    fs::permissions(InRoot(folder), fs::perms(0555));
  EXPECT_EXIT(
      {
        if (geteuid() == 0 && setuid(65534) != 0) _exit(2);  // root may change any folder
        _exit(ActivateMod(Root() + "mod.bzm") && DeactivateMod(Root() + "mod.bzm", Root()) ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
  ExpectNothingLost("RecyList.txt");
  EXPECT_EQ(WithoutPlayerFiles(Install()), WithoutPlayerFiles(before_));
}

}  // namespace
}  // namespace varnik
