#include "diagnosis/check.h"

#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "support/install.h"
#include "support/settings.h"
#include "tests/modengine/modtest.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace varnik;
using test::WriteFile;

struct Case {
  const char* lines;     // from line 2 of a definition
  const char* findings;  // each code@line
  const char* files = "";
};

class Check : public test::ModTest {
 protected:
  static std::string Codes(const std::string& path) {
    std::string codes;
    const auto report = CheckDefinition(path);
    EXPECT_TRUE(report);
    for (const Finding& finding : report ? report->findings : std::vector<Finding>())
      codes +=
          (codes.empty() ? "" : " ") + std::string(KindOf(finding.problem).code) + "@" + std::to_string(finding.line);
    return codes;
  }

  std::string CodesOf(const std::string& content, const std::string& name = "mod.bzm") {
    WriteFile(InRoot(name), content);
    return Codes(Root() + name);
  }

  // As Put; `|` in a file stands for the end of a line and `_` for a blank.
  void PutText(const std::string& files) {
    Put(files);
    std::istringstream list(files);
    for (std::string file; list >> file;) {
      const auto name = InRoot(file.substr(0, file.find('=')));
      std::string content = test::ReadFile(name);
      std::replace(content.begin(), content.end(), '|', '\n');
      std::replace(content.begin(), content.end(), '_', ' ');
      WriteFile(name, content);
    }
  }

  template <std::size_t N>
  void ExpectAll(const Case (&cases)[N], const std::string& head, const std::string& foot = "") {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.lines);
      if (CurrentInstall >= 0) MakeInstall("1.3");
      PutText(c.files);
      EXPECT_EQ(CodesOf(head + c.lines + foot), c.findings);
    }
  }

  void LookAtFilesAlone() { SelectInstall(-1); }
};

const Case kMarkers[] = {
    {"", "no-marker@1"},
    {"\xEF\xBB\xBF"
     "BZ2HALD5\ndname(M);",
     "no-marker@1"},
    {"bz2hald\n", "no-marker@1"},
    {"BZ2HALD4\ndname(M);", "unknown-version@1"},
    {"BZ2HALD0\ndesc M", "unknown-version@1"},
    {"  bz2hald5.0 /x\ndname(M);", ""},
    {"BZ2HALD5 /X\ndname(M);", "marker-text@1"},
    {"BZ2HALD5 // my mod\ndname(M);", ""},
    {"BZ2HALD5", "no-name@1"},
};

TEST_F(Check, JudgesTheMarker) {
  LookAtFilesAlone();
  ExpectAll(kMarkers, "");
}

const Case kForms[] = {
    {"", ""},
    {"rename ( \"a, b\" , c ); // note", ""},
    {"; rename(a,b);\n// x(y\n\t", ""},
    {"some words", "no-directive@2"},
    {"Rename a, b", "unknown-directive@2"},
    {"renmae(a,b);", "unknown-directive@2"},
    {"DefaultMSG(x);", "unknown-directive@2"},
    {"move(a,b);", "unknown-directive@2"},
    {"SetDirectory(a,b);", "ignored-directive@2"},
    {"\trename(a,b);", "tab@2"},
    {"rename(a,\tb);", "tab@2"},
    {"rename(a);", "too-few-arguments@2"},
    {"description(a, b);", "surplus-arguments@2"},
    {"version(1.0, 1.1, 1.2, 1.3);", ""},
    {"addrecy(A, B, c.txt);", ""},
    {"fold();", "empty-argument@2"},
    {"rename(a,);", "empty-argument@2"},
    {"rename(,a,b);", "skipped-argument@2"},
    {"rename(a,,b);", "skipped-argument@2"},
    {"rename(a,b", "not-closed@2"},
    {"rename(a,b)", "close-in-argument@2"},
    {"rename(a,b);  ", "trailing-blanks@2"},
    {"rename(a,b);\t// note", "trailing-blanks@2"},
    {"rename(a,b); ; note", "text-behind-close@2"},
    {"rename(a,b); rename(c,d);", "text-behind-close@2 surplus-arguments@2"},
    {"description(\"use f(); well\");", ""},
    {"rename(a,\"b);", "open-quote@2"},
    {"description(\"see http://x.org, or so\");", "comment-in-argument@2"},
    {"description(see http://x.org);", "comment-in-argument@2"},
    {"rename(@rootdir\\a,b);", "bad-path@2"},
    {"rename(C:\\a,b);", "bad-path@2"},
    {"rename(..\\a,b..c);", "outside-install@2"},
    {"rename(*.odf,b);", "wildcard@2"},
    {"writeid(*.id);", "wildcard@2"},
    {"rename(a,A);", "same-name@2"},
    {"pak(A.PAK);", "letter-case@2"},
    {"replace(Bzone.cfg,a,b);", "letter-case@2"},
    {"racename(1st,X);", "racename-letter@2"},
    {"racename(Fox,X);", "racename-word@2"},
    {"racename(f,X);\nracename(F,Y);\nracename(g,Z);", "counts-once@3"},
    {"description(x);\ndescriptionf(y);\nimage(a);\nimage(b);", "counts-once@3 counts-once@5"},
};

