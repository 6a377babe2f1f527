#include "windowing/form.h"

#include "platform/system/process/services.h"
#include "platform/windowing/formwindow.h"
#include "tests/harness/window_app.h"
#include "windowing/button.h"
#include "windowing/checkbox.h"
#include "windowing/label.h"
#include "windowing/listbox.h"
#include "windowing/menu.h"
#include "windowing/statusbar.h"
#include "windowing/textbox.h"

#include <QApplication>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <optional>
#include <vector>

namespace {

using win::Form;
using win::UnloadMode;
using win::WindowState;
using Log = std::vector<std::string>;

// A form with two boxes and two buttons that writes down what happens to it.
struct TestForm : Form {
  TestForm() : Form("frmTest", 3000, 2250) {
    txtName.Move(0, 300, 3000, 300);
    txtOther.Move(0, 600, 3000, 300);
    cmdOk.Move(0, 1500, 1500, 375);
    cmdCancel.Move(1500, 1500, 1500, 375);
    Load = [this] { log.push_back("Load"); };
    QueryUnload = [this](bool& cancel, UnloadMode mode) {
      log.push_back("QueryUnload" + std::to_string(static_cast<int>(mode)));
      cancel = refuse;
    };
    Unload = [this] { log.push_back("Unload"); };
    cmdOk.Click = [this] { log.push_back("Ok"); };
    cmdCancel.Click = [this] { log.push_back("Cancel"); };
    SetDefaultButton(cmdOk);
    SetCancelButton(cmdCancel);
  }

  void ClearLog() { log.clear(); }

  win::TextBox txtName{*this, "txtName"};
  win::TextBox txtOther{*this, "txtOther"};
  win::Button cmdOk{*this, "cmdOk", "&Ok"};
  win::Button cmdCancel{*this, "cmdCancel", "Cancel"};
  Log log;
  bool refuse = false;
};

class FormTest : public test::WindowTest {};

TEST_F(FormTest, LivesFromLoadToUnload) {
  TestForm form;
  EXPECT_FALSE(form.Loaded());
  EXPECT_TRUE(form.Close());
  form.Show();
  form.Hide();
  form.Show();
  EXPECT_EQ(form.log, (Log{"Load"}));
  form.refuse = true;
  EXPECT_FALSE(form.Close());
  EXPECT_TRUE(form.Visible());
  form.refuse = false;
  form.Window()->close();  // the close box
  EXPECT_FALSE(form.Visible());
  EXPECT_FALSE(form.Loaded());
  EXPECT_EQ(form.log, (Log{"Load", "QueryUnload1", "QueryUnload0", "Unload"}));
  form.Show();
  EXPECT_EQ(form.log.back(), "Load");
}

TEST_F(FormTest, OpenFormsStandInTheOrderOfLoading) {
  TestForm first;
  first.EnsureLoaded();
  {
    TestForm second;
    second.Show(&first);
    EXPECT_EQ(win::OpenForms(), (std::vector<Form*>{&first, &second}));
  }
  EXPECT_EQ(win::OpenForms(), (std::vector<Form*>{&first})) << "a destroyed form is gone";
}

TEST_F(FormTest, AModalFormReturnsWhenItIsClosedHiddenOrDestroyed) {
  TestForm owner;
  owner.Show();
  const std::function<void(Form&)> ends[] = {
      [](Form& form) { form.Close(); },
      [](Form& form) { form.Hide(); },
      [](Form& form) { test::PressKey(form, Qt::Key_Escape); },
  };
  for (const auto& end : ends) {
    TestForm form;
    form.cmdCancel.Click = [&form] { form.Close(); };
    test::DuringModal(end);
    form.ShowModal(&owner);
    EXPECT_FALSE(form.Visible());
  }
  auto doomed = std::make_unique<TestForm>();
  test::DuringModal([&doomed](Form&) { doomed.reset(); });
  doomed->ShowModal(&owner);
  EXPECT_FALSE(doomed);
}

TEST_F(FormTest, AModalFormThatLoadClosesIsNeverShown) {
  TestForm form;
  form.Load = [&form] { form.Close(); };
  form.ShowModal();
  EXPECT_FALSE(form.Visible());
  EXPECT_FALSE(form.Loaded());
}

TEST_F(FormTest, AFormMayBeDestroyedByItsOwnEvents) {
  const std::function<void(std::unique_ptr<TestForm>&)> acts[] = {
      [](auto& form) {
        form->cmdOk.Click = [&form] { form.reset(); };
        test::ClickOn(form->cmdOk);
      },
      [](auto& form) {
        form->Unload = [&form] { form.reset(); };
        form->Close();
      },
      [](auto& form) {
        form->QueryUnload = [&form](bool&, UnloadMode) { form.reset(); };
        form->Window()->close();
      },
      [](auto& form) {
        form->txtName.Change = [&form] { form.reset(); };
        test::Type(form->txtName, "x");
      },
      [](auto& form) {
        form->txtName.KeyPress = [&form](int&) { form.reset(); };
        test::Type(form->txtName, "x");
      },
      [](auto& form) {
        form->txtName.SetFocus();
        form->txtName.LostFocus = [&form] { form.reset(); };
        form->txtOther.SetFocus();
      },
  };
  for (const auto& act : acts) {
    auto form = std::make_unique<TestForm>();
    form->Show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form->Window()));
    act(form);
    EXPECT_FALSE(form);
    test::RunEvents();
  }
}

