#include "diagnosis/activationplan.h"

#include "definition/crashmarker.h"
#include "modengine/applymod.h"
#include "platform/system/store/settings.h"
#include "support/settings.h"
#include "tests/harness/difference.h"
#include "tests/modengine/modtest.h"

#include <algorithm>
#include <random>

namespace varnik {
namespace {

using test::Snapshot;
using test::WriteFile;

std::string Written(const std::vector<ActivationStep>& steps) {
  std::string text;
  for (const ActivationStep& step : steps)
    text += std::to_string(step.line) + " " + step.step + " " + step.target + " < " + step.source +
            (step.works ? " yes " : " no ") + step.why + "\n";
  return text;
}

constexpr char kNames[] =
    "a.odf|B.odf|b.ODF|sub\\c.odf|SUB\\d.odf|missing.odf|readonly.odf|none\\x|inner.txt|bzone.cfg|taken.odf|sub|more|"
    "RecyList.txt|..\\game\\a.odf";

// Of the current format and of the older one, with `%` for a name.
const char* const kLines[] = {
    "rename(%,%);|rename(%,%);|rename(%,%);|replace(%,%,%);|replace(%,%,%);|pak(p);|pak(q.pak);|fold(f);|writeid(%);|"
    "addrecy(mine,1);|addrecy(mine,2,%);|include(inner.txt);|include(shared.txt);|include(%);|requireexe(tool,/undo);|"
    "requireexe(%,/undo);|activated();|rename(a.odf);|; comment|text|defaultname(Mine);|defaultpass(p);|"
    "racename(a,New);|racename(c,None);",
    "move @rootdir\\%, @ROOTDIR/%|move @rootdir\\%, @rootdir\\%|replace @rootdir\\%,@ROOTDIR/%|replace @rootdir\\%|"
    "remove @rootdir/%|dynamic|nobzonecfg|dynamic // x|predefined @rootdir\\%|pilots @rootdir\\more|"
    "pilots @rootdir\\none|saved @rootdir\\sub\\|pak p|pak q.PAK|fold @rootdir\\f|exec @rootdir\\tool|"
    "exec @rootdir\\%|; x|"};

class Plan : public test::ModTest {
 protected:
  // One of the choices, between which stands `|`.
  std::string Pick(std::string choices) {
    for (auto skipped = random_() % (1 + std::count(choices.begin(), choices.end(), '|')); skipped > 0; --skipped)
      choices.erase(0, choices.find('|') + 1);
    return choices.substr(0, choices.find('|'));
  }

  std::string Line(bool isLegacy) {
    std::string line = Pick(kLines[isLegacy]);
    for (std::size_t at = 0; (at = line.find('%')) != std::string::npos;)
      line.replace(at, 1, Pick(kNames));
    return line;
  }

  // An install and a definition of chance; the same for the same seed.
  ModEntry Prepare(unsigned seed) {
    random_.seed(seed);
    RemoveCrashMarker();
    Forget(kBackupSection);
    std::filesystem::remove_all(sandbox_.Home() / "state");
    MakeInstall(Pick("1.2|1.3"));
    Put("a.odf=a B.odf=b sub/c.odf=c sub/D.ODF=d taken.odf=t more/x=m addon/gameprefs.ini=[UserPrefs] readonly.odf=r");
    Put("addon/RaceName_A.txt=old saved/s=s " + Pick("RecyList.txt=other|RecyList.txt=mine|b") + " " +
        Pick("bzonevarnik.bak=x|bzonevarnik.cfg=stale|bzone.tmp.old=x|pilots/p=p|tempstuff/1=x|c"));
    std::filesystem::permissions(InRoot("readonly.odf"), std::filesystem::perms::owner_read);
    WriteFile(InRoot("tool"), "#!/bin/sh\n");
    std::filesystem::permissions(InRoot("tool"), std::filesystem::perms::all);
    WriteFile(InRoot("inner.txt"), Line(false) + "\n" + Line(false) + "\n" + Pick("include(inner.txt);|"));
    WriteFile(InMods("shared.txt"), Line(false));
    ModEntry mod;
    mod.Legacy = random_() % 2 == 0;
    lines_ = mod.Legacy ? "BZ2HALD3\ndesc M\n\n\n\n" : "BZ2HALD5\n";
    for (auto count = random_() % 8; count > 0; --count)
      lines_ += Line(mod.Legacy) + "\r\n";
    WriteFile(InRoot("mod.bzm"), lines_);
    mod.DefinitionFile = Root() + "mod.bzm";
    return mod;
  }

  std::mt19937 random_;
  std::string lines_;
};

TEST_F(Plan, TellsWhatAnActivationThenDoes) {
  for (unsigned seed = 1; seed <= 60 && !HasFailure(); ++seed) {
    const ModEntry mod = Prepare(seed);
    SCOPED_TRACE(std::to_string(seed) + " " + lines_);
    const auto before = Snapshot(sandbox_.Install());
    const auto own = Content("bzone.cfg");
    const std::size_t stored = win::AllSettings(kApplication).size();
    const ActivationPlan plan = PlanActivation(mod);
    ASSERT_EQ(Snapshot(sandbox_.Install()), before);
    EXPECT_EQ(win::AllSettings(kApplication).size(), stored);
    const ApplyResult taken = ApplyMod(mod.DefinitionFile, mod.Legacy);
    EXPECT_EQ(taken.active, plan.active);
    EXPECT_EQ(Written(taken.steps), Written(plan.steps));
    EXPECT_EQ(plan.configuration, Content("bzone.cfg") == own ? std::nullopt : Content("bzone.cfg"));
    if (!plan.active) continue;
    const RevertResult reverted = RevertMod(mod.DefinitionFile, Root(), false);
    if (reverted.end == RevertResult::End::kExeTookOver) continue;
    EXPECT_EQ(Written(plan.left), "");
    EXPECT_TRUE(reverted.failed.empty()) << TextOf(reverted.failed[0]);
    EXPECT_EQ(Snapshot(sandbox_.Install()), before);
  }
}

TEST_F(Plan, NamesLinesAndReasons) {
  Put("a=a inner=");
  WriteFile(InRoot("inner"), "\nrename(b,x\\b);");
  ModEntry mod;
  mod.DefinitionFile = Define(
      "activated();\nrename(a,b);\nrename(none,c);\nrename(b,bzone.cfg);\ninclude(inner);\ninclude(gone);\n"
      "addrecy(x,1);");
  EXPECT_EQ(Written(PlanActivation(mod).steps),
            "3 rename b < a yes \n4 rename c < none no there is no such file or folder\n"
            "5 rename bzone.cfg < b no the name is taken\n"
            "6 rename x\\b < b no the folder that it is to lie in is missing, line 2 of inner\n"
            "7 look for gone <  no there is no such file or folder\n8 append RecyList.txt < x 1 yes \n");
}

}  // namespace
}  // namespace varnik
