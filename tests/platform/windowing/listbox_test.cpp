#include "windowing/listbox.h"

#include "tests/harness/window_app.h"
#include "windowing/form.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <vector>

namespace {

using win::Form;
using win::ListBox;
using win::ListStyle;

struct ListForm : Form {
  explicit ListForm(ListStyle style) : Form("frmList", 3000, 3000), lst(*this, "lst", style) {
    lst.Move(0, 0, 3000, 3000);
    lst.Click = [this] { clicks.push_back(lst.ListIndex()); };
    lst.ItemCheck = [this](int row) { checks.push_back(row); };
  }

  std::vector<std::string> Rows() const {
    std::vector<std::string> rows;
    for (int i = 0; i < lst.ListCount(); ++i)
      rows.push_back(lst.List(i));
    return rows;
  }

  ListBox lst;
  std::vector<int> clicks, checks;
};

using Rows = std::vector<std::string>;

class ListBoxTest : public test::WindowTest {};

TEST_F(ListBoxTest, SortedRowsSayWhereTheyLandAndKeepTheirData) {
  for (const bool inOneUpdate : {false, true}) {
    SCOPED_TRACE(inOneUpdate);
    ListForm form(ListStyle::kSorted);
    if (inOneUpdate) form.lst.BeginUpdate();
    const char* const texts[] = {"Zeta", "alpha", "<No Mod>", "Alpha", "1st", ""};
    for (int i = 0; i < 6; ++i) {
      form.lst.AddItem(texts[i]);
      EXPECT_EQ(form.lst.List(form.lst.NewIndex()), texts[i]);
      form.lst.SetItemData(form.lst.NewIndex(), i);
    }
    if (inOneUpdate) form.lst.EndUpdate();
    EXPECT_EQ(form.Rows(), (Rows{"", "<No Mod>", "1st", "alpha", "Alpha", "Zeta"}));
    std::vector<int> data;
    for (int i = 0; i < 6; ++i)
      data.push_back(form.lst.ItemData(i));
    EXPECT_EQ(data, (std::vector<int>{5, 2, 4, 1, 3, 0}));
    EXPECT_TRUE(form.clicks.empty());
  }
}

TEST_F(ListBoxTest, TheSelectionStaysWithItsRow) {
  struct Case {
    const char* what;
    std::function<void(ListBox&)> change;
    int index;
  };
  const Case cases[] = {
      {"a row comes before it", [](ListBox& lst) { lst.AddItem("a"); }, 2},
      {"a row comes behind it", [](ListBox& lst) { lst.AddItem("z"); }, 1},
      {"an update",
       [](ListBox& lst) {
         const win::ListUpdate update(lst);
         lst.AddItem("a");
         lst.AddItem("A");
       },
       3},
      {"a row before it goes", [](ListBox& lst) { lst.RemoveItem(0); }, 0},
      {"it goes itself", [](ListBox& lst) { lst.RemoveItem(1); }, -1},
      {"all go", [](ListBox& lst) { lst.Clear(); }, -1},
      {"a row that is not there goes",
       [](ListBox& lst) {
         lst.RemoveItem(7);
         lst.RemoveItem(-1);
       },
       1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    ListForm form(ListStyle::kSorted);
    for (const char* text : {"m", "n", "o"})
      form.lst.AddItem(text);
    form.lst.SetListIndex(1);
    form.clicks.clear();
    c.change(form.lst);
    EXPECT_EQ(form.lst.ListIndex(), c.index);
    EXPECT_TRUE(form.clicks.empty());
  }
}

TEST_F(ListBoxTest, PlainRowsGoWhereTheyAreToldTo) {
  ListForm form(ListStyle::kPlain);
  form.lst.AddItem("b");
  form.lst.AddItem("c");
  form.lst.AddItem("a", 0);
  form.lst.AddItem("b2", 2);
  form.lst.AddItem("far", 99);
  EXPECT_EQ(form.lst.NewIndex(), 4);
  form.lst.SetList(3, "C");
  EXPECT_EQ(form.Rows(), (Rows{"a", "b", "b2", "C", "far"}));
  EXPECT_EQ(form.lst.List(9), "");
  EXPECT_EQ(form.lst.ItemData(-1), 0);
}

TEST_F(ListBoxTest, CodeAndPersonRaiseTheSameClick) {
  ListForm form(ListStyle::kPlain);
  for (const char* text : {"a", "b", "c"})
    form.lst.AddItem(text);
  form.Show();
  form.lst.SetListIndex(1);
  form.lst.SetListIndex(1);
  form.lst.SetListIndex(9);
  EXPECT_EQ(form.clicks, (std::vector<int>{1}));
  form.clicks.clear();
  test::ClickRow(form.lst, 2);
  test::ClickRow(form.lst, 2);
  test::PressKey(form.lst, Qt::Key_Up);
  test::PressKey(form.lst, Qt::Key_Shift);
  QTest::mouseClick(form.lst.Widget()->findChild<QWidget*>("qt_scrollarea_viewport"), Qt::LeftButton, {}, {20, 150});
  EXPECT_EQ(form.clicks, (std::vector<int>{2, 2, 1})) << "the empty space below the rows is no row";
  EXPECT_EQ(form.lst.ListIndex(), 1);
}

TEST_F(ListBoxTest, TheFirstKeySelectsTheFirstRow) {
  ListForm form(ListStyle::kPlain);
  for (const char* text : {"a", "b"})
    form.lst.AddItem(text);
  form.Show();
  form.lst.SetFocus();
  EXPECT_EQ(form.lst.ListIndex(), -1);
  test::PressKey(form.lst, Qt::Key_Down);
  EXPECT_EQ(form.lst.ListIndex(), 0);
}

TEST_F(ListBoxTest, TicksTravelAndAreTold) {
  ListForm form(ListStyle::kCheckBoxes);
  for (const char* text : {"a", "b", "c"})
    form.lst.AddItem(text);
  form.Show();
  form.lst.SetSelected(1, true);
  form.lst.SetSelected(1, true);
  form.lst.SetSelected(9, true);
  EXPECT_EQ(form.checks, (std::vector<int>{1}));
  EXPECT_TRUE(form.clicks.empty());
  form.lst.AddItem("first", 0);
  EXPECT_TRUE(form.lst.Selected(2));
  test::ClickTick(form.lst, 3);
  EXPECT_TRUE(form.lst.Selected(3));
  EXPECT_EQ(form.checks, (std::vector<int>{1, 3}));
  EXPECT_EQ(form.clicks, (std::vector<int>{3})) << "once, and behind the tick";
  test::PressKey(form.lst, Qt::Key_Space);
  EXPECT_FALSE(form.lst.Selected(3));
  EXPECT_EQ(form.clicks, (std::vector<int>{3, 3}));
}

TEST_F(ListBoxTest, RowsKeepTheirBytes) {
  ListForm form(ListStyle::kSorted);
  for (const char* text : {"caf\xe9", "caf\xc3\xa9", "a\tb\r\nc"}) {
    form.lst.AddItem(text);
    EXPECT_EQ(form.lst.List(form.lst.NewIndex()), text);
  }
}

TEST_F(ListBoxTest, AHandlerMayRebuildOrDestroyTheList) {
  auto form = std::make_unique<ListForm>(ListStyle::kCheckBoxes);
  for (const char* text : {"a", "b", "c"})
    form->lst.AddItem(text);
  form->Show();
  form->lst.Click = [&form] {
    form->lst.Clear();
    form->lst.AddItem("new");
  };
  test::ClickTick(form->lst, 2);
  EXPECT_EQ(form->Rows(), (Rows{"new"}));
  form->lst.ItemCheck = [&form](int) { form.reset(); };
  test::ClickTick(form->lst, 0);
  EXPECT_FALSE(form);
}

TEST_F(ListBoxTest, AHundredThousandRowsTakeWellUnderASecond) {
  ListForm form(ListStyle::kSorted);
  form.Show();
  QElapsedTimer clock;
  clock.start();
  {
    const win::ListUpdate update(form.lst);
    for (int i = 0; i < 100000; ++i) {
      form.lst.AddItem("map " + std::to_string((i * 7919LL) % 100000));
      form.lst.SetItemData(form.lst.NewIndex(), i);
    }
  }
  form.lst.SetListIndex(99999);
  test::RunEvents();
  // Sanitizers and a busy machine included; quadratic work would take minutes.
  EXPECT_LT(clock.elapsed(), 5000);
  RecordProperty("milliseconds", static_cast<int>(clock.elapsed()));
  EXPECT_EQ(form.lst.List(0), "map 0");
  EXPECT_EQ(form.lst.ItemData(0), 0);
}

}  // namespace
