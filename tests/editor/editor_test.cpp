#include "editor/definitiondraft.h"
#include "installs/installlist.h"
#include "tests/harness/cases.h"
#include "tests/harness/failingreads.h"
#include "tests/harness/sandbox.h"

namespace varnik {
namespace {

TEST(DirectiveRow, IsRebuiltFromTheCatalogue) {
  for (const test::Case& c : test::Cases("editor/rows.jsonl")) {
    DirectiveRow row(c.value("row", ""));
    if (c.contains("changed to")) row.ChangeDirective(FindDirective(c.value("changed to", "")));
    EXPECT_EQ(row.BuildRowText(), c["rebuilt"]) << c;
  }
}

TEST(DefinitionDraft, HoldsTheRowsOfAFileUntilItIsSaved) {
  test::Sandbox sandbox;
  sandbox.MakeInstall();
  UseInstallFolder(sandbox.InstallText());
  test::WriteFile(sandbox.Install() / "a.bzm", "bz2hald5 /x\n\n  dname(a);\nrename(b,c);\nodd");
  DefinitionDraft draft;
  {
    const test::FailingReads disk("a.bzm", 2);
    EXPECT_FALSE(draft.Load(sandbox.InstallText() + "a.bzm"));
    EXPECT_EQ(draft.EditFileName() + std::to_string(draft.Rows().size()), "0");
  }
  EXPECT_TRUE(draft.Load(sandbox.InstallText() + "a.bzm"));
  EXPECT_EQ(draft.EditFileName(), "a.bzm");
  draft.RemoveRow();  // none is selected
  EXPECT_FALSE(draft.MoveUp() || draft.MoveDown());
  EXPECT_EQ(draft.Rows(), (std::vector<std::string>{"-", "dname(a);", "rename(b,c);", "odd"}));
  draft.AddRow();
  draft.ChangeDirective(FindDirective("image"));
  draft.ChangePart(0, "i");
  draft.SelectRow(4);
  EXPECT_FALSE(draft.MoveDown());
  draft.RemoveRow();
  EXPECT_TRUE(draft.MoveUp());
  EXPECT_EQ(draft.SelectedRow(), 2);
  EXPECT_EQ(draft.Rows(), (std::vector<std::string>{"Image(\"i\");", "-", "Rename(\"b\",\"c\");", "dname(a);"}));
  EXPECT_TRUE(draft.Save("b.bzm", true) && draft.Save("b.inc", true));
  const std::string rows = "Image(\"i\");\r\n\r\nRename(\"b\",\"c\");\r\ndname(a);\r\n";
  EXPECT_EQ(test::ReadFile(sandbox.Install() / "b.bzm"), "BZ2HALD5 /x\r\n" + rows);
  EXPECT_EQ(test::ReadFile(sandbox.Install() / "b.inc"), rows);
  EXPECT_FALSE(IsUsableFileName("") || IsUsableFileName(kProposedFileName));
}

}  // namespace
}  // namespace varnik
