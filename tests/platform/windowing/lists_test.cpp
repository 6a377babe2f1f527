#include "tests/harness/window_app.h"

#include <QApplication>
#include <QListView>
#include <QMenu>
#include <QMouseEvent>

#include <vector>

namespace {

using Rows = std::vector<std::string>;
using Log = std::vector<std::string>;

struct ListForm : win::Form {
  ListForm(win::ListStyle style, const Rows& texts) : Form("frmList", 3000, 3000), lst(*this, "lst", style) {
    lst.Move(0, 0, 3000, 3000);
    for (const std::string& text : texts)
      lst.AddItem(text);
    lst.Click = [this] { log.push_back(std::to_string(lst.ListIndex())); };
    lst.ItemCheck = [this](int row) { log.push_back("tick " + std::to_string(row)); };
  }

  Rows Shown() const {
    Rows rows;
    for (int i = 0; i < lst.ListCount(); ++i)
      rows.push_back(lst.List(i));
    return rows;
  }

  win::ListBox lst;
  Log log;
};

using ListBoxTest = test::WindowTest;

TEST_F(ListBoxTest, SortedRowsSayWhereTheyLandAndKeepTheirData) {
  for (const bool inOneUpdate : {false, true}) {
    ListForm form(win::ListStyle::kSorted, {});
    if (inOneUpdate) form.lst.BeginUpdate();
    for (const char* text : {"Zeta", "alpha", "<No Mod>", "Alpha", "1st", ""}) {
      form.lst.AddItem(text);
      EXPECT_EQ(form.lst.List(form.lst.NewIndex()), text);
      form.lst.SetItemData(form.lst.NewIndex(), *text);
    }
    if (inOneUpdate) form.lst.EndUpdate();
    EXPECT_EQ(form.Shown(), (Rows{"", "<No Mod>", "1st", "alpha", "Alpha", "Zeta"}));
    for (int row = 0; row < form.lst.ListCount(); ++row)
      EXPECT_EQ(form.lst.ItemData(row), *form.lst.List(row).c_str());
    EXPECT_EQ(form.log, Log{});
  }
}

void AddInOneUpdate(win::ListBox& list) {
  const win::ListUpdate update(list);
  list.AddItem("a");
  list.AddItem("A");
}

TEST_F(ListBoxTest, TheSelectionStaysWithItsRow) {
  const struct {
    const char* what;
    void (*change)(win::ListBox& lst);
    int index;
  } cases[] = {
      {"a row comes before it", [](win::ListBox& lst) { lst.AddItem("a"); }, 2},
      {"a row comes behind it", [](win::ListBox& lst) { lst.AddItem("z"); }, 1},
      {"an update", AddInOneUpdate, 3},
      {"a row before it goes", [](win::ListBox& lst) { lst.RemoveItem(0); }, 0},
      {"it goes itself", [](win::ListBox& lst) { lst.RemoveItem(1); }, -1},
      {"all go", [](win::ListBox& lst) { lst.Clear(); }, -1},
      {"a row that is not there goes", [](win::ListBox& lst) { lst.RemoveItem(7); }, 1},
  };
  for (const auto& c : cases) {
    ListForm form(win::ListStyle::kSorted, {"m", "n", "o"});
    form.lst.SetListIndex(1);
    c.change(form.lst);
    EXPECT_EQ(form.lst.ListIndex(), c.index) << c.what;
    EXPECT_EQ(form.log, Log{"1"}) << c.what;
  }
}

TEST_F(ListBoxTest, CodeAndPersonRaiseTheSameClick) {
  ListForm form(win::ListStyle::kPlain, {"a", "b", "c"});
  form.Show();
  form.lst.SetFocus();
  EXPECT_EQ(form.lst.ListIndex(), -1);
  test::PressKey(form.lst, Qt::Key_Down);
  for (const int row : {1, 1, 9})
    form.lst.SetListIndex(row);
  EXPECT_EQ(form.log, (Log{"0", "1"}));
  form.log.clear();
  test::ClickRow(form.lst, 2);
  test::ClickRow(form.lst, 2);
  test::PressKey(form.lst, Qt::Key_Up);
  test::PressKey(form.lst, Qt::Key_Shift);
  QTest::mouseClick(form.lst.Widget()->findChild<QWidget*>("qt_scrollarea_viewport"), Qt::LeftButton, {}, {20, 150});
  EXPECT_EQ(form.log, (Log{"2", "2", "1"})) << "the empty space below the rows is no row";
}

TEST_F(ListBoxTest, TicksTravelAndAreReported) {
  ListForm form(win::ListStyle::kCheckBoxes, {"a", "b", "c"});
  form.Show();
  for (const int row : {1, 1, 9})
    form.lst.SetSelected(row, true);
  form.lst.AddItem("first", 0);
  EXPECT_TRUE(form.lst.Selected(2));
  test::ClickTick(form.lst, 3);
  EXPECT_TRUE(form.lst.Selected(3));
  test::PressKey(form.lst, Qt::Key_Space);
  EXPECT_FALSE(form.lst.Selected(3));
  EXPECT_EQ(form.log, (Log{"tick 1", "tick 3", "3", "tick 3", "3"}));
}

struct MenuForm : win::Form {
  MenuForm() : Form("frmMain", 6000, 4500) {
    mnuSel.Click = [this](int index) { log.push_back(std::to_string(index)); };
  }

