#include "modengine/deactivation.h"

#include "definition/crashmarker.h"
#include "modengine/activation.h"
#include "support/install.h"
#include "support/settings.h"
#include "tests/modengine/modtest.h"

namespace varnik {
namespace {

using test::WriteFile;

class Deactivation : public test::ModTest {
 protected:
  bool Deactivate(const std::string& lines) { return DeactivateMod(Define(lines), Root()); }
};

constexpr char kEveryDirective[] =
    "dname(All);\ndescription(d);\ninclude(more.inc);\nrename(a,hidden/a);\nreplace(b,new/b,b.orig);\n"
    "RenameEx(dir,new/dir,dir.orig);\npak(p);\nfold(new);\ndefaultname(Mod);\ndefaultpass(Mod);\ndefaultsmsg(Mod);\n"
    "racename(a,Mod);\nwriteid(id);\naddrecy(mod,line);\naddrecy(mod,line,list.txt);\n";

TEST_F(Deactivation, BringsBackEveryByteOfTheInstall) {
  MakeInstall("1.3");
  Put("a=a hidden/x=x b=b new/b=modded dir/f=f new/dir/f=modded inc=i "
      "RaceName_A.txt=player more.inc=rename(inc,inc.off);");
  WriteFile(InRoot("list.txt"), "own\r\n");
  WriteFile(InRoot("RecyList.txt"), "first 1\r\nmodest 2\r\n");
  WriteFile(InRoot("gameprefs.ini"),
            "[UserPrefs]\r\nDefaultSessionName=Mine\r\nDefaultPassword=\r\nDefaultMessage=m\r\n");
  const std::string mod = Define(kEveryDirective);
  auto before = test::Snapshot(sandbox_.Install());
  ASSERT_TRUE(ActivateMod(mod));
  EXPECT_EQ(Content("b"), "modded");
  EXPECT_EQ(Content("dir.orig/f"), "f");
  EXPECT_EQ(Content("inc.off"), "i");
  EXPECT_EQ(Content("RecyList.txt"), "first 1\r\nmodest 2\r\nmod line\r\n");
  ASSERT_TRUE(DeactivateMod(mod, Root()));
  // Two values stay one-sided: a default that was empty keeps the mod's, and a race name file grows by one line end.
  before["gameprefs.ini"] = "[UserPrefs]\r\nDefaultSessionName=Mine\r\nDefaultPassword=Mod\r\nDefaultMessage=m\r\n";
  before["RaceName_A.txt"] = "player\r\n";
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
  EXPECT_EQ(ReadCrashMarker().root + ReadCrashMarker().definitionFile, "");
  EXPECT_EQ(ReadStored(kBackupSection, "RacenameA", "none"), "none");
  EXPECT_TRUE(DeactivateMod(mod, Root()));
  EXPECT_EQ(test::Snapshot(sandbox_.Install()), before);
}

struct UndoCase {
  const char* files;  // as for Put
  const char* lines;
  const char* after;
};

const UndoCase kUndo[] = {
    {"c=1", "rename(a,b);\nrename(b,c);", "a b=1 c"},  // from the top, not reversed
    {"b=mod orig=own", "replace(b,new,orig);", "new=mod b=own orig"},
    {"bzone.cfg=gen bzonevarnik.bak=own", "fold(x);\npak(y);", "bzone.cfg=own bzonevarnik.bak"},
    {"bzone.cfg=gen bzonevarnik.bak=own", "rename(a,b);", "bzone.cfg=gen bzonevarnik.bak=own"},
    {"bzone.cfg=own", "pak(x);", "bzone.cfg=own"},
    {"id=1 keep=2 dir/f=3", "writeid(ID);\nwriteid(ke*);\nwriteid(dir);", "id keep=2 dir/f=3"},
    {"own=mod", "addrecy(mod,x,own);", "own=mod RecyList.txt"},  // needs RecyList.txt, too
    {"RecyList.txt=other", "addrecy(other,x,own);", "RecyList.txt=other"},
    {"b=1", "include(shared.inc);", "a b=1"},  // not looked for in the mods folder
    {"inner=rename(a,b); b=1", "include(inner);", "a=1 b"},
};

TEST_F(Deactivation, UndoesLineByLine) {
  WriteFile(InMods("shared.inc"), "rename(a,b);");
  for (const UndoCase& c : kUndo) {
    SCOPED_TRACE(c.lines);
    MakeInstall("1.2");
    Put(c.files);
    EXPECT_TRUE(Deactivate(c.lines));
    Expect(c.after);
  }
}

TEST_F(Deactivation, FiltersListsByTheirFirstWordAndLosesNoLine) {
  WriteFile(InRoot("RecyList.txt"), "mod 1\nMod 2\r\nmodest 3\rmod\r\n mod 4");
  const std::string kept = "Mod 2\r\nmodest 3\r\nmod\r\n mod 4\r\n";
  EXPECT_TRUE(Deactivate("addrecy(mod,anything);\naddrecy(x,y,no*);"));
  EXPECT_EQ(Content("RecyList.txt"), kept);
  std::filesystem::permissions(InRoot("RecyList.txt"), std::filesystem::perms::owner_read);
  EXPECT_TRUE(Deactivate("addrecy(Mod,2);"));
  EXPECT_EQ(Content("RecyList.txt"), kept);
  Expect("tmp.recylist");
}

TEST_F(Deactivation, KeepsMarkerAndBackupsOfAPersistentMod) {
  Store(kBackupSection, "RacenameA", "old");
  Put("RaceName_A.txt=mod inner=activated();");
  WriteCrashMarker({Root(), "file"});
  SelectedMapIndex = 4;
  for (const char* lines : {"activated();\nfold(x);", "include(inner);"}) {
    EXPECT_TRUE(Deactivate(lines));
    EXPECT_EQ(ReadCrashMarker().root, Root()) << lines;
  }
  EXPECT_EQ(ReadStored(kBackupSection, "RacenameA"), "old");
  Expect("RaceName_A.txt=mod");
  EXPECT_EQ(SelectedMapIndex, -1);
  EXPECT_TRUE(Deactivate("fold(x);\nactivated();"));
  EXPECT_EQ(Content("RaceName_A.txt"), "old\r\n");  // in any version of the game
  EXPECT_EQ(ReadCrashMarker().root, "");
}

TEST_F(Deactivation, LeavesAllToAnExeThatCanUndo) {
  Put("tool=x b=1");
  WriteCrashMarker({Root(), "file"});
  EXPECT_FALSE(Deactivate("requireexe(tool,/undo);\nrename(a,b);"));
  Expect("a b=1");
  EXPECT_EQ(ReadCrashMarker().root, Root());
  EXPECT_TRUE(Deactivate("requireexe(tool);\nrename(a,b);"));
  Expect("a=1 b");
  EXPECT_EQ(ReadCrashMarker().root, "");
}

TEST_F(Deactivation, ResolvesNothingWithNoInstallSelected) {
  Put("tool=x b=1 RaceName_A.txt=mod RecyList.txt=mod");
  Store(kBackupSection, "RacenameA", "old");
  SelectInstall(-1);
  EXPECT_TRUE(Deactivate("requireexe(tool,/undo);\nrename(a,b);\naddrecy(mod,1);"));
  Expect("a=1 RaceName_A.txt=mod RecyList.txt=mod");
  EXPECT_EQ(ReadStored(kBackupSection, "RacenameA", "none"), "none");
}

}  // namespace
}  // namespace varnik
