#include "modengine/catalogue.h"

#include "tests/modengine/modtest.h"

#include <ctime>
#include <utility>

namespace varnik {
namespace {

using test::WriteFile;

class Catalogue : public test::ModTest {
 protected:
  // The one row that a definition gives, in short: only what differs from a plain mod's row; "none" without a row.
  std::string RowOf(const std::string& lines) {
    ClearModList();
    LoadModFile(Define(lines));
    if (!ModListFilled) return "none";
    const ModEntry& mod = ModList[1];
    std::string row = ModRowText(mod);
    if (!mod.Description.empty()) row += " d:" + mod.Description;
    if (!mod.Image.empty()) row += " i:" + mod.Image;
    if (!mod.Splash.empty()) row += " s:" + mod.Splash;
    if (!mod.Standard) row += mod.ExeDeactivates ? " exe2" : " exe";
    for (std::size_t i = 1; i < mod.Renames.size(); ++i)
      row += " " + mod.Renames[i].From + ">" + mod.Renames[i].To;
    for (std::size_t i = 1; i < mod.Folders.size(); ++i)
      row += "|" + mod.Folders[i];
    return row;
  }
};

struct RowCase {
  const char* lines;
  const char* row;
};

const RowCase kRows[] = {
    {"", "|addon|data"},
    {"dname();\ndname(A);\nDNAME(B);\nsplash(s);\nimage(i);\ndescription(t);\ndescriptionf(text);",
     "A d:t i:i s:s|addon|data"},
    {"descriptionf(text);", " d:words|addon|data"},
    {"descriptionf(shared);", " d:from-mods|addon|data"},
    {"version(1.0, 1.2 );", "|addon|data"},
    {"version(1.0);\nversion(1.2);", "|addon|data"},
    {"version(1.0);", "none"},
    {"version();", "none"},
    {"requirefile(text);\nrequirefolder(FOLDER);", "|addon|data"},
    {"requirefile(missing);", "none"},
    {"requirefolder(missing);", "none"},
    {"rename(a,b);\nreplace(c,d,e);\nrenameex(f,g,h);\nrename(a);\nreplace(a,b);", " a>b c>e d>c f>h g>f|addon|data"},
    {"replace(bzone.cfg,own.cfg,keep);", " bzone.cfg>keep own.cfg>bzone.cfg|one|two\\x|@rootdir/three\");x|addon|data"},
    {"replace(BZONE.CFG,own.cfg,keep);", " BZONE.CFG>keep own.cfg>BZONE.CFG|addon|data"},
    {"fold(data);\nfold(ADDON);\npak(p);", "|data|ADDON|addon"},
    {"requireexe(text);\nrename(a,b);\nfold(c);\nactivated();", " exe|addon|data"},
    {"requireexe(text,/undo);", " exe2|addon|data"},
    {"requireexe(missing);", "none"},
    {"rename(a,b);\nrequireexe(missing);", " a>b|addon|data"},
    {"activated();", "(ACTIVE)|addon|data"},
    {"fold(a);\nactivated();", "|a|addon|data"},
    {"dname(N);\nactivated();\nactivatedfile(missing);", "N(INACTIVE)|addon|data"},
    {"activatedfile(missing);\nactivated();", "(ACTIVE)|addon|data"},
    {"activated();\nactivatedfile(text);\nactivatedfold(folder);", "(ACTIVE)|addon|data"},
    {"activated();\nactivatedfold(missing);", "(INACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(mine);", "(INACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(other);", "(ACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(min);", "(ACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(mine,mixed);", "(ACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(mine,empty);", "(INACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(mine,missing);", "(ACTIVE)|addon|data"},
    {"include(more);\nactivated();", "More|f|addon|data"},
    {"include(sharedmore);", "Shared|addon|data"},
    {"include(unfit);\ndname(late);", "none"},
    {"include(missing);\ndname(A);", "A|addon|data"},
    // What cannot be read ends the pass and keeps the row, whatever the tests before it came to.
    {"dname(A);\nversion(1.0);\ndescriptionf(folder);\ndname(B);\nrequirefile(missing);", "A|addon|data"},
    {"include(abandons);\nrequirefile(missing);", "Inner|addon|data"},
    {"include();\nrequirefile(missing);", "|addon|data"},
};

TEST_F(Catalogue, ReadsEachDirective) {
  Put("text=words folder/f=x empty= unfit=requirefile(missing);");
  WriteFile(InRoot("RecyList.txt"), "mine a\r\nmine b\r\n");
  WriteFile(InRoot("mixed"), "mine a\r\nmineral b\r\n");
  WriteFile(InRoot("more"), "dname(More);\nfold(f);\n");
  WriteFile(InRoot("abandons"), "dname(Inner);\ninclude(folder);\n");
  WriteFile(InMods("shared"), "from-mods");
  WriteFile(InMods("sharedmore"), "dname(Shared);");
  WriteFile(InRoot("own.cfg"),
            " AddDirRecurse(\"one\"); // x\nadddirrecurse(\"@ROOTDIR\\two\\x\");\nAddPack(\"p\");\n"
            "//AddDirRecurse(\"no\");\nAddDirRecurse(\"@rootdir/three\");x\n");
  for (const RowCase& c : kRows) {
    SCOPED_TRACE(c.lines);
    EXPECT_EQ(RowOf(c.lines), c.row);
  }
}

TEST_F(Catalogue, ListsTheFirstFileOfANameAndNoOtherVersion) {
  Define("dname(root);", "One.bzm");
  WriteFile(InMods("oNE.bzm"), "bz2hald5 /x\ndname(hidden);");
  WriteFile(InMods("two.bzm"), "bz2hald5 /x\ndname(shared);");
  Put("v4.bzm=bz2hald4 v5.5.bzm=bz2hald5.5 none.bzm=bz2hald text.bzm=text empty.bzm= sub/deep.bzm=bz2hald5");
  Put("replaced.bzm=bz2hald2");
  WriteFile(InMods("REPLACED.bzm"), "");
  LoadModList();
  ASSERT_EQ(ModList.size(), 3u);
  EXPECT_EQ(ModList[1].DefinitionFile, Root() + "One.bzm");
  EXPECT_FALSE(ModList[1].MarkedX);
  EXPECT_EQ(ModList[2].Name, "shared");
  EXPECT_TRUE(ModList[2].MarkedX);
  EXPECT_EQ(FindMod("TWO.BZM"), 2u);
  EXPECT_EQ(FindMod(Root() + "one.bzm"), 1u);
  EXPECT_EQ(FindMod(Root() + "two.bzm"), 0u);
  Put("old.bzm=bz2hald2");
  LoadModList();
  EXPECT_EQ(ModList.size(), 4u);
  ShowOldMods = false;
  LoadModList();
  EXPECT_EQ(ModList.size(), 3u);
  ShowOldMods = true;
}

TEST_F(Catalogue, AListThatAnEventRebuiltIsLeftAlone) {
  Put("old.bzm=bz2hald2");
  bool nested = false;
  win::SetWindowServices({[&] {
                            if (!std::exchange(nested, true)) LoadModList();
                          },
                          {},
                          {}});
  LoadModList();
  EXPECT_EQ(ModList.size(), 2u);
}

TEST_F(Catalogue, SelectingAModSetsTheFoldersAndRenamesInUse) {
  LoadModFile(Define("rename(a,b);\nfold(x);"));
  SelectedMapIndex = 3;
  SelectModFolders(1);
  EXPECT_EQ(SearchDirs, (std::vector<std::string>{"", "x", "addon", "data"}));
  EXPECT_TRUE(ModRenamesActive);
  EXPECT_EQ(SelectedMapIndex, -1);
  SelectModFolders(-1);
  EXPECT_EQ(SearchDirs, (std::vector<std::string>{"", "addon", "data"}));
  EXPECT_FALSE(ModRenamesActive);
  MakeInstall("1.3");
  EXPECT_EQ(SearchDirs, (std::vector<std::string>{"", "addon"}));
}

TEST_F(Catalogue, ReadsHostileFilesInBoundedTime) {
  const std::clock_t start = std::clock();
  const std::string twice = "include(mod.bzm);\ninclude(mod.bzm);\ndname(" + std::string(100'000, ',') + "A);";
  EXPECT_EQ(RowOf(twice), "A|addon|data");
  std::string bytes;
  for (unsigned i = 0, seed = 1; i < 5'000'000; ++i)
    bytes += static_cast<char>((seed = seed * 1664525 + 1013904223) >> 24);
  EXPECT_EQ(RowOf(bytes + "\ndname(B);").substr(0, 1), "B");
  EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC);  // of processor time, however busy the machine
}

}  // namespace
}  // namespace varnik