TEST_F(Check, SeesHowALineIsWritten) {
  LookAtFilesAlone();
  ExpectAll(kForms, "BZ2HALD5\n", "\ndname(M);");
}

const Case kOrders[] = {
    {"activated();\nactivatedfile(a);", ""},
    {"activated();", "no-active-test@2"},
    {"activated();\nactivated();\nactivatedfold(a);", "counts-once@3"},
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
    {"rename(f\\a,g\\a);\nrename(f\\b,g\\b);", ""},
    {"replace(bzone.cfg,a,b);\npak(c);\nfold(d);", "two-configurations@3"},
    {"fold(d);\nrename(bzone.cfg,a);", "two-configurations@3"},
};

TEST_F(Check, SeesWhatDependsOnTheOrderOfLines) {
  LookAtFilesAlone();
  ExpectAll(kOrders, "BZ2HALD5\n", "\ndname(M);");
}

const Case kInstalls[] = {
    {"version(1.2, 1.1);", "does-not-fit@2"},
    {"version(1.2);\nversion(1.3);", ""},
    {"requirefile(a);\nrequirefolder(b);\nrequireexe(c, d);", "does-not-fit@2 does-not-fit@3 does-not-fit@4"},
    {"image(a.bmp);", "missing-extra@2"},
    {"rename(a,b);", "", "a=1"},
    {"rename(a,b);", "missing-file@2"},
    {"rename(a,b);", "target-exists@2", "a=1 b=1"},
    {"rename(a,nowhere\\b);", "missing-file@2", "a=1"},
    {"replace(a,b,c);", "missing-extra@2", "b=1"},
    {"replace(a,b,c);", "missing-file@2 target-exists@2", "a=1 c=1"},
    {"pak(a);\nfold(addon);", "", "a.pak=1"},
    {"pak(a);\nfold(b);", "missing-file@2 missing-file@3"},
    {"fold(b);\nrename(addon,b);", ""},
    {"fold(addon);", "target-exists@2", "bzonevarnik.bak=1"},
    {"image(ADDON\\a.bmp);", "other-case@2", "addon/a.bmp=1"},
    {"image(a.bmp);", "twin-names@2", "a.bmp=1 A.bmp=2"},
    {"requirefile(x/a);\nimage(x/b);", "twin-names@2", "x/a=1 x/b=1 X/a=2"},
    {"fold(addon);", "twin-names@2", "bzone.cfg=1 BZONE.CFG=2"},
    {"", "twin-names@1", "MOD.bzm=1"},
    {"writeid(a);", "undo-takes-more@2", "a=1"},
    {"addrecy(A, Text);", "not-undone@2"},
    {"addrecy(A, Text, l);", "not-undone@2", "l=1"},
    {"addrecy(A, Text);", "", "RecyList.txt=B|"},
    {"addrecy(A, Text);", "not-undone@2", "RecyList.txt=B"},
    {"addrecy(A, Text, l);", "undo-takes-more@2", "RecyList.txt=B l=Ax|A_Other|"},
    {"defaultname(x);", "missing-extra@2"},
    {"defaultname(x);", "not-undone@2", "gameprefs.ini=[UserPrefs]"},
    {"defaultname(x);", "", "gameprefs.ini=[UserPrefs]|DefaultSessionName=y"},
    {"racename(b, x);", "missing-extra@2", "RaceName_A.txt=x"},
    {"include(a.inc);", "include-missing@2"},
    {"include(a.inc);", "unknown-directive@2", "a.inc=BZ2HALD5|renmae(a,b);"},
    {"include(mod.bzm);", "include-circular@2"},
    {"include(a.inc);\ninclude(b.inc);", "include-again@3", "a.inc=include(b.inc); b.inc="},
    {"include(a.inc);\nactivatedfile(b);", "activated-in-include@2", "a.inc=activated();"},
    {"include(a.inc);", "does-not-fit@2", "a.inc=version(1.0);"},
    {"include(addon);", "include-unreadable@2"},
};