TEST_F(FormTest, EnterAndEscapePressTheButtonsMeantForThem) {
  struct Case {
    const char* what;
    int key;
    std::function<void(TestForm&)> prepare;
    Log pressed;
  };
  const Case cases[] = {
      {"Enter in a box", Qt::Key_Return, [](TestForm& form) { form.txtName.SetFocus(); }, {"Ok"}},
      {"Enter on another button", Qt::Key_Enter, [](TestForm& form) { form.cmdCancel.SetFocus(); }, {"Cancel"}},
      {"Escape in a box", Qt::Key_Escape, [](TestForm& form) { form.txtName.SetFocus(); }, {"Cancel"}},
      {"a disabled button", Qt::Key_Escape, [](TestForm& form) { form.cmdCancel.SetEnabled(false); }, {}},
      {"a box that takes keys itself",
       Qt::Key_Return,
       [](TestForm& form) {
         form.txtName.SetFocus();
         form.txtName.KeyPress = [&form](int& key) { form.log.push_back(std::to_string(key)); };
       },
       {"13"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    TestForm form;
    form.Show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.Window()));
    c.prepare(form);
    form.ClearLog();
    QTest::keyClick(form.Window()->focusWidget(), static_cast<Qt::Key>(c.key));
    EXPECT_EQ(form.log, c.pressed);
  }
}

TEST_F(FormTest, FocusEventsComeOncePerMove) {
  TestForm form;
  form.txtName.GotFocus = [&form] { form.log.push_back("name"); };
  form.txtName.LostFocus = [&form] { form.log.push_back("left"); };
  form.txtOther.GotFocus = [&form] { form.log.push_back("other"); };
  form.cmdOk.SetFocus();
  form.Show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(form.Window()));
  form.ClearLog();
  test::ClickOn(form.txtName);
  TestForm second;
  second.Show(&form);
  ASSERT_TRUE(QTest::qWaitForWindowActive(second.Window()));
  form.SetFocus();
  ASSERT_TRUE(QTest::qWaitForWindowActive(form.Window()));
  EXPECT_EQ(form.log, (Log{"name"})) << "another window has it for a while only";
  QTest::keyClick(form.txtName.Widget(), Qt::Key_Tab);
  EXPECT_EQ(form.log, (Log{"name", "left", "other"}));
  form.txtName.SetFocus();
  form.ClearLog();
  QTest::keyClick(form.txtName.Widget(), Qt::Key_O, Qt::AltModifier);
  EXPECT_TRUE(test::Await([&form] { return form.log.size() > 1; }));  // Qt shows the button pressed for a moment
  EXPECT_EQ(form.log, (Log{"left", "Ok"})) << "a button's key takes in what was typed first";
}

TEST_F(FormTest, ADisabledFormTakesNoInputAndKeepsItsLook) {
  TestForm form;
  win::Menu mnuFile(form, "mnuFile", "&File");
  win::MenuItem mnuReload(mnuFile, "mnuReload", "&Reload");
  mnuReload.SetShortcut("F5");
  mnuReload.Click = [&form] { form.log.push_back("F5"); };
  form.Show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(form.Window()));
  form.txtName.SetFocus();
  form.ClearLog();
  form.SetEnabled(false);
  test::ClickOn(form.cmdOk);
  test::Type(form.txtName, "abc");
  QTest::keyClick(form.txtName.Widget(), Qt::Key_F5);
  QTest::keyClick(form.txtName.Widget(), Qt::Key_O, Qt::AltModifier);
  form.Window()->close();
  EXPECT_EQ(form.log, Log{});
  EXPECT_EQ(form.txtName.Text(), "");
  EXPECT_TRUE(form.cmdOk.Widget()->isEnabled());
  EXPECT_TRUE(form.txtName.HasFocus());
  form.SetEnabled(true);
  QTest::keyClick(form.txtName.Widget(), Qt::Key_F5);
  test::ClickOn(form.cmdOk);
  EXPECT_EQ(form.log, (Log{"F5", "Ok"}));
}

TEST_F(FormTest, StateAndVisibilityAreApart) {
  TestForm form;
  form.Show();
  form.SetState(WindowState::kMinimized);
  form.SetVisible(false);
  EXPECT_EQ(form.State(), WindowState::kMinimized);
  form.SetVisible(true);
  EXPECT_EQ(form.State(), WindowState::kMinimized);
  form.SetState(WindowState::kNormal);
  EXPECT_TRUE(form.Visible());
  EXPECT_FALSE(form.Window()->isMinimized());
}

