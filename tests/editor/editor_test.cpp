#include "editor/definitiondraft.h"
#include "installs/installlist.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

namespace varnik {
namespace {

const char* const kRows[][2] = {
    {"-", "-"},
    {"//  note", "//  note"},
    {"RENAME ( a.txt , \"b, c.txt\" );", "Rename(\"a.txt\",\"b, c.txt\");"},
    {"replace(a); // why", "Replace(\"a\"); // why"},
    {"rename(,b);", "Rename(\"b\");"},
    {"launch(a,b); // why", "// why"},
    {"just text", "-"},
    {"defaultsmsg(a);", "-"},  // the one directive that the editor spells in another way than its readers
};

// The directives that take so many parameters.
const std::vector<std::string> kDirectives[] = {
    {"activated"},
    {"Include", "DName", "Description", "DescriptionF", "Image", "Splash", "RequireFile", "RequireFolder", "Pak",
     "Fold", "DefaultName", "DefaultPass", "DefaultMSG", "writeid", "activatedfold", "activatedfile"},
    {"SetDirectory", "RequireEXE", "Rename", "RaceName", "activatedrecy"},
    {"Version", "Replace", "RenameEX", "addrecy"},
};

TEST(DirectiveRow, IsRebuiltFromTheCatalogue) {
  for (const auto& [row, rebuilt] : kRows)
    EXPECT_EQ(DirectiveRow(row).BuildRowText(), rebuilt) << row;
  const std::string taken[] = {"();", "(\"a\");", "(\"a\",\"b\");", "(\"a\",\"b\",\"c\");"};
  for (std::size_t count = 0; count < std::size(taken); ++count)
    for (const std::string& name : kDirectives[count])
      EXPECT_EQ(DirectiveRow(name + "(a, b, c, d); // why").BuildRowText(), name + taken[count] + " // why");
}

const char* const kChanges[][3] = {
    {"dname(a); // why", "Version", "Version(\"a\"); // why"},
    {"replace(a,b,c); // why", "Rename", "Rename(\"a\",\"b\"); // why"},
    {"rename(a,b); // why", "<Blank>", "// why"},
    {"// why", "Image", "Image(); // why"},
};

TEST(DirectiveRow, KeepsParametersAndCommentWhenTheDirectiveChanges) {
  for (const auto& [text, directive, rebuilt] : kChanges) {
    DirectiveRow row(text);
    row.ChangeDirective(FindDirective(directive));
    EXPECT_EQ(row.BuildRowText(), rebuilt);
  }
}

TEST(DefinitionDraft, HoldsTheRowsOfAFileUntilItIsSaved) {
  test::Sandbox sandbox;
  sandbox.MakeInstall();
  UseInstallFolder(sandbox.InstallText());
  test::WriteFile(sandbox.Install() / "a.bzm", "bz2hald5 /x\n\n  dname(a);\nrename(b,c);\nodd");
  DefinitionDraft draft;
  draft.Load(sandbox.InstallText() + "a.bzm");
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
