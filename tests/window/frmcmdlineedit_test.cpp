#include "cmdline/ui/frmcmdlineedit.h"

#include "cmdline/ui/frmcmdline.h"
#include "tests/window/pagetest.h"

using namespace varnik;
using win::Answer;

namespace {

constexpr char kAsk[] = "Would you like to save your changes to the current command line parameter?";
constexpr char kAskMany[] = "Would you like to save your changes to the current command line parameters?";
constexpr char kAskFile[] = "Would you like to save your changes to the current file?";
constexpr char kAskRemove[] = "Are you sure you want to remove this parameter?";
constexpr char kAskDelete[] = "Are you sure you want to delete the custom command line config file for this install?";
constexpr char kConfirm[] =
    "Are you sure you want to save your changes? This cannot be undone! Note: This will only affect the current BZ2 "
    "install.";
constexpr char kSaved[] =
    "The list has been saved. Changes will take effect the next time you run Varnik, reset defaults, or change to this "
    "BZ2 Directory again.";
constexpr char kTitle[] = "Save Changes?";

class OptionEditor : public test::PageTest {
 protected:
  OptionEditor() { test::WriteFile(sandbox_.App() / "varnik.cmd", "a\r\n*b:1\r\nc\r\n"); }

  void Open() {
    page_.LoadList();
    test::ShowActive(form_);
  }

  void ExpectSave() {
    boxes.ExpectMsgBox(kConfirm, Answer::kYes, kTitle);
    boxes.ExpectMsgBox(kSaved, Answer::kOk, "Saved");
  }

  // What a save leaves in the install, its lines joined by blanks.
  std::string Saved() {
    ExpectSave();
    page_.cmdSaveFile_Click();
    std::string text = Content("varnik.cmd");
    for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n"))
      text.replace(at, 2, " ");
    return text;
  }

