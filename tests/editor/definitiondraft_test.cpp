#include "editor/definitiondraft.h"

#include "tests/modengine/modtest.h"

using varnik::DefinitionDraft;

namespace {

class DraftTest : public test::ModTest {
 protected:
  DefinitionDraft Loaded(const std::string& content) {
    test::WriteFile(InRoot("mod.bzm"), content);
    DefinitionDraft draft;
    draft.Load(Root() + "mod.bzm");
    return draft;
  }

  static std::string Joined(const DefinitionDraft& draft) {
    std::string rows;
    for (const std::string& row : draft.Rows())
      rows += row + " ";
    return rows;
  }
};

TEST_F(DraftTest, LoadsRowsWithoutMarkerLines) {
  const DefinitionDraft draft = Loaded("BZ2HALD5 /x\r\n  dname(a);  \n\r\n-\r\nbz2hald2\r\nlast");
  EXPECT_EQ(Joined(draft), "dname(a); - - last ");
  EXPECT_EQ(draft.EditFileName(), "mod.bzm");
}

using Draft = DefinitionDraft;

struct StepCase {
  int selected;
  void (*act)(Draft&);
  const char* rows;
  int selectedThen;
};

const StepCase kSteps[] = {
    {1, [](Draft&) {}, "a(); Pak(\"b\"); pak(c); ", 1},
    {3, [](Draft&) {}, "a(); pak(b); pak(c); ", -1},
    {-1, [](Draft& d) { d.AddRow(); }, "- a(); pak(b); pak(c); ", 0},
    {1, [](Draft& d) { d.AddRow(); }, "a(); Pak(\"b\"); - pak(c); ", 2},
    {0, [](Draft& d) { d.RemoveRow(); }, "Pak(\"b\"); pak(c); ", 0},
    {2, [](Draft& d) { d.RemoveRow(); }, "a(); Pak(\"b\"); ", 1},
    {-1, [](Draft& d) { d.RemoveRow(); }, "a(); pak(b); pak(c); ", -1},
    {1, [](Draft& d) { d.MoveUp(), d.MoveUp(); }, "Pak(\"b\"); a(); pak(c); ", 0},
    {1, [](Draft& d) { d.MoveDown(), d.MoveDown(); }, "a(); pak(c); Pak(\"b\"); ", 2},
    {-1, [](Draft& d) { d.MoveDown(); }, "a(); pak(b); pak(c); ", -1},
    {1, [](Draft& d) { d.ChangePart(0, "x"); }, "a(); Pak(\"x\"); pak(c); ", 1},
    {1, [](Draft& d) { d.ChangePart(2, "x"); }, "a(); Pak(\"b\"); pak(c); ", 1},
    {1, [](Draft& d) { d.ChangeDirective(16); }, "a(); Fold(\"b\"); pak(c); ", 1},
    {-1, [](Draft& d) { d.ChangePart(0, "x"); }, "a(); pak(b); pak(c); ", -1},
};

TEST_F(DraftTest, ChangesRowsAndFollowsTheSelection) {
  for (const StepCase& c : kSteps) {
    Draft draft = Loaded("a();\npak(b);\npak(c);\n");
    draft.SelectRow(c.selected);
    c.act(draft);
    EXPECT_EQ(Joined(draft), c.rows);
    EXPECT_EQ(draft.SelectedRow(), c.selectedThen);
    EXPECT_EQ(draft.Selected().has_value(), c.selectedThen >= 0);
  }
}

TEST_F(DraftTest, SavesIntoTheInstallWithTheMarkerOfADefinition) {
  Draft draft = Loaded("pak(a);\n\n");
  EXPECT_TRUE(draft.Save("mod.bzm", false));
  EXPECT_EQ(Content("mod.bzm"), "BZ2HALD5\r\npak(a);\r\n\r\n");
  EXPECT_TRUE(draft.Save("mod.bzm", true));
  EXPECT_EQ(Content("mod.bzm"), "BZ2HALD5 /x\r\npak(a);\r\n\r\n");
  EXPECT_TRUE(draft.Save("PART.BZM", true));
  EXPECT_EQ(Content("PART.BZM"), "pak(a);\r\n\r\n");
}

}  // namespace
