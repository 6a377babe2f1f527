#include "diagnosis/check.h"

#include "definition/passdirective.h"
#include "legacy/legacyactivation.h"
#include "legacy/legacyformat.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/definitionreader.h"
#include "support/install.h"
#include "tests/modengine/modtest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

using namespace varnik;
using test::WriteFile;

struct Case {
  const char* lines;     // from line 2 of a definition
  const char* findings;  // each code@line
  const char* files = "";
  const char* version = "1.3";  // of the install
};

class Check : public test::ModTest {
 protected:
  static std::string Codes(const std::string& path) {
    std::string codes;
    const auto report = CheckDefinition(path);
    for (const Finding& finding : report.value().findings)
      codes +=
          (codes.empty() ? "" : " ") + std::string(KindOf(finding.problem).code) + "@" + std::to_string(finding.line);
    return codes;
  }

  std::string CodesOf(const std::string& content, const std::string& name = "mod.bzm") {
    WriteFile(InRoot(name), content);
    return Codes(Root() + name);
  }

  template <std::size_t N>
  void ExpectAll(const Case (&cases)[N], const std::string& head, const std::string& foot = "") {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.lines);
      if (CurrentInstall >= 0) MakeInstall(c.version);
      WriteFile(InRoot("RecyList.txt"), "B\n");
      WriteFile(InRoot("full.txt"), "Ax\nA Other\n");
      WriteFile(InRoot("gameprefs.ini"), "[UserPrefs]\nDefaultSessionName=y\n");
      WriteFile(InRoot("a.inc"), "BZ2HALD5\nrenmae(a,b);\ninclude(b.inc);");
      Put("open.txt=B b.inc= c.inc=version(1.0); d.inc=activated(); " + std::string(c.files));
      EXPECT_EQ(CodesOf(head + c.lines + foot), c.findings);
    }
  }
};

const Case kMarkers[] = {
    {"\xEF\xBB\xBF"
     "BZ2HALD5\ndname(M);",
     "no-marker@1"},
    {"bz2hald\n", "no-marker@1"},
    {"BZ2HALD4\ndname(M);", "unknown-version@1"},
    {"BZ2HALD0\ndesc M", "unknown-version@1"},
    {"  bz2hald5.0 /x\ndname(M);", ""},
    {"BZ2HALD5 /X\ndname(M);", "marker-text@1"},
    {"BZ2HALD5 // my mod", "no-name@1"},
};

