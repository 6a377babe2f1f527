#include "modengine/catalogue.h"

#include "definition/directive.h"
#include "tests/modengine/modtest.h"

#include <utility>

namespace varnik {
namespace {

using test::WriteFile;

// A line, its parts, each closed by a bar, and its comment.
const std::pair<const char*, const char*> kLines[] = {
    {"RENAME ( \"a, b.txt\" , c.txt );", "RENAME|a, b.txt|c.txt|none"},
    {"foo();", "foo||none"},
    {"foo()", "foo|)|none"},
    {"foo(", "foo|none"},
    {"foo( //", "foo||"},
    {"foo(a, // b", "foo|a|| b"},
    {"foo(a,,b,\"\",c);", "foo|a|b||c|none"},
    {"foo(\" a \",a\"b,c\"d,\"e, f);", "foo|a|ab,cd|e, f|none"},
    {"fold(x);  ", "fold|x);|none"},
    {"image(\"http://x\");", "image|http:|x\");"},
    {"; rename(a)(b);", "; rename|a)(b|none"},
    {"activated;", "|none"},
    {"foo(a,\t b\t);\t", "foo|a|\t b\t);\t|none"},
};

TEST(ParseDirective, SplitsNameArgumentsAndComment) {
  Args args = {"left", "over", "from", "the", "last"};
  for (const auto& [line, parts] : kLines) {
    std::string read, comment = "none";
    ParseDirective(line, args, comment);
    for (const std::string& argument : args)
      read += argument + "|";
    EXPECT_EQ(read + comment, parts) << line;
  }
}

// The version, which stays -9 where the line is no marker.
const std::pair<const char*, double> kMarkers[] = {
    {"  bz2Hald5 /x ", 5}, {"bz2hald2.5", 2.5}, {"bz2hald-1", -1}, {"bz2haldx", 0},
    {"bz2hald5 5", 5},     {"bz2hald ", -9},    {"xbz2hald5", -9}, {"\tbz2hald5", -9},
};

TEST(ReadMarker, NeedsTheWordAndSomethingBehindIt) {
  for (const auto& [line, expected] : kMarkers) {
    double version = -9;
    EXPECT_EQ(ReadMarker(line, version), expected != -9) << line;
    EXPECT_EQ(version, expected) << line;
  }
}

using Catalogue = test::ModTest;

const std::pair<const char*, const char*> kRows[] = {
    {"dname();\ndname(A);\nDNAME(B);\nsplash(s);\nimage(i);\ndescription(t);\ndescriptionf(text);",
     "A t i s|addon|data"},
    {"descriptionf(shared);", " from-mods|addon|data"},
    {"version(1.0, 1.1 );\nversion(1.0, 1.2 );\nrequirefile(text);\nrequirefolder(FOLDER);", "|addon|data"},
    {"version(1.0);", "none"},
    {"version();", "none"},
    {"requirefile(missing);", "none"},
    {"requirefolder(missing);", "none"},
    {"rename(a,b);\nreplace(c,d,e);\nrenameex(f,g,h);\nrename(a);\nreplace(a,b);", " a>b c>e d>c f>h g>f|addon|data"},
    {"replace(bzone.cfg,own.cfg,keep);", " bzone.cfg>keep own.cfg>bzone.cfg|one|two\\x|@rootdir/three\");x|addon|data"},
    {"replace(BZONE.CFG,own.cfg,keep);", " BZONE.CFG>keep own.cfg>BZONE.CFG|addon|data"},
    {"pak(p);\nactivated();\nfold(data);\nfold(ADDON);", "|data|ADDON|addon"},
    {"descriptionf(text);\nrequireexe(text);\nrename(a,b);\nfold(c);\nactivated();", " words exe|addon|data"},
    {"requireexe(text,/undo);", " exe2|addon|data"},
    {"requireexe(missing);", "none"},
    {"rename(a,b);\nrequireexe(missing);", " a>b|addon|data"},
    {"dname(N);\nactivated();\nactivatedfile(missing);", "N(INACTIVE)|addon|data"},
    {"activatedfile(missing);\nactivated();", "(ACTIVE)|addon|data"},
    {"activated();\nactivatedfile(text);\nactivatedfold(folder);", "(ACTIVE)|addon|data"},
    {"activated();\nactivatedfold(missing);", "(INACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(mine);", "(INACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(min);", "(ACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(mine,mixed);", "(ACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(mine,empty);", "(INACTIVE)|addon|data"},
    {"activated();\nactivatedrecy(mine,missing);", "(ACTIVE)|addon|data"},
    {"include(missing);\ninclude(more);\nactivated();", "More|f|addon|data"},
    {"include(sharedmore);\ninclude(mod.bzm);", "Shared|addon|data"},
    {"include(unfit);\ndname(late);", "none"},
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
  for (const auto& [lines, row] : kRows)
    EXPECT_EQ(RowOf(Define(lines)), row) << lines;
}

TEST_F(Catalogue, ListsTheFirstFileOfANameAndNoOtherVersion) {
  Define("dname(root);", "One.bzm");
  WriteFile(InMods("oNE.bzm"), "bz2hald5 /x\ndname(hidden);");
  WriteFile(InMods("two.bzm"), "bz2hald5 /x\ndname(shared);");
  Put("v4.bzm=bz2hald4 v5.5.bzm=bz2hald5.5 none.bzm=bz2hald empty.bzm= sub/deep.bzm=bz2hald5 replaced.bzm=bz2hald2");
  WriteFile(InMods("REPLACED.bzm"), "");
  LoadModList();
  ASSERT_EQ(ModList.size(), 3u);
  EXPECT_EQ(ModList[1].DefinitionFile, Root() + "One.bzm");
  EXPECT_EQ(ModList[2].Name, "shared");
  EXPECT_TRUE(ModList[2].MarkedX && !ModList[1].MarkedX);
  EXPECT_EQ(FindMod("TWO.BZM"), 2u);
  EXPECT_EQ(FindMod(Root() + "one.bzm"), 1u);
  EXPECT_EQ(FindMod(Root() + "two.bzm"), 0u);
  Put("old.bzm=bz2hald2");
  ShowOldMods = false;
  LoadModList();
  EXPECT_EQ(ModList.size(), 3u);
  ShowOldMods = true;
  bool nested = false;
  OnEvents([&] {
    if (!std::exchange(nested, true)) LoadModList();
  });
  LoadModList();  // leaves the list alone that an event rebuilt
  EXPECT_EQ(ModList.size(), 4u);
}

}  // namespace
}  // namespace varnik
