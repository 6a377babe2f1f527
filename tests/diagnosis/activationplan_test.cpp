#include "diagnosis/activationplan.h"

#include "definition/crashmarker.h"
#include "modengine/listedmod.h"
#include "platform/system/store/settings.h"
#include "support/settings.h"
#include "tests/harness/difference.h"
#include "tests/modengine/modtest.h"

#include <random>

namespace varnik {
namespace {

using test::Snapshot;
using test::WriteFile;

std::string Written(const std::vector<PlanStep>& steps) {
  std::string text;
  for (const PlanStep& step : steps)
    text += std::to_string(step.line) + " " + step.step + " " + step.target + " < " + step.source +
            (step.works ? " yes " : " no ") + step.why + "\n";
  return text;
}

class Plan : public test::ModTest {
 protected:
  std::string Pick(std::initializer_list<const char*> texts) { return texts.begin()[random_() % texts.size()]; }

  std::string Name() {
    return Pick({"a.odf", "B.odf", "b.ODF", "sub\\c.odf", "SUB\\d.odf", "missing.odf", "readonly.odf", "none\\x",
                 "inner.txt", "bzone.cfg", "taken.odf", "sub", "more", "RecyList.txt", "..\\game\\a.odf"});
  }

  std::string CurrentLine() {
    switch (random_() % 14) {
      case 0:
        return "replace(" + Name() + "," + Name() + "," + Name() + ");";
      case 1:
        return Pick({"pak(p);", "pak(q.pak);", "fold(f);"});
      case 2:
        return "writeid(" + Name() + ");";
      case 3:
        return "addrecy(mine,1);";
      case 4:
        return "addrecy(mine,2," + Name() + ");";
      case 5:
        return "include(" + Pick({"inner.txt", "missing.odf", "shared.txt"}) + ");";
      case 6:
        return "requireexe(" + Pick({"tool", "missing.odf", "readonly.odf"}) + ",/undo);";
      case 7:
        return Pick({"activated();", "rename(a.odf);", "; comment", "text"});
      case 8:
        return Pick({"defaultname(Mine);", "defaultpass(p);", "racename(a,New);", "racename(c,None);"});
      default:
        return "rename(" + Name() + "," + Name() + ");";
    }
  }

  std::string Path() { return Pick({"@rootdir\\", "@ROOTDIR/"}) + Name(); }

  std::string LegacyLine() {
    switch (random_() % 12) {
      case 0:
        return Pick({"dynamic", "nobzonecfg", "dynamic // x"});
      case 1:
        return "predefined " + Path();
      case 2:
        return Pick({"pilots @rootdir\\more", "pilots @rootdir\\none", "saved @rootdir\\sub\\"});
      case 3:
        return Pick({"pak p", "pak q.PAK", "fold @rootdir\\f"});
      case 4:
        return "replace " + Path() + "," + Path();
      case 5:
        return "replace " + Path();
      case 6:
        return "remove " + Path();
      case 7:
        return Pick({"exec @rootdir\\tool", "exec @rootdir\\missing.odf", "; x", ""});
      default:
        return "move " + Path() + ", " + Path();
    }
  }

  // An install and a definition of chance; the same for the same seed.
  ModEntry Prepare(unsigned seed) {
    random_.seed(seed);
    RemoveCrashMarker();
    Forget(kBackupSection);
    MakeInstall(Pick({"1.2", "1.3"}));
    Put("a.odf=a B.odf=b sub/c.odf=c sub/D.ODF=d taken.odf=t more/x=m addon/gameprefs.ini=[UserPrefs] readonly.odf=r");
    Put("addon/RaceName_A.txt=old saved/s=s " + Pick({"RecyList.txt=other", "RecyList.txt=mine", "b"}) + " " +
        Pick({"bzonevarnik.bak=x", "bzonevarnik.cfg=stale", "bzone.tmp.old=x", "pilots/p=p", "tempstuff/1=x", "c"}));
    std::filesystem::permissions(InRoot("readonly.odf"), std::filesystem::perms::owner_read);
    WriteFile(InRoot("tool"), "#!/bin/sh\n");
    std::filesystem::permissions(InRoot("tool"), std::filesystem::perms::all);
    WriteFile(InRoot("inner.txt"), CurrentLine() + "\n" + CurrentLine() + "\n" + Pick({"include(inner.txt);", ""}));
    WriteFile(InMods("shared.txt"), CurrentLine());
    ModEntry mod;
    mod.Legacy = random_() % 2 == 0;
    std::string lines;
    for (auto count = random_() % 8; count > 0; --count)
      lines += (mod.Legacy ? LegacyLine() : CurrentLine()) + "\r\n";
    SCOPED_TRACE(lines);
    mod.DefinitionFile = mod.Legacy ? DefineText("BZ2HALD2\n" + lines) : Define(lines);
    lines_ = lines;
    return mod;
  }

