#include "diagnosis/doctor.h"

#include "definition/crashmarker.h"
#include "modengine/activation.h"
#include "support/settings.h"
#include "tests/harness/cases.h"
#include "tests/modengine/modtest.h"

namespace varnik {
namespace {

class Doctor : public test::ModTest {
 protected:
  // Items in order, `+` behind one that can be mended.
  static std::string Found() {
    std::string found;
    for (const Leftover& leaving : FindLeftovers())
      found += leaving.item + (leaving.mend ? "+ " : " ");
    return found;
  }

  static void MendAll() {
    for (const Leftover& leaving : FindLeftovers())
      EXPECT_EQ(Mend(leaving), leaving.mend != nullptr) << leaving.item;
  }
};

TEST_F(Doctor, KnowsWhatIsLeftAndMendsWhatIsSafe) {
  for (const test::Case& c : test::Cases("diagnosis/cases/leftovers.jsonl")) {
    SCOPED_TRACE(c.dump());
    MakeInstall("1.2");
    Put(c["files"]);
    const auto before = test::Snapshot(sandbox_.Install());
    EXPECT_EQ(Found(), c["found"]);
    EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
    MendAll();
    Expect(c["mended"]);
  }
}

TEST_F(Doctor, FinishesAnInterruptedRunWithThePlayersValues) {
  MakeInstall("1.3");
  Put("a=a");
  test::WriteFile(InRoot("addon/gameprefs.ini"), "[UserPrefs]\r\nDefaultSessionName=Mine\r\n");
  const auto before = test::Snapshot(sandbox_.Install());
  ASSERT_TRUE(ActivateMod(Define("rename(a,b);\npak(p);\ndefaultname(Theirs);")));
  EXPECT_EQ(Found(), "Crash+ ");
  Expect("b=a");
  MendAll();
  EXPECT_EQ(Found(), "");
  for (const auto& [name, content] : before)
    EXPECT_EQ(test::Snapshot(sandbox_.Install())[name], content) << name;
  EXPECT_NE(Content("bzone.cfg.kept-1").value_or("").find("p.pak"), std::string::npos);
}

TEST_F(Doctor, LeavesWhatItCannotKnowToAPerson) {
  Put("on=x");
  ASSERT_TRUE(ActivateMod(Define("activated();\nrename(on,off);\npak(p);")));
  EXPECT_EQ(Found(), "");  // the mod stays active
  Put("mod.bzm");
  EXPECT_EQ(Found(), "bzonevarnik.bak+ ");
  MakeInstall("1.2");
  Put("a=a");
  const std::string definition = Define("rename(a,b);\npak(p);");
  ASSERT_TRUE(ActivateMod(definition));
  Put("mod.bzm=bz2hald4");
  EXPECT_EQ(Found(), "Crash bzonevarnik.bak+ ");
  WriteCrashMarker({sandbox_.Home().string() + "\\", definition});
  EXPECT_EQ(Found(), "Crash bzonevarnik.bak+ ");
  WriteCrashMarker({Root(), ""});
  EXPECT_EQ(Found(), "Crash+ bzonevarnik.bak+ ");
  MendAll();
  EXPECT_EQ(Found(), "");
  Expect("b=a");
}

TEST_F(Doctor, PutsKeptValuesBackWhereTheyAreFromForCertain) {
  const std::string kept = "DefaultSessionName";
  Store(kBackupSection, kept, "Mine");
  EXPECT_EQ(Found(), "Backup ");
  test::WriteFile(InRoot("gameprefs.ini"), "[UserPrefs]\r\nDefaultSessionName=Theirs\r\n");
  Store(kInstallsSection, "BZ2Loc0", Root());
  EXPECT_EQ(Found(), "Backup+ ");
  MendAll();
  EXPECT_EQ(Content("gameprefs.ini"), "[UserPrefs]\r\nDefaultSessionName=Mine\r\n");
  EXPECT_EQ(Content("gameprefs.ini.kept-1"), "[UserPrefs]\r\nDefaultSessionName=Theirs\r\n");
  EXPECT_EQ(ReadStored(kBackupSection, kept), "");
}

}  // namespace
}  // namespace varnik
