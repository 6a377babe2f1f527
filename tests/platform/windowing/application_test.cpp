#include "windowing/application.h"

#include "platform/system/process/services.h"
#include "tests/harness/window_app.h"
#include "windowing/dialogs.h"
#include "windowing/form.h"

#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <signal.h>

namespace {

class ApplicationTest : public test::WindowTest {};

TEST_F(ApplicationTest, BoxesAreAnsweredByTheScript) {
  boxes.ExpectMsgBox("Remove?", win::Answer::kYes, "Sure?");
  boxes.ExpectInputBox("Name?", "typed");
  boxes.ExpectFolderDialog("Search Start", "/games");
  EXPECT_EQ(win::MsgBox("Remove?", win::kYesNo + win::kCritical, "Sure?"), win::Answer::kYes);
  EXPECT_EQ(boxes.Last().style, 20);
  EXPECT_EQ(win::InputBox("Name?", "", "old"), "typed");
  EXPECT_EQ(boxes.Last().initial, "old");
  EXPECT_EQ(win::BrowseForFolder(nullptr, "Search Start"), "/games");
}

// Runs `act` on the box that is on the screen.
template <class Box>
void OnBox(std::function<void(Box&)> act) {
  QTimer::singleShot(0, qApp, [act] { act(*qobject_cast<Box*>(QApplication::activeModalWidget())); });
}

TEST_F(ApplicationTest, ARealBoxShowsTextsAsTheyAreAndGivesTheButton) {
  win::AnswerBoxesWith({});
  struct Case {
    int style;
    int key;
    win::Answer answer;
  };
  const Case cases[] = {
      {win::kOkOnly, Qt::Key_Escape, win::Answer::kOk},
      {win::kYesNo, Qt::Key_Return, win::Answer::kYes},
      {win::kYesNo, Qt::Key_Escape, win::Answer::kNo},
      {win::kYesNoCancel, Qt::Key_Escape, win::Answer::kCancel},
  };
  for (const Case& c : cases) {
    OnBox<QMessageBox>([&c](QMessageBox& box) {
      EXPECT_EQ(box.windowTitle(), "Varnik");
      EXPECT_EQ(box.text(), QString::fromUtf8("<b>caf\xc3\xa9"));
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      QTest::keyClick(&box, static_cast<Qt::Key>(c.key));
    });
    EXPECT_EQ(win::MsgBox("<b>caf\xe9", c.style), c.answer) << c.style;
  }
}

TEST_F(ApplicationTest, ABoxInFrontOfADisabledFormCanBeAnswered) {
  win::AnswerBoxesWith({});
  win::Form form("frmMain", 1500, 1500);
  form.Show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(form.Window()));
  form.SetEnabled(false);
  OnBox<QMessageBox>([](QMessageBox& box) {
    QTimer::singleShot(2000, &box, [&box] { box.reject(); });
    QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
  });
  EXPECT_EQ(win::MsgBox("Go on?", win::kYesNo), win::Answer::kYes);
}

TEST_F(ApplicationTest, ARealInputBoxKeepsBytesAndIsEmptyWhenCancelled) {
  win::AnswerBoxesWith({});
  OnBox<QInputDialog>([](QInputDialog& box) { QTest::keyClick(&box, Qt::Key_Return); });
  EXPECT_EQ(win::InputBox("Name?", "", "caf\xe9"), "caf\xe9");
  OnBox<QInputDialog>([](QInputDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(win::InputBox("Name?", "", "old"), "");
}

// In a process of its own: the event loop of the tests' application, with one form.
int RunProgram(const std::function<void(win::Form&, win::Application&)>& prepare) {
  win::Form form("frmMain", 1500, 1500);
  form.QueryUnload = [](bool&, win::UnloadMode mode) { fprintf(stderr, "mode %d;", static_cast<int>(mode)); };
  QTimer::singleShot(5000, qApp, [] { _exit(99); });
  prepare(form, test::App());
  test::App().Run();
  fprintf(stderr, "ended");
  return 0;
}

using ApplicationDeathTest = ApplicationTest;

TEST_F(ApplicationDeathTest, TheProgramRunsUntilNoFormIsLoaded) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto expectEnd = [](const char* told, const std::function<void(win::Form&, win::Application&)>& prepare) {
    EXPECT_EXIT(_exit(RunProgram(prepare)), ::testing::ExitedWithCode(0), told);
  };
  expectEnd("ended", [](win::Form&, win::Application&) {});
  expectEnd("mode 0;ended", [](win::Form& form, win::Application&) {
    form.Show();
    QTimer::singleShot(0, qApp, [&form] { form.Window()->close(); });
  });
  expectEnd("mode 1;ended", [](win::Form& form, win::Application&) {
    form.EnsureLoaded();  // a form that never shows keeps the program too
    QTimer::singleShot(50, qApp, [&form] { form.Close(); });
  });
  expectEnd("mode 2;ended", [](win::Form& form, win::Application& application) {
    application.SetMainForm(&form);
    form.Show();
    QTimer::singleShot(0, qApp, [] { raise(SIGTERM); });
  });
  expectEnd("waits;mode 2;ended", [](win::Form& form, win::Application& application) {
    application.SetMainForm(&form);
    form.Show();
    form.SetEnabled(false);
    raise(SIGINT);
    QTimer::singleShot(300, qApp, [&form] {
      fprintf(stderr, "waits;");
      form.SetEnabled(true);
    });
  });
}

}  // namespace