  std::string DefineText(const std::string& content) {
    WriteFile(InRoot("mod.bzm"), content);
    return Root() + "mod.bzm";
  }

  std::mt19937 random_;
  std::string lines_;
};

std::vector<PlanStep> StepsOfActivation(const ModEntry& mod, bool& active) {
  PlanSteps steps;
  {
    const win::DeedWatch watch([&](const win::Deed& deed) { steps.Take(deed); });
    active = ActivateListedMod(mod);
  }
  return steps.All();
}

std::size_t CountStored() {
  return win::AllSettings(kApplication).size();
}

TEST_F(Plan, TellsWhatAnActivationThenDoes) {
  for (unsigned seed = 1; seed <= 60 && !HasFailure(); ++seed) {
    const ModEntry mod = Prepare(seed);
    SCOPED_TRACE(std::to_string(seed) + " " + lines_);
    const auto before = Snapshot(sandbox_.Install());
    const std::size_t stored = CountStored();
    const ActivationPlan plan = PlanActivation(mod);
    ASSERT_EQ(Snapshot(sandbox_.Install()), before);
    EXPECT_EQ(CountStored(), stored);
    bool active = false;
    EXPECT_EQ(Written(plan.steps), Written(StepsOfActivation(mod, active)));
    EXPECT_EQ(plan.active, active);
    const auto own = before.find("bzone.cfg");
    const bool isChanged = Content("bzone.cfg") != (own == before.end() ? std::nullopt : std::optional(own->second));
    EXPECT_EQ(plan.configuration, isChanged ? Content("bzone.cfg") : std::nullopt);
    if (active) DeactivateListedMod(mod);
    std::set<std::string> told;
    for (const PlanStep& step : plan.left)
      told.insert(step.target);
    const auto names = test::NamesThatDiffer(before, Snapshot(sandbox_.Install()));
    EXPECT_TRUE(test::AreTold(names, told)) << testing::PrintToString(names) << testing::PrintToString(told);
  }
}

struct StepCase {
  const char* lines;
  const char* steps;
};

const StepCase kSteps[] = {
    {"activated();\nrename(a,b);\nrename(none,c);\nrename(b,bzone.cfg);",
     "3 rename b < a yes \n4 rename c < none no there is no such file or folder\n"
     "5 rename bzone.cfg < b no the name is taken\n"},
    {"\ninclude(none);\nrequireexe(none);\nactivated();\naddrecy(x,1);",
     "3 look for none <  no there is no such file or folder\n4 look for none <  no there is no such file or folder\n"
     "6 append RecyList.txt < x 1 yes \n"},
    {"activated();\ninclude(inner);",
     "3 rename x\\a < a no the folder that it is to lie in is missing, line 2 of inner\n"},
    {"activated();\npak(p);\nfold(f);",
     "3 write bzonevarnik.cfg < AddPack(\"@rootdir\\p.pak\"); yes \n"
     "4 append bzonevarnik.cfg < AddDirRecurse(\"@rootdir\\f\"); yes \n0 append bzonevarnik.cfg <  yes \n"
     "0 rename bzonevarnik.bak < bzone.cfg yes \n0 rename bzone.cfg < bzonevarnik.cfg yes \n"},
};

TEST_F(Plan, NamesLinesAndReasons) {
  Put("a=a inner=");
  WriteFile(InRoot("inner"), "\nrename(a,x\\a);");
  for (const StepCase& c : kSteps) {
    ModEntry mod;
    mod.DefinitionFile = Define(c.lines);
    EXPECT_EQ(Written(PlanActivation(mod).steps), c.steps) << c.lines;
  }
}

}  // namespace
}  // namespace varnik
