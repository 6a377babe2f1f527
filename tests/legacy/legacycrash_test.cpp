#include "modengine/crashmarker.h"
#include "tests/harness/crash.h"
#include "tests/legacy/legacytest.h"

namespace {

class LegacyCrash : public test::LegacyTest {
 protected:
  test::Command Cli(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {BINARY_DIR "/varnik-cli", "--root", Root(), "--app-path", sandbox_.AppText()});
    return {arguments};
  }

  static bool IsMarked() { return !varnik::ReadCrashMarker().definitionFile.empty(); }

  void Prepare() {
    if (IsMarked()) varnik::RemoveCrashMarker();
    StartWith("bzone.cfg=own pilots/b=2 saved/d=4 m/p/a=1 m/s/c=3 m/a=mods a=own m/n=new r=gone");
    test::WriteFile(InRoot("bzone.exe"), "#!/bin/sh\n");
    std::filesystem::permissions(InRoot("bzone.exe"), std::filesystem::perms(0755));
    before_ = test::Snapshot(sandbox_.Install());
  }

  // Below the root; the half-written configuration of a killed activation does no harm.
  std::map<std::string, std::string> Now() const {
    auto now = test::Snapshot(sandbox_.Install());
    now.erase("newbzone.tmp");
    return now;
  }

  const std::string definition_ = DefineLegacy(
      "dynamic\npak p\npilots @rootdir\\m\\p\nsaved @rootdir\\m\\s\nremove @rootdir\\r\n"
      "replace @rootdir\\a,@rootdir\\m\\a\nmove @rootdir\\m\\n,@rootdir\\n");
  std::map<std::string, std::string> before_;
};

// Before the marker stands nobody knows of the mod, but the player can still take it out.
TEST_F(LegacyCrash, ARunThatIsKilledAnywhereIsUndone) {
  const auto prepare = [this] { Prepare(); };
  test::SweepKills(Cli({"run", definition_}), prepare, [this] {
    const bool marked = IsMarked();
    EXPECT_EQ(test::Run(Cli({"recover"})).exitStatus, 0);
    if (!marked) test::Run(Cli({"deactivate", definition_}));
    EXPECT_EQ(Now(), before_);
  });
}

TEST_F(LegacyCrash, ARecoveryThatIsKilledAnywhereIsFinishedByTheNextOne) {
  const auto prepare = [this] {
    Prepare();
    ASSERT_TRUE(varnik::ActivateLegacyMod(definition_));
  };
  test::SweepKills(Cli({"recover"}), prepare, [this] {
    EXPECT_EQ(test::Run(Cli({"recover"})).exitStatus, 0);
    EXPECT_EQ(Now(), before_);
    EXPECT_FALSE(IsMarked());
  });
}

}  // namespace