const Case kLines[] = {
    {"rename ( \"a, b\" , c ); // note\n; x\n// x(y\n\t\nversion(1.0, 1.1, 1.2, 1.3);\naddrecy(A, B, c);", ""},
    {"rename(f\\a,g\\a);\nrename(f\\b,g\\b);\ndescription(\"use f(); well\");", ""},
    {"some words\nRename a, b\nrenmae(a,b);\nmove(a,b);\nDefaultMSG(x);\nSetDirectory(a,b);",
     "no-directive@2 unknown-directive@3 unknown-directive@4 unknown-directive@5 unknown-directive@6 "
     "ignored-directive@7"},
    {"\trename(a,b);\nrename(c,\td);", "tab@2 tab@3"},
    {"rename(a);\ndescription(a, b);\nfold();\nrename(a,);\nrename(,a,b);\nrename(c,,d);",
     "too-few-arguments@2 surplus-arguments@3 empty-argument@4 empty-argument@5 skipped-argument@6 "
     "skipped-argument@7"},
    {"rename(a,b\nrename(c,d)\nrename(e,f);  \nrename(g,h);\t// note\nrename(i,j); ; note",
     "not-closed@2 close-in-argument@3 trailing-blanks@4 trailing-blanks@5 text-behind-close@6"},
    {"rename(a,b); rename(c,d);\nrename(e,\"f);", "text-behind-close@2 surplus-arguments@2 open-quote@3"},
    {"fold(see http://x.org);\ndescription(\"see http://x.org, or so\");",
     "comment-in-argument@2 comment-in-argument@3"},
    {"rename(@rootdir\\a,b);\nrename(C:\\a,b);\nrename(..\\a,b..c);", "bad-path@2 bad-path@3 outside-install@4"},
    {"rename(*.odf,b);\nwriteid(*.id);\nrename(a,A);\nreplace(Bzone.cfg,c,d);",
     "wildcard@2 wildcard@3 same-name@4 letter-case@5"},
    {"pak(A.PAK);\nracename(1st,X);\nracename(Fox,X);\nracename(f,Y);\nracename(g,Z);",
     "letter-case@2 racename-letter@3 racename-word@4 counts-once@5"},
    {"description(x);\ndescriptionf(y);\nimage(a);\nimage(b);", "counts-once@3 counts-once@5"},
    {"activated();\nactivatedfile(a);", ""},
    {"activated();\nactivated();", "no-active-test@2 counts-once@3"},
    {"rename(a,b);\nactivated();\nactivatedfile(b);", "activated-too-late@3 active-test-too-early@4"},
    {"rename(a);\nactivated();\nactivatedfile(b);", "too-few-arguments@2"},
    {"defaultname(x);\nactivated();\nactivatedrecy(A);", "persistent-session@2"},
    {"requireexe(a.exe, /undo);", ""},
    {"requireexe(a.exe);\nimage(x);", "not-undone@2"},
    {"fold(x);\nrequireexe(a.exe, /undo);", "exe-too-late@3"},
    {"requireexe(a.exe, /u);\nwriteid(x);\nrename(a,b);", "after-exe@3 after-exe@4"},
    {"rename(a,b);\nrename(B,c);", "undo-order@3"},
    {"rename(f/a,b);\nrename(c,f);", "undo-order@3"},
    {"rename(f,g);\nrename(a,f\\\\b);", "undo-order@3"},
    {"replace(bzone.cfg,a,b);\npak(c);\nfold(d);", "two-configurations@3"},
    {"fold(d);\nrename(bzone.cfg,a);", "two-configurations@3"},
};

const Case kInstalls[] = {
    {"version(1.2, 1.1);\nrequirefile(a);\nrequirefolder(b);\nrequireexe(c, d);",
     "does-not-fit@2 does-not-fit@3 does-not-fit@4 does-not-fit@5"},
    {"version(1.2);\nversion(1.3);\nrename(a,b);\npak(c);\nfold(addon);", "", "a=1 c.pak=1"},
    {"image(a.bmp);\nrename(a,b);\npak(c);\nfold(d);", "missing-extra@2 missing-file@3 missing-file@4 missing-file@5"},
    {"fold(b);\nrename(addon,b);", ""},
    {"rename(a,b);", "target-exists@2", "a=1 b=1"},
    {"rename(a,nowhere\\b);\nreplace(c,d,e);", "missing-file@2 missing-extra@3", "a=1 d=1"},
    {"replace(a,b,c);", "missing-file@2 target-exists@2", "a=1 c=1"},
    {"fold(addon);", "twin-names@2 target-exists@2", "bzonevarnik.bak=1 bzone.cfg=1 BZONE.CFG=2"},
    {"requirefile(ADDON\\a);\nrequirefile(x/a);\nimage(x/b);", "other-case@2 twin-names@3",
     "addon/a=1 x/a=1 x/b=1 X/a=2"},
    {"", "twin-names@1", "MOD.bzm=1"},
    {"writeid(a);\nracename(b, x);", "undo-takes-more@2 missing-extra@3", "a=1 RaceName_A.txt=x"},
    {"addrecy(A, T);\naddrecy(A, T, open.txt);\naddrecy(A, T, full.txt);\naddrecy(A, T, none);",
     "not-undone@3 undo-takes-more@4 not-undone@5"},
    {"addrecy(A, T);\naddrecy(A, T, full.txt);", "not-undone@2 not-undone@3", "RecyList.txt"},
    {"defaultname(x);\ndefaultpass(x);", "not-undone@3"},
    {"defaultname(x);", "missing-extra@2", "gameprefs.ini"},
    {"defaultpass(x);\nracename(A,b);", "needs-1.3@2", "", "1.2"},
    {"activated();\nactivatedfile(b);\nrename(a,b);", "", "b=1"},  // active: what it needs has gone
    {"activated();\nactivatedfile(b);\nrename(a,b);", "missing-file@4"},
    {"include(none);\ninclude(mod.bzm);\ninclude(addon);", "include-missing@2 include-circular@3 include-unreadable@4"},
    {"include(shared.inc);\ninclude(a.inc);\ninclude(b.inc);\ninclude(c.inc);",
     "not-undone@2 unknown-directive@3 include-again@4 does-not-fit@5"},
    {"include(d.inc);\nactivatedfile(b);", "activated-in-include@2"},
};

