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
constexpr char kConfirm[] = "Are you sure you want to save your changes? This cannot be undone! Note: This will only";

using Page = FrmCMDLineEdit;

class OptionEditor : public test::PageTest {
 protected:
  OptionEditor() { test::WriteFile(sandbox.App() / "varnik.cmd", "a\r\n*b:1\r\nc\r\n"); }

  void Open() {
    page_.LoadList();
    test::ShowActive(form_);
  }

  void ExpectSave() {
    ExpectMsgBox(kConfirm, Answer::kYes, "Save Changes?");
    ExpectMsgBox("The list has been saved. Changes will take effect the next time", Answer::kOk, "Saved");
  }

  // What a save leaves in the install, its lines joined by blanks.
  std::string Saved() {
    ExpectSave();
    page_.cmdSaveFile_Click();
    std::string text = Content("varnik.cmd");
    std::erase(text, '\r');
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
  }

  std::string calls_;
  test::PageForm<Page> form_{OptionEditHost{[this] { calls_ += "page;"; }, [this] { calls_ += "reload;"; }}};
  Page& page_ = form_.page;
};

// A question and the button that answers it.
struct Asked {
  const char* text;
  Answer answer;
};
constexpr Asked kKeep = {kAsk, Answer::kYes}, kDrop = {kAsk, Answer::kNo}, kStay = {kAsk, Answer::kCancel};
constexpr Asked kKeepMany = {kAskMany, Answer::kYes}, kDropMany = {kAskMany, Answer::kNo};
constexpr Asked kRemove = {kAskRemove, Answer::kYes}, kLeave = {kAskRemove, Answer::kNo};

void LeaveRow(Page& page) { test::ClickRow(page.lstCmdLineParam, 2); }
void Add(Page& page) { test::ClickOn(page.cmdAdd); }
void MoveUp(Page& page) { test::PressKey(page.lstCmdLineParam, Qt::Key_Up, Qt::ControlModifier, 2); }

const struct {
  int row;
  const char* typed;  // into the box for the row's text
  std::vector<Asked> asked;
  void (*act)(Page& page);
  const char* saved;
  const char* text;  // in the box at last
} kSteps[] = {
    {0, "", {}, [](Page& p) { test::ClickTick(p.lstCmdLineParam, 2); }, "a *b:1 *c ", "c"},
    {1, "0", {}, [](Page& p) { test::PressKey(p.txtCmdEdit, Qt::Key_Return); }, "a *b:10 c ", "b:10"},
    {1, "0", {kKeep}, LeaveRow, "a *b:10 c ", "c"},
    {1, "0", {kDrop}, LeaveRow, "a *b:1 c ", "c"},
    {1, "0", {kStay, kKeepMany}, LeaveRow, "a *b:10 c ", "b:10"},
    {1, "0", {kDrop, kDrop}, Add, "a *b:1 c <New Option> ", "<New Option>"},
    {1, "0", {kStay, kDropMany}, Add, "a *b:1 c ", "b:10"},
    {1, "0", {kRemove}, [](Page& p) { test::ClickOn(p.cmdRemove); }, "a c ", "c"},
    {1, "", {kLeave}, [](Page& p) { test::PressKey(p.lstCmdLineParam, Qt::Key_Delete); }, "a *b:1 c ", "b:1"},
    {1, "", {}, MoveUp, "*b:1 a c ", "b:1"},
    {1, "0", {kKeep}, [](Page& p) { test::ClickOn(p.cmdMoveDown); }, "a c *b:10 ", "b:10"},
};

TEST_F(OptionEditor, AsksBeforeAnEditIsLost) {
  for (const auto& c : kSteps) {
    SCOPED_TRACE(&c - kSteps);
    std::filesystem::remove(InRoot("varnik.cmd"));
    test::ClickOn(page_.cmdSaveChanges);  // nothing waits from the case before
    Open();
    test::ClickRow(page_.lstCmdLineParam, c.row);
    test::Type(page_.txtCmdEdit, c.typed);
    for (const Asked& asked : c.asked)
      ExpectMsgBox(asked.text, asked.answer);
    c.act(page_);
    EXPECT_EQ(Saved(), c.saved);
    EXPECT_EQ(page_.txtCmdEdit.Text(), c.text);
  }
}

