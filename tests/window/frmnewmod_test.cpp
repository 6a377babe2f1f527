#include "editor/ui/frmnewmod.h"

#include "tests/window/pagetest.h"

using namespace varnik;

namespace {

const std::string kInvalid = "Invalid Filename.", kInclusion = "File will be saved for inclusion only.",
                  kDone = "Done.";

class ModEditor : public test::PageTest {
 protected:
  void Open(const std::string& lines) {
    Put("mod.bzm", "BZ2HALD5 /x\r\n bz2hald2\r\n" + lines);
    dialog_.EnsureLoaded();
    dialog_.loadmod(sandbox.InstallText() + "mod.bzm");
    test::ShowActive(dialog_);
  }

  void ExpectName(const std::string& proposed, const std::string& typed) {
    Expect({win::BoxKind::kInput, "Please specify a filename.", "BZM Filename", 0, proposed}, {{}, typed});
  }

  std::string Rows() const {
    std::string rows;
    for (const std::string& row : test::RowsOf(dialog_.lstFile))
      rows += row + " ";
    return rows;
  }

  int reloads_ = 0;
  frmNewMod dialog_{[this] { ++reloads_; }};
};

TEST_F(ModEditor, TakesARowApartWhenItIsSelected) {
  const char* const shown[] = {
      // Directive, its help, the parts with their notes.
      "<Blank>|Blank Line|Comment:",
      "<Blank>|Blank Line|Comment:",
      "DName|Descriptive name for the mod|Name:Don't go too long|Comment:",
      "addrecy|1.3: Recycler ODF addition|ODF:Recycler ODF Name|Description:Recycler Description|"
      "OPT: File:Optional Recycler File|Comment:Use for readability",
  };
  Open("-\r\nwhat(ever); //is this\r\ndname(a);\r\naddrecy(a,b,c);\r\n");
  EXPECT_FALSE(dialog_.cmbCmd.Enabled() || dialog_.cmbParam.Enabled() || dialog_.txtParam.Enabled());
  for (int row = 0; row < 4; ++row) {
    test::ClickRow(dialog_.lstFile, row);
    std::string text = dialog_.cmbCmd.Text() + "|" + dialog_.lblHelpCmd.Caption();
    for (int part = 0; part < dialog_.cmbParam.ListCount(); ++part) {
      test::ChooseRow(dialog_.cmbParam, part);
      text += "|" + dialog_.cmbParam.Text() + ":" + dialog_.lblHelpParam.Caption();
    }
    EXPECT_EQ(text, shown[row]);
  }
  EXPECT_EQ(Rows(), "- //is this DName(\"a\"); addrecy(\"a\",\"b\",\"c\"); ");
}

TEST_F(ModEditor, ChangesRows) {
  const auto press = [](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    return [key, modifiers](frmNewMod& d) { test::PressKey(d.lstFile, key, modifiers, 3); };
  };
  const struct {
    int row;
    std::function<void(frmNewMod&)> act;
    const char* rows;
    int selected;
  } cases[] = {
      {-1, [](frmNewMod& d) { test::ClickOn(d.cmdAdd); }, "- a(1); //b Pak(c); ", 0},
      {1, press(Qt::Key_Insert), "a(1); //b - - - Pak(c); ", 4},
      {1, [](frmNewMod& d) { test::ClickOn(d.cmdRemove); }, "a(1); Pak(\"c\"); ", 1},
      {1, press(Qt::Key_Delete), "", -1},
      {2, press(Qt::Key_Up, Qt::ControlModifier), "Pak(\"c\"); a(1); //b ", 0},
      {1, press(Qt::Key_Down, Qt::ControlModifier), "a(1); Pak(c); //b ", 2},
      {2, [](frmNewMod& d) { test::ChooseRow(d.cmbCmd, 16); }, "a(1); //b Fold(\"c\"); ", 2},
      {2, [](frmNewMod& d) { test::Type(d.txtParam, "!"); }, "a(1); //b Pak(\"c!\"); ", 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.rows);
    Open("a(1);\r\n//b\r\nPak(c);\r\n");
    if (c.row >= 0) test::ClickRow(dialog_.lstFile, c.row);
    c.act(dialog_);
    EXPECT_EQ(Rows(), c.rows);
    EXPECT_EQ(dialog_.lstFile.ListIndex(), c.selected);
    EXPECT_EQ(dialog_.cmbCmd.Enabled(), c.selected >= 0);
  }
}

TEST_F(ModEditor, SavesUnderTheNameThatItIsGiven) {
  const struct {
    const char* answer;
    bool locked;
    std::vector<std::string> told;
    const char* file;
    const char* content;
  } cases[] = {
      {" locked.bzm ", true, {kDone}, "locked.bzm", "BZ2HALD5 /x\r\nDName(a);\r\n\r\n"},
      {"mod.bzm", false, {kDone}, "mod.bzm", "BZ2HALD5\r\nDName(a);\r\n\r\n"},
      {"addon\\MOD.BZM", false, {kInclusion, kDone}, "addon/MOD.BZM", "DName(a);\r\n\r\n"},
      {"yourmod.bzm", false, {kInvalid}, "yourmod.bzm", ""},
      {"", false, {kInvalid}, "", ""},
  };
  Open("DName(a);\r\n\r\n");
  for (const auto& c : cases) {
    dialog_.chkLock.SetValue(c.locked);
    ExpectName("mod.bzm", c.answer);
    for (const std::string& told : c.told)
      ExpectMsgBox(told);
    test::PressKey(dialog_.txtParam, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Content(c.file), c.content) << c.answer;
  }
}

TEST_F(ModEditor, AsksBeforeUnsavedRowsAreLost) {
  const auto escape = [](frmNewMod& d) { QTest::keyClick(d.Window(), Qt::Key_Escape); };
  const auto cancel = [](frmNewMod& d) { test::ClickOn(d.cmdCancel); };
  const struct {
    bool edited;
    std::function<void(frmNewMod&)> leave;
    std::optional<win::Answer> answer;
    bool stays;
  } cases[] = {
      {false, escape, {}, false},
      {true, escape, win::Answer::kCancel, true},
      {true, [](frmNewMod& d) { d.Window()->close(); }, win::Answer::kNo, false},
      {true, cancel, {}, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    Open("a(1);\r\n");
    test::ClickRow(dialog_.lstFile, 0);
    if (c.edited) test::ClickOn(dialog_.cmdAdd);
    if (c.answer) ExpectMsgBox("Would you like to save your changes?", *c.answer);
    c.leave(dialog_);
    EXPECT_EQ(dialog_.Visible(), c.stays);
  }
}

TEST_F(ModEditor, SavesAnEmptyFileOnlyWithARowAndReloadsWhenItIsLeft) {
  test::ShowActive(dialog_);
  ExpectMsgBox("Nothing to save. And yes, I will save all blank lines and comments.");
  test::ClickOn(dialog_.cmdSave);
  test::ClickOn(dialog_.cmdAdd);
  ExpectName("yourmod.bzm", "new.bzm");
  ExpectMsgBox(kDone);
  test::ClickOn(dialog_.cmdSave);
  EXPECT_EQ(Content("new.bzm"), "BZ2HALD5\r\n\r\n");
  test::ClickOn(dialog_.cmdCancel);
  dialog_.Show();
  dialog_.Window()->close();
  EXPECT_EQ(reloads_, 2);
}

TEST_F(ModEditor, KeepsWhatItCannotShow) {
  dialog_.loadmod(sandbox.InstallText() + "missing.bzm");
  EXPECT_EQ(Rows(), "");
  const std::string text(10000000, 'x');
  Open("DName(" + text + ");\r\ncaf\xe9 (\r\n");
  test::ClickRow(dialog_.lstFile, 0);
  test::Type(dialog_.txtParam, "!");
  EXPECT_TRUE(Rows() == "DName(\"" + text + "\"); caf\xe9 ( ");
}

}  // namespace
