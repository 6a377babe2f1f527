#include "editor/directiverow.h"

#include <gtest/gtest.h>

using varnik::DirectiveRow;
using varnik::FindDirective;

namespace {

const char* const kRows[][2] = {
    {"-", "-"},
    {"//  note", "//  note"},
    {"RENAME ( a.txt , \"b, c.txt\" );", "Rename(\"a.txt\",\"b, c.txt\");"},
    {"replace(a); // why", "Replace(\"a\"); // why"},
    {"dname(a,b,c); // why", "DName(\"a\"); // why"},
    {"ACTIVATED();", "activated();"},
    {"rename(,b);", "Rename(\"b\");"},
    {"launch(a,b); // why", "// why"},
    {"launch(a,b);", "-"},
    {"just text", "-"},
    {"defaultsmsg(a);", "-"},  // the one directive that the editor spells in another way than its readers
};

TEST(DirectiveRow, RebuildsARowFromTheCatalogue) {
  for (const auto& [row, rebuilt] : kRows)
    EXPECT_EQ(DirectiveRow(row).BuildRowText(), rebuilt) << row;
}

const char* const kChanges[][3] = {
    {"dname(a); // why", "Version", "Version(\"a\"); // why"},
    {"replace(a,b,c); // why", "Rename", "Rename(\"a\",\"b\"); // why"},
    {"rename(a,b); // why", "RaceName", "RaceName(\"a\",\"b\"); // why"},
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

}  // namespace