  // What a person would read in the menu.
  Log Shown() const {
    Log shown;
    for (const QAction* action : mnuDir.Native()->actions())
      if (action->isVisible()) shown.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    return shown;
  }

  win::Menu mnuDir{*this, "mnuBZ2Dir", "&Directory"};
  win::MenuArray mnuSel{mnuDir, "mnuSel", "<none>"};
  win::MenuItem mnuReload{mnuDir, "mnuReload", "&Reload"};
  win::MenuSeparator mnuSpacer{mnuDir, "mnuSpacer"};
  Log log;
};

using MenuTest = test::WindowTest;

TEST_F(MenuTest, ArrayRowsStandInTheirPlaceByIndex) {
  MenuForm form;
  form.mnuSel[0].SetChecked(true);
  EXPECT_TRUE(form.mnuSel.Load(2) && form.mnuSel.Load(1));
  EXPECT_FALSE(form.mnuSel.Load(1) || form.mnuSel.Load(0));
  EXPECT_TRUE(form.mnuSel[2].Checked()) << "a new row looks like row 0";
  form.mnuSel[1].SetCaption("one");
  form.mnuSel[2].SetCaption("two");
  EXPECT_EQ(form.Shown(), (Log{"<none>", "one", "two", "&Reload", "-"}));
  test::ClickMenu(form.mnuSel[2]);
  EXPECT_TRUE(form.mnuSel[2].Checked()) << "a click leaves the mark alone";
  EXPECT_TRUE(form.mnuSel.Unload(1));
  EXPECT_FALSE(form.mnuSel.Unload(1) || form.mnuSel.Unload(0));
  EXPECT_EQ(form.mnuSel.UBound(), 2);
  EXPECT_TRUE(form.mnuSel.Load(1) && form.mnuSel.Unload(2));
  EXPECT_EQ(form.mnuSel.UBound(), 1);
  form.mnuSpacer.SetVisible(false);
  form.mnuSel.UnloadAll();
  EXPECT_EQ(form.Shown(), (Log{"<none>", "&Reload"}));
  EXPECT_EQ(form.log, Log{"2"});
}

TEST_F(MenuTest, ARowMayUnloadItself) {
  MenuForm form;
  form.mnuSel.Load(1);
  form.mnuSel.Click = [&form](int) { form.mnuSel.UnloadAll(); };
  test::ClickMenu(form.mnuSel[1]);
  EXPECT_EQ(form.mnuSel.UBound(), 0);
  test::RunEvents();
}

using TreeTest = test::WindowTest;

TEST_F(TreeTest, OnlyAPersonRaisesNodeClickAndANodeGoesWithItsChildren) {
  win::Form form("frmTree", 4500, 6000);
  win::TreeView tree(form, "SettingTree");
  tree.Move(0, 0, 4500, 6000);
  tree.AddRoot("RMod", "Mods");
  tree.AddRoot("RCFG", "Configuration");
  tree.Add("RMod", win::TreeRelation::kNext, "RMap", "Maps");
  tree.Add("RMap", win::TreeRelation::kChild, "CMap1", "DeathMatch");
  Log clicks;
  tree.NodeClick = [&clicks](const std::string& key) { clicks.push_back(key); };
  form.Show();
  tree.SetSelectedItem("RMod");
  test::ClickNode(tree, "Maps");
  test::ClickNode(tree, "Maps");
  test::PressKey(tree, Qt::Key_Down);
  test::PressKey(tree, Qt::Key_Shift);
  EXPECT_EQ(clicks, (Log{"RMap", "RMap", "RCFG"}));
  tree.SetEnabled(false);
  test::ClickNode(tree, "Mods");
  EXPECT_EQ(tree.SelectedItem(), "RCFG");
  tree.SetSelectedItem("CMap1");
  EXPECT_TRUE(tree.Remove("RMap"));
  EXPECT_FALSE(tree.Remove("RMap") || tree.Exists("CMap1"));
  EXPECT_FALSE(tree.AddRoot("RMod", "again") || tree.SetKey("RMod", "RCFG"));
  test::RunEvents();
  EXPECT_EQ(clicks.size(), 3u);
}

TEST_F(ListBoxTest, ADoubleClickComesOnceAndADragStepByStep) {
  ListForm form(win::ListStyle::kCheckBoxes, {"a", "b", "c"});
  test::ShowActive(form);
  auto* view = qobject_cast<QListView*>(form.lst.Widget());
  const auto placeOf = [view](int row) { return view->visualRect(view->model()->index(row, 0)).center(); };
  form.lst.DblClick = [&form] { form.log.push_back("double " + std::to_string(form.lst.ListIndex())); };
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, placeOf(1));
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, placeOf(1));
  QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, placeOf(1));
  EXPECT_EQ(form.log, (Log{"1", "1", "double 1"}));
  form.lst.DragRow = [&form](int step) {
    const int to = form.lst.ListIndex() + step;
    form.log.push_back("to " + std::to_string(to));
    form.lst.SetListIndex(to);
  };
  form.log.clear();
  QTest::mousePress(view->viewport(), Qt::LeftButton, {}, placeOf(1));
  for (const int row : {2, 2, 1, 0}) {
    QMouseEvent move(QEvent::MouseMove, placeOf(row), view->viewport()->mapToGlobal(placeOf(row)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &move);
  }
  QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, placeOf(0));
  EXPECT_EQ(form.log, (Log{"to 2", "2", "to 1", "1", "to 0", "0"})) << "and the release is no click";
}

}  // namespace
