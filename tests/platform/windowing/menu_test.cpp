#include "windowing/menu.h"

#include "tests/harness/window_app.h"
#include "windowing/form.h"
#include "windowing/treeview.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>

#include <vector>

namespace {

using Log = std::vector<std::string>;

struct MenuForm : win::Form {
  MenuForm() : Form("frmMain", 6000, 4500) {
    mnuSel.Click = [this](int index) { log.push_back(std::to_string(index)); };
    mnuReload.Click = [this] { log.push_back("reload"); };
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
  win::MenuItem mnuAdd{mnuDir, "mnuAdd", "&Add"};
  Log log;
};

class MenuTest : public test::WindowTest {};

TEST_F(MenuTest, ArrayRowsStandInTheirPlaceByIndex) {
  MenuForm form;
  form.mnuSel[0].SetChecked(true);
  EXPECT_TRUE(form.mnuSel.Load(2));
  EXPECT_TRUE(form.mnuSel.Load(1));
  EXPECT_FALSE(form.mnuSel.Load(1));
  EXPECT_FALSE(form.mnuSel.Load(0));
  EXPECT_TRUE(form.mnuSel[2].Checked()) << "a new row looks like row 0";
  form.mnuSel[1].SetCaption("one");
  form.mnuSel[2].SetCaption("two");
  EXPECT_EQ(form.Shown(), (Log{"<none>", "one", "two", "&Reload", "-", "&Add"}));
  EXPECT_EQ(form.mnuSel.UBound(), 2);
  EXPECT_TRUE(form.mnuSel.Unload(1));
  EXPECT_EQ(form.mnuSel.UBound(), 2);
  EXPECT_FALSE(form.mnuSel.Unload(1));
  EXPECT_FALSE(form.mnuSel.Unload(0));
  form.mnuSel.UnloadAll();
  EXPECT_EQ(form.mnuSel.UBound(), 0);
  form.mnuSpacer.SetVisible(false);
  EXPECT_EQ(form.Shown(), (Log{"<none>", "&Reload", "&Add"}));
}

TEST_F(MenuTest, RowsTellTheirIndexAndAMarkDoesNotFollowTheClick) {
  MenuForm form;
  form.mnuSel.Load(1);
  form.mnuSel[1].SetChecked(true);
  test::ClickMenu(form.mnuSel[1]);
  test::ClickMenu(form.mnuSel[0]);
  form.mnuReload.SetEnabled(false);
  test::ClickMenu(form.mnuReload);
  EXPECT_EQ(form.log, (Log{"1", "0"}));
  EXPECT_TRUE(form.mnuSel[1].Checked());
  EXPECT_FALSE(form.mnuSel[0].Checked());
}

TEST_F(MenuTest, ARowMayUnloadItself) {
  MenuForm form;
  form.mnuSel.Load(1);
  form.mnuSel.Click = [&form](int) { form.mnuSel.UnloadAll(); };
  test::ClickMenu(form.mnuSel[1]);
  EXPECT_EQ(form.mnuSel.UBound(), 0);
  test::RunEvents();
}

TEST_F(MenuTest, AShortcutWorksWhileItsRowIsEnabled) {
  MenuForm form;
  form.mnuReload.SetShortcut("F5");
  form.Show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(form.Window()));
  test::PressKey(form, Qt::Key_F5);
  form.mnuReload.SetEnabled(false);
  test::PressKey(form, Qt::Key_F5);
  EXPECT_EQ(form.log, (Log{"reload"}));
}

TEST_F(MenuTest, APopUpReturnsBehindTheClickAndMayUnloadItsForm) {
  auto form = std::make_unique<MenuForm>();
  form->mnuReload.Click = [&form] { form.reset(); };
  QTimer::singleShot(0, qApp, [&form] { QTest::keyClick(form->mnuDir.Native(), Qt::Key_R); });
  form->mnuDir.PopupAtCursor();
  EXPECT_FALSE(form);
}

class TreeTest : public test::WindowTest {
 protected:
  TreeTest() : form("frmTree", 4500, 6000), tree(form, "SettingTree") {
    tree.Move(0, 0, 4500, 6000);
    tree.SetPathSeparator(": ");
    tree.AddRoot("RMod", "Mods");
    tree.AddRoot("RCFG", "Configuration");
    tree.Add("RMod", win::TreeRelation::kNext, "RMap", "Maps");
    tree.Add("RMap", win::TreeRelation::kChild, "CMap1", "DeathMatch");
    tree.Add("CMap1", win::TreeRelation::kChild, "SMap1.3", "Loot");
    tree.NodeClick = [this](const std::string& key) { clicks.push_back(key); };
  }

  win::Form form;
  win::TreeView tree;
  Log clicks;
};

TEST_F(TreeTest, KeysAreUniqueAndPathsJoinTheTexts) {
  EXPECT_EQ(tree.FullPath("SMap1.3"), "Maps: DeathMatch: Loot");
  EXPECT_EQ(tree.FullPath("none"), "");
  EXPECT_FALSE(tree.AddRoot("RMap", "again"));
  EXPECT_FALSE(tree.Add("RMod", win::TreeRelation::kChild, "CMap1", "again"));
  EXPECT_FALSE(tree.Add("none", win::TreeRelation::kChild, "new", "new"));
  EXPECT_TRUE(tree.SetKey("RMod", "RNone"));
  EXPECT_FALSE(tree.Exists("RMod"));
  EXPECT_FALSE(tree.SetKey("RNone", "RMap"));
  EXPECT_TRUE(tree.SetKey("RNone", "RMod"));
}

TEST_F(TreeTest, RemovingANodeTakesItsChildrenAndClicksNothing) {
  form.Show();
  tree.SetSelectedItem("SMap1.3");
  EXPECT_TRUE(tree.Remove("RMap"));
  EXPECT_FALSE(tree.Remove("RMap"));
  for (const char* key : {"RMap", "CMap1", "SMap1.3"})
    EXPECT_FALSE(tree.Exists(key)) << key;
  EXPECT_TRUE(tree.Add("RMod", win::TreeRelation::kNext, "RMap", "Maps"));
  EXPECT_FALSE(tree.Expanded("RMap"));
  test::RunEvents();
  EXPECT_EQ(clicks, Log{});
}

TEST_F(TreeTest, OnlyAPersonRaisesNodeClick) {
  form.Show();
  tree.SetSelectedItem("RMod");
  EXPECT_EQ(clicks, Log{});
  test::ClickNode(tree, "Maps");
  test::ClickNode(tree, "Maps");
  test::PressKey(tree, Qt::Key_Down);
  test::PressKey(tree, Qt::Key_Shift);
  EXPECT_EQ(clicks, (Log{"RMap", "RMap", "RCFG"}));
  tree.SetEnabled(false);
  test::ClickNode(tree, "Mods");
  EXPECT_EQ(tree.SelectedItem(), "RCFG");
}

TEST_F(TreeTest, AClickMayRemoveItsNodeAndSelectAnother) {
  form.Show();
  tree.NodeClick = [this](const std::string& key) {
    tree.Remove(key);
    tree.SetSelectedItem("RMod");
    tree.SetBold("RMod", true);
  };
  test::ClickNode(tree, "Maps");
  EXPECT_EQ(tree.SelectedItem(), "RMod");
  EXPECT_TRUE(tree.Bold("RMod"));
}

}  // namespace
