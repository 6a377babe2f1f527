#include "diagnosis/check.h"

#include "definition/passdirective.h"
#include "legacy/legacyactivation.h"
#include "legacy/legacyformat.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/definitionreader.h"
#include "support/install.h"
#include "tests/harness/cases.h"
#include "tests/modengine/modtest.h"

#include <algorithm>
#include <set>

namespace {

using namespace varnik;
using test::WriteFile;

class Check : public test::ModTest {
 protected:
  static std::string Lines(const test::Case& c) {
    std::string lines;
    for (const std::string line : c["lines"])
      lines += line + "\n";
    return lines;
  }

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

  // The lines of a case between these, with `files` in an install of `version`. Its findings are each code@line.
  void ExpectAll(const std::string& name, const std::string& head, const std::string& foot = "") {
    for (const test::Case& c : test::Cases("diagnosis/cases/" + name)) {
      SCOPED_TRACE(c.dump());
      if (CurrentInstall >= 0) MakeInstall(c.value("version", "1.3"));
      if (CurrentInstall >= 0) std::filesystem::create_symlink("..", InRoot("up"));
      WriteFile(InRoot("RecyList.txt"), "B\n");
      WriteFile(InRoot("full.txt"), "Ax\nA Other\n");
      WriteFile(InRoot("gameprefs.ini"), "[UserPrefs]\nDefaultSessionName=y\n");
      WriteFile(InRoot("a.inc"), "BZ2HALD5\nrenmae(a,b);\ninclude(b.inc);");
      Put("open.txt=B b.inc= c.inc=version(1.0); d.inc=activated(); " + c.value("files", ""));
      if (c.contains("other")) {
        Define(c["other"], "other.bzm");
        LoadModList();
      }
      EXPECT_EQ(CodesOf(head + Lines(c) + foot), c["findings"]);
    }
  }
};

TEST_F(Check, SeesHowADefinitionIsWritten) {
  SelectInstall(-1);
  ExpectAll("markers.jsonl", "");
  ExpectAll("lines.jsonl", "BZ2HALD5\n", "dname(M);");
  ExpectAll("legacy_lines.jsonl", "BZ2HALD3\ndesc M\n\n\n\n");
}

TEST_F(Check, HoldsLinesAgainstTheInstall) {
  ShowOldMods = true;
  WriteFile(InMods("shared.inc"), "writeid(a);\n");
  ExpectAll("install.jsonl", "BZ2HALD5\n", "dname(M);");
  ExpectAll("legacy_install.jsonl", "BZ2HALD3\ndesc M\n\n\n\n");
}

TEST_F(Check, TellsWhyAFileIsNotListed) {
  const std::string legacy = "BZ2HALD3\ndesc M\n", current = "BZ2HALD5\ndname(M);\n";
  EXPECT_EQ(CodesOf(current, "mod.txt"), "not-listed@1");
  EXPECT_EQ(CodesOf(std::string("\xFF\xFE"
                                "B\0Z\0",
                                6)),
            "utf-16@1");
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
  for (const test::Case& c : test::Cases("diagnosis/cases/undo.jsonl")) {
    SCOPED_TRACE(c.dump());
    MakeInstall("1.2");
    Put("a=1 b=2 c=3 f/a=4 bzone.cfg=5");
    const std::string path = Define("dname(M);\n" + Lines(c));
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
  EXPECT_EQ(CodesOf("BZ2HALD5\ndname(M);\ninclude(i10);\n"), "include-missing@3");
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