TEST_F(FormTest, PlacesAreTwipsAndSurviveHiding) {
  TestForm form;
  form.Move(1500, 3000);
  form.Show();
  EXPECT_DOUBLE_EQ(form.Left(), 1500);
  EXPECT_DOUBLE_EQ(form.Top(), 3000);
  EXPECT_DOUBLE_EQ(form.Height(), 2250);
  form.Window()->move(10, 20);
  form.Hide();
  form.Show();
  EXPECT_DOUBLE_EQ(form.Left(), 150) << "a person's move counts more than the first place";
}

TEST_F(FormTest, TheTitleBarCanAlwaysBeReached) {
  const QList<QRect> screens = {QRect(0, 0, 1000, 800), QRect(1000, 100, 600, 400)};
  struct Case {
    const char* what;
    QRect frame;
    QPoint place;
  };
  const Case cases[] = {
      {"on the screen", QRect(10, 20, 300, 200), QPoint(10, 20)},
      {"partly off, grip in reach", QRect(-150, 700, 300, 200), QPoint(-150, 700)},
      {"off to the left", QRect(-5000, 20, 300, 200), QPoint(0, 20)},
      {"title above the screen", QRect(10, -100, 300, 200), QPoint(10, 0)},
      {"below everything", QRect(10, 5000, 300, 200), QPoint(10, 600)},
      {"on the second screen", QRect(1200, 150, 300, 200), QPoint(1200, 150)},
      {"larger than the screen", QRect(-9000, -9000, 3000, 2000), QPoint(0, 0)},
  };
  for (const Case& c : cases)
    EXPECT_EQ(win::ReachablePlace(c.frame, screens), c.place) << c.what;
  EXPECT_EQ(win::ReachablePlace(QRect(5, 6, 7, 8), {}), QPoint(5, 6));
}

TEST_F(FormTest, AWindowTooTallForTheScreenScrolls) {
  Form form("frmTall", 6000, 60000);
  win::Button cmdLast(form, "cmdLast", "Last");
  cmdLast.Move(0, 59000, 1500, 375);
  form.Move(1000, 1000);
  form.Show();
  const QRect screen = form.Window()->screen()->availableGeometry();
  EXPECT_TRUE(screen.contains(form.Window()->geometry()));
  EXPECT_DOUBLE_EQ(form.Height(), 60000);
  auto* scroll = form.Window()->findChild<QScrollArea*>();
  scroll->ensureWidgetVisible(cmdLast.Widget());
  EXPECT_TRUE(form.Window()->rect().contains(cmdLast.Widget()->mapTo(form.Window(), QPoint(0, 0))));
  EXPECT_EQ(cmdLast.Widget()->visibleRegion().boundingRect().size(), cmdLast.Widget()->size());
}

TEST_F(FormTest, HidingTheStatusBarShrinksTheWindow) {
  Form form("frmMain", 6000, 4500);
  win::Menu mnuFile(form, "mnuFile", "&File");
  win::StatusBar bar(form, "StatusBar1");
  bar.Move(0, 4125, 6000, 375);
  form.Show();
  const double full = form.Height();
  EXPECT_GT(full, 4500) << "the menu bar stands above the inside";
  form.SetHeight(full - bar.Height());
  EXPECT_DOUBLE_EQ(form.Height(), full - 375);
  EXPECT_EQ(form.Area()->height(), bar.Widget()->y());
  form.SetHeight(full);
  EXPECT_DOUBLE_EQ(form.Height(), full);
}

TEST_F(FormTest, DoEventsServesACallByItselfAndALoopCheaply) {
  TestForm form;
  form.Show();
  test::RunEvents();
  int painted = 0;
  struct Counter : QObject {
    explicit Counter(int& count) : count_(count) {}
    bool eventFilter(QObject*, QEvent* event) override { return event->type() == QEvent::Paint && ++count_ == 0; }
    int& count_;
  } counter(painted);
  win::Label lblStatus(form, "lblstatus");
  lblStatus.Move(0, 0, 3000, 300);
  lblStatus.Widget()->installEventFilter(&counter);
  const auto started = std::chrono::steady_clock::now();
  for (int i = 0; i < 20000; ++i) {
    lblStatus.SetCaption(std::to_string(i));
    win::DoEvents();
  }
  const auto spent = std::chrono::steady_clock::now() - started;
  const auto pauses = spent / std::chrono::milliseconds(10);
  EXPECT_GE(painted, 1);
  EXPECT_LE(painted, pauses + 21) << "once in ten milliseconds at most, but for the first few";
  test::Await([] { return false; }, 50);
  bool served = false;
  QTimer::singleShot(0, qApp, [&served] { served = true; });
  win::DoEvents();
  EXPECT_TRUE(served);
}

}  // namespace
