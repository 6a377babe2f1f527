#include "editor/ui/frmnewmod.h"

#include "tests/window/pagetest.h"

#include <chrono>

using namespace varnik;

namespace {

constexpr char kPrompt[] = "Please specify a filename.";
constexpr char kInvalid[] = "Invalid Filename. Please specify a (different) filename. Aborting save.";
constexpr char kInclusion[] = "File will be saved for inclusion only.";
constexpr char kDone[] = "Done. No error checking preformed.";

class ModEditor : public test::PageTest {
 protected:
  void Open(const std::string& lines) {
    test::WriteFile(InRoot("mod.bzm"), "BZ2HALD5 /x\r\n bz2hald2\r\n" + lines);
    dialog_.EnsureLoaded();
    dialog_.loadmod(sandbox_.InstallText() + "mod.bzm");
    test::ShowActive(dialog_);
  }

  std::string Rows() const {
    std::string rows;
    for (int i = 0; i < dialog_.lstFile.ListCount(); ++i)
      rows += dialog_.lstFile.List(i) + " ";
    return rows;
  }

  int reloads_ = 0;
  frmNewMod dialog_{[this] { ++reloads_; }};
};

struct RowCase {
  const char* row;
  const char* shown;  // directive, its help, the parts with their notes
};

const RowCase kRows[] = {
    {"-", "<Blank>|Blank Line|Comment:"},
    {"what(ever); //is this", "<Blank>|Blank Line|Comment:"},
    {"ACTIVATED();", "activated|Activate/Deactivate Mod Trigger|Comment:"},
    {"dname(a);", "DName|Descriptive name for the mod|Name:Don't go too long|Comment:"},
    {"addrecy(a,b,c);",
     "addrecy|1.3: Recycler ODF addition|ODF:Recycler ODF Name|Description:Recycler Description|"
     "OPT: File:Optional Recycler File|Comment:Use for readability"},
};

TEST_F(ModEditor, TakesARowApartWhenItIsSelected) {
  std::string lines;
  for (const RowCase& c : kRows)
    lines += std::string(c.row) + "\r\n";
  Open(lines);
  EXPECT_FALSE(dialog_.cmbCmd.Enabled() || dialog_.cmbParam.Enabled() || dialog_.txtParam.Enabled());
  for (int row = 0; row < static_cast<int>(std::size(kRows)); ++row) {
    test::ClickRow(dialog_.lstFile, row);
    EXPECT_EQ(dialog_.cmbParam.ListIndex(), 0);
    std::string shown = dialog_.cmbCmd.Text() + "|" + dialog_.lblHelpCmd.Caption();
    for (int part = 0; part < dialog_.cmbParam.ListCount(); ++part) {
      test::ChooseRow(dialog_.cmbParam, part);
      shown += "|" + dialog_.cmbParam.Text() + ":" + dialog_.lblHelpParam.Caption();
    }
    EXPECT_EQ(shown, kRows[row].shown);
  }
  EXPECT_EQ(Rows(), "- //is this activated(); DName(\"a\"); addrecy(\"a\",\"b\",\"c\"); ");
}

struct StepCase {
  int row;
  void (*act)(frmNewMod& dialog);
  const char* rows;
  int selected;
  const char* focused;
};

void PressThrice(frmNewMod& dialog, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  for (int i = 0; i < 3; ++i)
    QTest::keyClick(dialog.lstFile.Widget(), key, modifiers);
}

const StepCase kSteps[] = {
    {-1, [](frmNewMod& d) { test::ClickOn(d.cmdAdd); }, "- a(1); //b Pak(c); ", 0, "cmdAdd"},
    {1, [](frmNewMod& d) { PressThrice(d, Qt::Key_Insert); }, "a(1); //b - - - Pak(c); ", 4, "lstFile"},
    {1, [](frmNewMod& d) { test::ClickOn(d.cmdRemove); }, "a(1); Pak(\"c\"); ", 1, "cmdRemove"},
    {1, [](frmNewMod& d) { PressThrice(d, Qt::Key_Delete); }, "", -1, "lstFile"},
    {2, [](frmNewMod& d) { PressThrice(d, Qt::Key_Up, Qt::ControlModifier); }, "Pak(\"c\"); a(1); //b ", 0, "lstFile"},
    {1, [](frmNewMod& d) { PressThrice(d, Qt::Key_Down, Qt::ControlModifier); }, "a(1); Pak(c); //b ", 2, "lstFile"},
    {2, [](frmNewMod& d) { test::ChooseRow(d.cmbCmd, 16); }, "a(1); //b Fold(\"c\"); ", 2, "lstFile"},
    {2, [](frmNewMod& d) { test::Type(d.txtParam, "!"); }, "a(1); //b Pak(\"c!\"); ", 2, "lstFile"},
};

TEST_F(ModEditor, ChangesRows) {
  for (const StepCase& c : kSteps) {
    SCOPED_TRACE(c.rows);
    Open("a(1);\r\n//b\r\nPak(c);\r\n");
    if (c.row >= 0) test::ClickRow(dialog_.lstFile, c.row);
    c.act(dialog_);
    EXPECT_EQ(Rows(), c.rows);
    EXPECT_EQ(dialog_.lstFile.ListIndex(), c.selected);
    EXPECT_EQ(dialog_.cmbCmd.Enabled(), c.selected >= 0);
    EXPECT_EQ(test::Focused(dialog_), c.focused);
  }
}

struct SaveCase {
  const char* answer;
  bool locked;
  std::vector<const char*> told;
  const char* file;
  const char* content;
};

const SaveCase kSaves[] = {
    {"mod.bzm", false, {kDone}, "mod.bzm", "BZ2HALD5\r\nDName(a);\r\n\r\n"},
    {" locked.bzm ", true, {kDone}, "locked.bzm", "BZ2HALD5 /x\r\nDName(a);\r\n\r\n"},
    {"MOD2.BZM", true, {kInclusion, kDone}, "MOD2.BZM", "DName(a);\r\n\r\n"},
    {"addon\\part.txt", false, {kInclusion, kDone}, "addon/part.txt", "DName(a);\r\n\r\n"},
    {"nowhere\\x.bzm", false, {kDone}, "nowhere/x.bzm", ""},
    {"yourmod.bzm", false, {kInvalid}, "yourmod.bzm", ""},
    {"", false, {kInvalid}, "", ""},
};

TEST_F(ModEditor, SavesUnderTheNameThatItIsGiven) {
  Open("DName(a);\r\n\r\n");
  EXPECT_EQ(dialog_.Caption(), "Edit Mod File: mod.bzm");
  std::filesystem::create_directory(InRoot("addon"));
  for (const SaveCase& c : kSaves) {
    if (c.locked != (dialog_.chkLock.Value() == 1)) test::ClickOn(dialog_.chkLock);
    boxes.ExpectInputBox(kPrompt, c.answer, "BZM Filename", "mod.bzm");
    for (const char* told : c.told)
      boxes.ExpectMsgBox(told);
    test::PressCtrl(dialog_.txtParam, Qt::Key_S);
    EXPECT_EQ(Content(c.file), c.content) << c.answer;
  }
  EXPECT_TRUE(dialog_.Visible());
}

TEST_F(ModEditor, SavesAnEmptyFileOnlyWithARow) {
  test::ShowActive(dialog_);
  EXPECT_EQ(dialog_.Caption(), "Create New Mod File");
  boxes.ExpectMsgBox(
      "Nothing to save. And yes, I will save all blank lines and comments. Mainly because my programmer was too lazy "
      "to check if it was all blank lines and comments, but occasionally because a 'blank' file is wanted for "
      "testing.");
  test::ClickOn(dialog_.cmdSave);
  test::ClickOn(dialog_.cmdAdd);
  boxes.ExpectInputBox(kPrompt, "new.bzm", "BZM Filename", "yourmod.bzm");
  boxes.ExpectMsgBox(kDone);
  test::ClickOn(dialog_.cmdSave);
  EXPECT_EQ(Content("new.bzm"), "BZ2HALD5\r\n\r\n");
}

TEST_F(ModEditor, ReloadsTheInstallHoweverItIsLeft) {
  const std::function<void()> ends[] = {
      [this] { test::ClickOn(dialog_.cmdCancel); },
      [this] { test::PressKey(dialog_, Qt::Key_Escape); },
      [this] { dialog_.Window()->close(); },
  };
  int ended = 0;
  for (const auto& end : ends) {
    test::DuringModal([&end](win::Form&) { end(); });
    dialog_.ShowModal();
    EXPECT_EQ(reloads_, ++ended);
  }
}

TEST_F(ModEditor, KeepsWhatItCannotShow) {
  for (const char* name : {"missing.bzm", "addon"}) {
    dialog_.loadmod(sandbox_.InstallText() + name);
    EXPECT_EQ(Rows(), "");
  }
  const std::string text(40000, 'x');
  Open("DName(" + text + ");\r\ncaf\xe9 (\r\n");
  test::ClickRow(dialog_.lstFile, 0);
  test::Type(dialog_.txtParam, "!");
  EXPECT_EQ(Rows(), "DName(\"" + text + "\"); caf\xe9 ( ");
}

double Milliseconds(const std::function<void()>& act) {
  const auto start = std::chrono::steady_clock::now();
  act();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

TEST_F(ModEditor, IsQuickWithLongFilesAndLongLines) {
  std::string many;
  for (int i = 0; i < 100000; ++i)
    many += "rename(\"addon\\file" + std::to_string(i) + ".odf\",\"data\\file.odf\"); // why\r\n";
  for (const std::string& lines : {many, "rename(" + std::string(10000000, 'x') + ",b);\r\n"}) {
    EXPECT_LT(Milliseconds([&] { Open(lines); }), 2000);
    test::ClickRow(dialog_.lstFile, 0);
    const auto type = [this] {
      for (int i = 0; i < 10; ++i)
        test::Type(dialog_.txtParam, "a"), test::RunEvents();
    };
    EXPECT_LT(Milliseconds(type), 2000);
  }
}

}  // namespace