TEST_F(OptionEditor, LeavingThePageSavesOrForgets) {
  Open();
  page_.OfferToSave();  // nothing to ask
  test::ClickTick(page_.lstCmdLineParam, 0);
  ExpectMsgBox(kAskFile, Answer::kCancel, "Save Changes?");
  page_.OfferToSave();
  page_.OfferToSave();
  test::ClickTick(page_.lstCmdLineParam, 2);
  ExpectMsgBox(kAskFile, Answer::kYes);
  ExpectMsgBox(kConfirm, Answer::kNo);
  page_.OfferToSave();
  EXPECT_EQ(Content("varnik.cmd"), "");
  // The list is still that of the install that was selected when it was loaded.
  UseInstallFolder(sandbox.AppText());
  ExpectMsgBox(kAskFile, Answer::kYes);
  ExpectSave();
  page_.OfferToSave();
  EXPECT_EQ(Content("varnik.cmd"), "*a\r\n*b:1\r\n*c\r\n");
}

TEST_F(OptionEditor, AnEditWaitsForItsRowWhileThePageIsAway) {
  Open();
  test::ClickRow(page_.lstCmdLineParam, 1);
  test::Type(page_.txtCmdEdit, "0");
  ExpectMsgBox(kAsk, Answer::kYes);
  Open();
  EXPECT_EQ(Saved(), "a *b:10 c ");
}

TEST_F(OptionEditor, AnEmptyListHidesTheProgramsUntilItIsDeleted) {
  Open();
  for (int i = 0; i < 3; ++i) {
    ExpectMsgBox(kAskRemove, Answer::kYes);
    test::ClickOn(page_.cmdRemove);
  }
  EXPECT_FALSE(page_.txtCmdEdit.Enabled() || page_.cmdRemove.Enabled() || page_.cmdSaveChanges.Enabled() ||
               page_.cmdSaveFile.Enabled());
  test::PressKey(page_.lstCmdLineParam, Qt::Key_Delete);
  EXPECT_EQ(Saved() + page_.txtCmdEdit.Text(), "");
  Open();
  EXPECT_EQ(page_.lstCmdLineParam.ListCount(), 0);
  for (const Answer answer : {Answer::kNo, Answer::kYes}) {
    EXPECT_TRUE(std::filesystem::exists(InRoot("varnik.cmd")));
    ExpectMsgBox("Are you sure you want to delete the custom command line config file", answer, "Are you sure?");
    test::ClickOn(page_.cmdDeleteCustom);
  }
  EXPECT_FALSE(std::filesystem::exists(InRoot("varnik.cmd")));
  EXPECT_EQ(calls_, "page;reload;");
}

TEST_F(OptionEditor, TicksBecomeTextThatMayBeEdited) {
  Put("varnik.cmd", "a\r\n*b:1\r\n");
  test::PageForm<FrmCmdLine> form{std::function<void()>()};
  FrmCmdLine& page = form.page;
  page.populatecmdlinelist();
  test::ShowActive(form);
  EXPECT_EQ(page.txtCmdLine.Text(), "b 1");
  test::Type(page.txtCmdLine, "!");
  test::ClickRow(page.lstCmdLine, 1);
  EXPECT_EQ(page.txtCmdLine.Text(), "b 1!") << "a move of the cursor keeps the edit";
  test::ClickTick(page.lstCmdLine, 0);
  test::Type(page.txtMapFileName, "m.bzn");
  test::ClickOn(page.chkCMDEdit);
  EXPECT_EQ(page.buildcmdline(true), "/edit m.bzn a b 1");
  test::ClickOn(page.cmdCMDReset);
  EXPECT_EQ(page.txtCmdLine.Text(), "b 1");
  std::filesystem::remove(InRoot("varnik.cmd"));
  std::filesystem::remove(sandbox.App() / "varnik.cmd");
  ExpectMsgBox("varnik.cmd not found. Command Line Parameter listing disabled.");
  page.populatecmdlinelist();
  EXPECT_EQ(page.lstCmdLine.ListCount(), 0);
}

TEST_F(OptionEditor, IsAskedBeforeTheProgramEnds) {
  const std::pair<Asked, bool> cases[] = {{{kAskFile, Answer::kCancel}, false}, {{kAskFile, Answer::kNo}, true}};
  Open();
  EXPECT_TRUE(page_.MayClose());
  test::ClickTick(page_.lstCmdLineParam, 0);
  for (const auto& [asked, ends] : cases) {
    ExpectMsgBox(asked.text, asked.answer);
    EXPECT_EQ(page_.MayClose(), ends);
  }
  EXPECT_TRUE(page_.MayClose());
}

}  // namespace