  std::string calls_;
  test::PageForm<FrmCMDLineEdit> form_{OptionEditHost{[this] { calls_ += "page;"; }, [this] { calls_ += "reload;"; }}};
  FrmCMDLineEdit& page_ = form_.page;
};

using Page = FrmCMDLineEdit;

constexpr auto kTick = [](Page& p) { test::ClickTick(p.lstCmdLineParam, 2); };
constexpr auto kLeaveRow = [](Page& p) { test::ClickRow(p.lstCmdLineParam, 2); };
constexpr auto kAdd = [](Page& p) { test::ClickOn(p.cmdAdd); };
constexpr auto kAddTwo = [](Page& p) { kAdd(p), kAdd(p); };
constexpr auto kRemove = [](Page& p) { test::ClickOn(p.cmdRemove); };
constexpr auto kRemoveByKey = [](Page& p) { test::PressKey(p.lstCmdLineParam, Qt::Key_Delete); };
constexpr auto kDown = [](Page& p) { test::ClickOn(p.cmdMoveDown); };
constexpr auto kUpTwice = [](Page& p) {
  test::PressCtrl(p.lstCmdLineParam, Qt::Key_Up), test::PressCtrl(p.lstCmdLineParam, Qt::Key_Up);
};
constexpr auto kPressEnter = [](Page& p) { test::PressKey(p.txtCmdEdit, Qt::Key_Return); };
constexpr auto kRetract = [](Page& p) { test::PressKey(p.txtCmdEdit, Qt::Key_Backspace), kLeaveRow(p); };
// The edit ends in the text of the row that is selected next.
constexpr auto kTypeNextRow = [](Page& p) {
  p.txtCmdEdit.SetText("c"), kLeaveRow(p), test::ClickRow(p.lstCmdLineParam, 1);
};

struct Asked {
  const char* text;
  Answer answer;
};

struct StepCase {
  int row;
  const char* typed;  // into the box for the row's text
  std::vector<Asked> asked;
  void (*act)(Page& page);
  const char* saved;
  const char* text;  // in the box at last
};

const StepCase kSteps[] = {
    {0, "", {}, kTick, "a *b:1 *c ", "c"},
    {1, "0", {}, kPressEnter, "a *b:10 c ", "b:10"},
    {1, "0", {{kAsk, Answer::kYes}}, kLeaveRow, "a *b:10 c ", "c"},
    {1, "0", {{kAsk, Answer::kNo}}, kLeaveRow, "a *b:1 c ", "c"},
    {1, "0", {{kAsk, Answer::kCancel}, {kAskMany, Answer::kYes}}, kLeaveRow, "a *b:10 c ", "b:10"},
    {1, "0", {}, kRetract, "a *b:1 c ", "c"},
    {0, "", {{kAsk, Answer::kNo}}, kTypeNextRow, "a *b:1 c ", "b:1"},
    {1,
     "0",
     {{kAsk, Answer::kNo}, {kAsk, Answer::kNo}},
     kAddTwo,
     "a *b:1 c <New Option> <New Option> ",
     "<New Option>"},
    {1, "0", {{kAsk, Answer::kCancel}, {kAskMany, Answer::kNo}}, kAdd, "a *b:1 c ", "b:10"},
    {1, "0", {{kAskRemove, Answer::kYes}}, kRemove, "a c ", "c"},
    {1, "", {{kAskRemove, Answer::kNo}}, kRemoveByKey, "a *b:1 c ", "b:1"},
    {1, "", {}, kUpTwice, "*b:1 a c ", "b:1"},
    {1, "0", {{kAsk, Answer::kYes}}, kDown, "a c *b:10 ", "b:10"},
    {1, "0", {{kAsk, Answer::kCancel}, {kAskMany, Answer::kCancel}}, kDown, "a *b:1 c ", "b:10"},
};

TEST_F(OptionEditor, AsksBeforeAnEditIsLost) {
  for (const StepCase& c : kSteps) {
    SCOPED_TRACE(&c - kSteps);
    std::filesystem::remove(InRoot("varnik.cmd"));
    test::ClickOn(page_.cmdSaveChanges);  // nothing waits from the case before
    Open();
    test::ClickRow(page_.lstCmdLineParam, c.row);
    test::Type(page_.txtCmdEdit, c.typed);
    for (const Asked& asked : c.asked)
      boxes.ExpectMsgBox(asked.text, asked.answer, asked.text == kAskRemove ? "Remove?" : kTitle);
    c.act(page_);
    EXPECT_EQ(Saved(), c.saved);
    EXPECT_EQ(page_.txtCmdEdit.Text(), c.text);
  }
}

TEST_F(OptionEditor, LeavingThePageSavesOrForgets) {
  Open();
  page_.OfferToSave();  // nothing to ask
  for (const Answer answer : {Answer::kNo, Answer::kCancel, Answer::kYes}) {
    test::ClickTick(page_.lstCmdLineParam, 0);
    boxes.ExpectMsgBox(kAskFile, answer, kTitle);
    if (answer == Answer::kYes) boxes.ExpectMsgBox(kConfirm, Answer::kNo, kTitle);
    page_.OfferToSave();
    EXPECT_EQ(Content("varnik.cmd"), "");
    if (answer != Answer::kYes) page_.OfferToSave();
  }
}

TEST_F(OptionEditor, AnEditWaitsForItsRowWhileThePageIsAway) {
  Open();
  test::ClickRow(page_.lstCmdLineParam, 1);
  test::Type(page_.txtCmdEdit, "0");
  boxes.ExpectMsgBox(kAsk, Answer::kYes, kTitle);
  Open();
  EXPECT_EQ(Saved(), "a *b:10 c ");
}

TEST_F(OptionEditor, SavesForTheInstallThatTheListIsOf) {
  Open();
  test::ClickTick(page_.lstCmdLineParam, 0);
  UseInstallFolder(sandbox_.AppText());
  boxes.ExpectMsgBox(kAskFile, Answer::kYes, kTitle);
  ExpectSave();
  page_.OfferToSave();
  EXPECT_EQ(Content("varnik.cmd"), "*a\r\n*b:1\r\nc\r\n");
  EXPECT_EQ(test::ReadFile(sandbox_.App() / "varnik.cmd"), "a\r\n*b:1\r\nc\r\n");
}

TEST_F(OptionEditor, AnEmptyListHidesTheProgramsUntilItIsDeleted) {
  Open();
  test::ClickOn(page_.cmdDeleteCustom);  // there is none
  for (int i = 0; i < 3; ++i) {
    boxes.ExpectMsgBox(kAskRemove, Answer::kYes, "Remove?");
    test::ClickOn(page_.cmdRemove);
  }
  EXPECT_EQ(page_.txtCmdEdit.Text(), "");
  EXPECT_FALSE(page_.txtCmdEdit.Enabled() || page_.cmdRemove.Enabled() || page_.cmdSaveChanges.Enabled() ||
               page_.cmdSaveFile.Enabled());
  test::PressKey(page_.lstCmdLineParam, Qt::Key_Delete);
  test::PressCtrl(page_.lstCmdLineParam, Qt::Key_S);
  EXPECT_EQ(Saved(), "");
  EXPECT_TRUE(std::filesystem::exists(InRoot("varnik.cmd")));
  Open();
  EXPECT_EQ(page_.lstCmdLineParam.ListCount(), 0);
  for (const Answer answer : {Answer::kNo, Answer::kYes}) {
    EXPECT_TRUE(std::filesystem::exists(InRoot("varnik.cmd")));
    boxes.ExpectMsgBox(kAskDelete, answer, "Are you sure?");
    test::ClickOn(page_.cmdDeleteCustom);
  }
  EXPECT_FALSE(std::filesystem::exists(InRoot("varnik.cmd")));
  EXPECT_EQ(calls_, "page;reload;");
}

class OptionPage : public test::PageTest {
 protected:
  test::PageForm<FrmCmdLine> form_{std::function<void()>()};
  FrmCmdLine& page_ = form_.page;
};

TEST_F(OptionPage, TicksBecomeTextThatMayBeEdited) {
  test::WriteFile(InRoot("varnik.cmd"), "a\r\n*b:1\r\n");
  page_.populatecmdlinelist();
  test::ShowActive(form_);
  EXPECT_EQ(page_.txtCmdLine.Text(), "b 1");
  test::Type(page_.txtCmdLine, "!");
  test::ClickRow(page_.lstCmdLine, 1);
  EXPECT_EQ(page_.txtCmdLine.Text(), "b 1!") << "a move of the cursor keeps the edit";
  test::ClickTick(page_.lstCmdLine, 0);
  EXPECT_EQ(page_.txtCmdLine.Text(), "a b 1");
  test::PressKey(page_.lstCmdLine, Qt::Key_Space);
  EXPECT_EQ(page_.txtCmdLine.Text(), "b 1");
  test::Type(page_.txtMapFileName, "m.bzn");
  test::ClickOn(page_.chkCMDEdit);
  EXPECT_EQ(page_.buildcmdline(true), "/edit m.bzn b 1");
  EXPECT_EQ(page_.buildcmdline(false), "b 1");
  test::ClickTick(page_.lstCmdLine, 1);
  test::ClickOn(page_.cmdCMDReset);
  EXPECT_EQ(page_.txtCmdLine.Text(), "b 1");
}

TEST_F(OptionPage, SaysThatThereIsNoList) {
  test::WriteFile(InRoot("varnik.cmd"), "*a\r\n");
  page_.populatecmdlinelist();
  std::filesystem::remove(InRoot("varnik.cmd"));
  boxes.ExpectMsgBox("varnik.cmd not found. Command Line Parameter listing disabled.");
  page_.populatecmdlinelist();
  EXPECT_EQ(page_.lstCmdLine.ListCount(), 0);
  EXPECT_EQ(page_.buildcmdline(true), "");
}

}  // namespace