TEST_F(Check, HoldsLinesAgainstTheInstall) {
  ExpectAll(kInstalls, "BZ2HALD5\n", "\ndname(M);");
}

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
    {"desc M\n\n\n\nexec @rootdir\\a\ndynamic", "after-exe@7"},
    {"desc M\n\n\n\npilots @rootdir\\p\nexec @rootdir\\a\ndynamic", "exe-too-late@7"},
    {"desc M\n\n\n\nreplace @rootdir\\a,@rootdir\\b\nexec @rootdir\\a\ndynamic", "exe-too-late@7 after-exe@8"},
    {"desc M\n\n\n\nmove @rootdir\\a,@rootdir\\b\nremove @rootdir/A", "undo-order@7"},
};

TEST_F(Check, KnowsTheOlderFormat) {
  LookAtFilesAlone();
  ExpectAll(kLegacy, "BZ2HALD3\n");
}

const Case kLegacyInstalls[] = {
    {"predefined @rootdir\\a\npilots @rootdir\\P\nmove @rootdir\\a,@rootdir\\b",
     "other-case@7 target-exists@7 target-exists@8", "a=1 b=1 p/x=1 pilots.orig/x=1"},
    {"dynamic\nfold @rootdir\\a\nremove @rootdir\\b\nreplace @rootdir\\c,@rootdir\\d",
     "target-exists@6 missing-file@7 missing-file@8 missing-extra@9 missing-file@9", "bzone.tmp.old=1"},
};

TEST_F(Check, HoldsTheOlderFormatAgainstTheInstall) {
  StoreOption("OldMods", "On");
  ReadOptionFlags();
  ExpectAll(kLegacyInstalls, "BZ2HALD3\ndesc M\n\n\n\n");
}

TEST_F(Check, TellsWhyAFileIsNotListed) {
  const std::string legacy = "BZ2HALD3\ndesc M\n";
  const std::string current = "BZ2HALD5\ndname(M);\n";
  EXPECT_EQ(CodesOf(current, "mod.txt"), "not-listed@1");
  ShowOldMods = false;
  EXPECT_EQ(CodesOf(legacy), "not-listed@1");
  ShowOldMods = true;
  EXPECT_EQ(CodesOf(legacy), "");
  WriteFile(InMods("mod.bzm"), current);
  EXPECT_EQ(CodesOf(legacy), "not-listed@1");
  EXPECT_EQ(CodesOf(current), "");
  EXPECT_EQ(Codes(AppPath + "mods\\mod.bzm"), "not-listed@1");
}

TEST_F(Check, TellsWhatAnUndoDoesNotFindInTheFolderOfMods) {
  WriteFile(InMods("a.inc"), "dname(M);\nwriteid(a);\n");
  EXPECT_EQ(CodesOf("BZ2HALD5\ninclude(a.inc);\n"), "not-undone@2");
}

TEST_F(Check, KnowsWhatOtherVersionsOfTheGameDoNot) {
  MakeInstall("1.2");
  EXPECT_EQ(CodesOf("BZ2HALD5\ndname(M);\ndefaultpass(x);\nracename(A,b);\n"), "needs-1.3@3");
}

TEST_F(Check, FollowsIncludesAsFarAsTheReadersDo) {
  for (int depth = 0; depth < 20; ++depth)
    Put("i" + std::to_string(depth) + "=include(i" + std::to_string(depth + 1) + ");");
  EXPECT_EQ(CodesOf("BZ2HALD5\ndname(M);\ninclude(i0);\n"), "include-too-deep@3");
}

TEST_F(Check, LeavesOutWhatAModInForceHasChanged) {
  Put("b=1");
  const std::string lines = "BZ2HALD5\ndname(M);\nactivated();\nactivatedfile(b);\nrename(a,b);\n";
  EXPECT_EQ(CodesOf(lines), "");
  EXPECT_NE(CheckDefinition(Root() + "mod.bzm")->leftOut, "");
  Put("a=1 b");
  EXPECT_EQ(CodesOf(lines), "");
  EXPECT_EQ(CheckDefinition(Root() + "mod.bzm")->leftOut, "");
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
  for (int i = 0; i < 300'000; ++i)
    many += "x\n";
  const auto full = CheckDefinition(Define(many));
  ASSERT_EQ(full->findings.size(), Findings::kMaxFindings + 1);
  EXPECT_EQ(full->findings.back().problem, Problem::kTooManyFindings);
  std::replace(many.begin(), many.end(), 'x', ';');
  EXPECT_EQ(CodesOf(many), "too-large@20001");
  EXPECT_EQ(CodesOf("BZ2HALD5\nfold(" + std::string(3'000'000, '(') + ");\ndname(M);\n"), "long-path@2 too-large@2");
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