const Case kLegacy[] = {
    {"desc M\n\n\n\ndynamic\npak @rootdir\\a\nreplace @rootdir/a, @rootdir/b // note\n; note", ""},
    {"", "no-desc-line@1"},
    {"desc M\ntext\n\nsplashimg x", "header-line@3 header-line@5"},
    {"desc M\n\n\n\nrename(a,b);\nmvoe a,b\ntext\nsplashimg a",
     "unknown-directive@6 unknown-directive@7 no-directive@8 header-line@9"},
    {"desc M\n\n\n\nmove @rootdir\\a\nmove @rootdir\\a,@rootdir\\b,c\nremove\nremove\tx",
     "too-few-arguments@6 surplus-arguments@7 too-few-arguments@8 tab@9"},
    {"desc M\n\n\n\nmove a,@rootdir\\b\nremove \"@rootdir\\x\"\nremove @rootdir",
     "relative-path@6 quotes-kept@7 relative-path@7 bad-path@8"},
    {"desc M\n\n\n\nfold a\nDynamics\npredefined a\npilots @rootdir\\a\npilots @rootdir\\b",
     "needs-dynamic@6 glued-keyword@7 mode-taken@8 counts-once@10"},
    {"desc M\n\n\n\nmove C:\\a,@rootdir\\b\nremove @rootdir\\..\\x", "outside-install@6 outside-install@7"},
    {"desc M\n\n\n\npilots @rootdir\\p\nexec @rootdir\\a\ndynamic", "exe-too-late@7"},
    {"desc M\n\n\n\nreplace @rootdir\\a,@rootdir\\b\nexec @rootdir\\a\ndynamic", "exe-too-late@7 after-exe@8"},
    {"desc M\n\n\n\nmove @rootdir\\a,@rootdir\\b\nremove @rootdir/A", "undo-order@7"},
};

const Case kLegacyInstalls[] = {
    {"predefined @rootdir\\a\npilots @rootdir\\P\nmove @rootdir\\a,@rootdir\\b",
     "other-case@7 target-exists@7 target-exists@8", "a=1 b=1 p/x=1 pilots.orig/x=1"},
    {"dynamic\nfold @rootdir\\a\nremove @rootdir\\b\nreplace @rootdir\\c,@rootdir\\d",
     "target-exists@6 missing-file@7 missing-file@8 missing-extra@9 missing-file@9", "bzone.tmp.old=1"},
};

TEST_F(Check, SeesHowADefinitionIsWritten) {
  SelectInstall(-1);
  ExpectAll(kMarkers, "");
  ExpectAll(kLines, "BZ2HALD5\n", "\ndname(M);");
  ExpectAll(kLegacy, "BZ2HALD3\n");
}

TEST_F(Check, HoldsLinesAgainstTheInstall) {
  ShowOldMods = true;
  WriteFile(InMods("shared.inc"), "writeid(a);\n");
  ExpectAll(kInstalls, "BZ2HALD5\n", "\ndname(M);");
  ExpectAll(kLegacyInstalls, "BZ2HALD3\ndesc M\n\n\n\n");
}

TEST_F(Check, TellsWhyAFileIsNotListed) {
  const std::string legacy = "BZ2HALD3\ndesc M\n", current = "BZ2HALD5\ndname(M);\n";
  EXPECT_EQ(CodesOf(current, "mod.txt"), "not-listed@1");
  ShowOldMods = false;
  EXPECT_EQ(CodesOf(legacy), "not-listed@1");
  ShowOldMods = true;
  WriteFile(InMods("mod.bzm"), current);
  EXPECT_EQ(CodesOf(legacy), "not-listed@1");
  EXPECT_EQ(CodesOf(current), "");
  EXPECT_EQ(Codes(AppPath + "mods\\mod.bzm"), "not-listed@1");
}

