#include "modengine/catalogue.h"

#include "definition/directive.h"
#include "tests/harness/cases.h"
#include "tests/modengine/modtest.h"

#include <utility>

namespace varnik {
namespace {

using test::WriteFile;

TEST(ParseDirective, SplitsNameArgumentsAndComment) {
  Args args = {"left", "over", "from", "the", "last"};
  for (const test::Case& c : test::Cases("modengine/directives.jsonl")) {
    std::string comment = "none";
    ParseDirective(c.at("line").get<std::string>(), args, comment);
    EXPECT_EQ(test::Case(args), c.at("parts")) << c;
    EXPECT_EQ(comment, c.value("comment", "none")) << c;
  }
}

TEST(ReadMarker, NeedsTheWordAndSomethingBehindIt) {
  for (const test::Case& c : test::Cases("modengine/markers.jsonl")) {
    double version = -9;
    EXPECT_EQ(ReadMarker(c.at("line").get<std::string>(), version), c.contains("version")) << c;
    EXPECT_EQ(version, c.value("version", -9.0)) << c;
  }
}

using Catalogue = test::ModTest;

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
  for (const test::Case& c : test::Cases("modengine/definitions.jsonl"))
    EXPECT_EQ(RowOf(Define(c.at("lines"))), c.at("row")) << c;
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
