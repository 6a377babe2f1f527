#include "modengine/deactivation.h"

#include "modengine/activation.h"
#include "modengine/crashmarker.h"
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
  const char* what;
  const char* files;  // before, as for Put
  const char* lines;
  const char* after;  // "name=content" for what must be there, "name" for what must be gone
};

const UndoCase kUndo[] = {
    {"lines are undone from the top, not reversed", "c=1", "rename(a,b);\nrename(b,c);", "b=1 a c"},
    {"a rename never replaces", "a=1 b=2", "rename(a,b);", "a=1 b=2"},
    {"a replacement whose activation failed half way", "b=mod orig=own", "replace(b,new,orig);", "new=mod b=own orig"},
    {"the first entry brings the backup back", "bzone.cfg=gen bzonevarnik.bak=own", "fold(x);\npak(y);",
     "bzone.cfg=own bzonevarnik.bak"},
    {"no entry, no configuration", "bzone.cfg=gen bzonevarnik.bak=own", "rename(a,b);",
     "bzone.cfg=gen bzonevarnik.bak=own"},
    {"no backup, nothing to delete", "bzone.cfg=own", "pak(x);", "bzone.cfg=own"},
    {"markers go, patterns and folders stay", "id=1 keep=2 dir/f=3", "writeid(ID);\nwriteid(ke*);\nwriteid(dir);",
     "id keep=2 dir/f=3"},
    {"a list of its own needs RecyList.txt", "own=mod\r\n", "addrecy(mod,x,own);", "own=mod"},
    {"a missing list of its own ends the line", "RecyList.txt=other", "addrecy(other,x,own);", "RecyList.txt=other"},
    {"includes are looked for below the root only", "b=1", "include(shared.inc);", "b=1"},
    {"an include goes on as the same pass", "inner=rename(a,b); b=1", "include(inner);", "a=1 b"},
};

TEST_F(Deactivation, UndoesLineByLine) {
  WriteFile(InMods("shared.inc"), "rename(a,b);");
  for (const UndoCase& c : kUndo) {
    SCOPED_TRACE(c.what);
    std::filesystem::remove_all(sandbox_.Install());
    Put(c.files);
    EXPECT_TRUE(Deactivate(c.lines));
    std::istringstream list(c.after);
    for (std::string want; list >> want;) {
      const std::size_t split = want.find('=');
      const std::string name = want.substr(0, split);
      const bool stays = split != std::string::npos;
      EXPECT_EQ(Content(name), stays ? std::optional(want.substr(split + 1)) : std::nullopt) << name;
    }
  }
}

TEST_F(Deactivation, FiltersListsByTheirFirstWordAndLosesNoLine) {
  WriteFile(InRoot("RecyList.txt"), "mod 1\nMod 2\r\nmodest 3\rmod\r\n mod 4");
  EXPECT_TRUE(Deactivate("addrecy(mod,anything);\naddrecy(x,y,no*);"));
  EXPECT_EQ(Content("RecyList.txt"), "Mod 2\r\nmodest 3\r\nmod\r\n mod 4\r\n");
  std::filesystem::permissions(InRoot("RecyList.txt"), std::filesystem::perms::owner_read);
  EXPECT_TRUE(Deactivate("addrecy(Mod,2);"));
  EXPECT_EQ(Content("RecyList.txt"), "Mod 2\r\nmodest 3\r\nmod\r\n mod 4\r\n");
  EXPECT_FALSE(Content("tmp.recylist"));
}

TEST_F(Deactivation, KeepsMarkerAndBackupsOfAPersistentMod) {
  Store(kBackupSection, "RacenameA", "old");
  Put("RaceName_A.txt=mod inner=activated();");
  SelectedMapIndex = 4;
  for (const char* lines : {"activated();\nfold(x);", "include(inner);"}) {
    SCOPED_TRACE(lines);
    WriteCrashMarker({"root\\", "file"});
    EXPECT_TRUE(Deactivate(lines));
    EXPECT_EQ(ReadCrashMarker().root, "root\\");
  }
  EXPECT_EQ(ReadStored(kBackupSection, "RacenameA"), "old");
  EXPECT_EQ(Content("RaceName_A.txt"), "mod");
  EXPECT_EQ(SelectedMapIndex, -1);
  EXPECT_TRUE(Deactivate("fold(x);\nactivated();"));
  EXPECT_EQ(Content("RaceName_A.txt"), "old\r\n") << "any version restores what the backup holds";
  EXPECT_EQ(ReadCrashMarker().root, "");
}

TEST_F(Deactivation, LeavesAllToAnExeThatCanUndo) {
  Put("tool=x b=1");
  WriteCrashMarker({Root(), "file"});
  EXPECT_FALSE(Deactivate("requireexe(tool,/undo);\nrename(a,b);"));
  EXPECT_EQ(Content("b"), "1");
  EXPECT_EQ(ReadCrashMarker().root, Root());
  EXPECT_TRUE(Deactivate("requireexe(tool);\nrename(a,b);"));
  EXPECT_EQ(Content("a"), "1");
  EXPECT_EQ(ReadCrashMarker().root, "");
}

TEST_F(Deactivation, ResolvesNothingWithNoInstallSelected) {
  Put("tool=x b=1 RaceName_A.txt=mod");
  WriteFile(InRoot("RecyList.txt"), "mod 1\r\n");
  Store(kBackupSection, "RacenameA", "old");
  CurrentInstall = -1;
  EXPECT_TRUE(Deactivate("requireexe(tool,/undo);\nrename(a,b);\naddrecy(mod,1);"));
  EXPECT_EQ(Content("a"), "1");
  EXPECT_EQ(Content("RecyList.txt"), "mod 1\r\n");
  EXPECT_EQ(Content("RaceName_A.txt"), "mod");
  EXPECT_EQ(ReadStored(kBackupSection, "RacenameA", "none"), "none");
}

struct MarkerCase {
  const char* firstLine;
  bool usable;
  bool undone;
};

const MarkerCase kMarkers[] = {
    {"BZ2HALD5", true, true}, {"bz2hald4", true, false}, {"bz2hald5.1", true, false}, {"bz2hal", false, false}};

TEST_F(Deactivation, GoesByTheMarkerOfTheFile) {
  for (const MarkerCase& c : kMarkers) {
    SCOPED_TRACE(c.firstLine);
    std::filesystem::remove(InRoot("a"));
    Put("b=1");
    WriteFile(InRoot("mod.bzm"), std::string(c.firstLine) + "\nrename(a,b);");
    EXPECT_EQ(DeactivateByMarker(Root() + "mod.bzm", Root()), c.usable);
    EXPECT_EQ(Content("a").has_value(), c.undone);
  }
  EXPECT_FALSE(DeactivateByMarker(Root() + "missing.bzm", Root()));
}

}  // namespace
}  // namespace varnik