// What is said of the order of lines is what comes of them.
TEST_F(Check, IsRightAboutWhatComesBack) {
  const char* const kDefinitions[] = {
      "rename(a,x);\nrename(b,y);",         "rename(a,x);\nrename(b,a);",
      "rename(a,x);\nrename(x,y);",         "replace(a,b,x);\nrename(c,z);",
      "replace(a,b,x);\nreplace(a,c,y);",   "rename(f\\a,x);\nrename(f,g);",
      "rename(f,g);\nrename(b,addon\\b);",  "replace(bzone.cfg,b,x);\nfold(addon);",
      "fold(addon);\nrename(bzone.cfg,x);", "rename(a,x);\nwriteid(x);",
      "writeid(x);\nwriteid(y);",
  };
  for (const char* lines : kDefinitions) {
    SCOPED_TRACE(lines);
    MakeInstall("1.2");
    Put("a=1 b=2 c=3 f/a=4 bzone.cfg=5");
    const std::string path = Define(std::string("dname(M);\n") + lines);
    const std::string codes = Codes(path);
    const auto before = test::Snapshot(sandbox_.Install());
    ActivateMod(path);
    DeactivateMod(path, Root());
    EXPECT_EQ(codes.empty(), test::Snapshot(sandbox_.Install()) == before) << codes;
  }
}

TEST_F(Check, EndsSoonWithHostileFiles) {
  std::string many = "BZ2HALD5\n";
  for (int i = 0; i < 30'000; ++i)
    many += "x\n";
  const auto full = CheckDefinition(Define(many));
  ASSERT_EQ(full->findings.size(), Findings::kMaxFindings + 1);
  EXPECT_EQ(full->findings.back().problem, Problem::kTooManyFindings);
  EXPECT_EQ(CodesOf("BZ2HALD5\nfold(" + std::string(3'000'000, '(') + ");\n"), "long-path@2 too-large@2");
  for (int depth = 0; depth < 70; ++depth)
    Put("i" + std::to_string(depth) + "=include(i" + std::to_string(depth + 1) + ");");
  EXPECT_EQ(CodesOf("BZ2HALD5\ndname(M);\ninclude(i0);\n"), "include-too-deep@3");
}

// Each is written twice, with arguments that no directive takes well.
TEST_F(Check, KnowsEveryDirectiveAsTheManualPageDoes) {
  std::set<std::string> names, onPage;
  for (const std::string_view keyword : LegacyKeywords())
    names.emplace(keyword.substr(0, keyword.find(' ')));
  for (const auto& pass : {CatalogueDirectives(), ActivationDirectives(), DeactivationDirectives()})
    for (const DirectiveForm& form : pass) {
      std::string line = std::string(form.name) + "(";
      for (std::size_t i = 0; i < form.arguments; ++i)
        line += i == 0 ? "..\\*" : ",..\\*";
      EXPECT_NE(CodesOf("BZ2HALD5\n" + line + ");\n" + line + ");"), "no-name@1") << line;
      names.emplace(form.name);
    }
  std::istringstream page(test::ReadFile(SOURCE_DIR "/man/bzm.5"));
  for (std::string line; std::getline(page, line);)
    if (line.starts_with(".It Ic ")) onPage.insert(line.substr(7, line.find(' ', 7) - 7));
  EXPECT_EQ(onPage, names);
}

TEST(CheckDocument, ListsEveryCode) {
  std::string rows;
  for (const FindingKind& kind : kFindingKinds)
    rows += "| `" + std::string(kind.code) + "` | " + (kind.severity == Severity::kError ? "error" : "warning") +
            " | " + std::string(kind.meaning) + " |\n";
  const std::string document = test::ReadFile(SOURCE_DIR "/docs/check.md");
  EXPECT_EQ(document.substr(document.find("| `")), rows);
}

}  // namespace
