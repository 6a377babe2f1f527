#include "windowing/application.h"

#include "platform/system/process/services.h"
#include "tests/harness/window_app.h"

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <signal.h>

namespace {

// With real boxes.
class ApplicationTest : public test::WindowTest {
 protected:
  ApplicationTest() { win::AnswerBoxesWith({}); }
};

// Runs `act` on the box that is on the screen.
template <class Box>
void OnBox(std::function<void(Box&)> act) {
  QTimer::singleShot(0, qApp, [act] { act(*qobject_cast<Box*>(QApplication::activeModalWidget())); });
}

TEST_F(ApplicationTest, ABoxShowsTextsAsTheyAreAndGivesTheButton) {
  const struct {
    int style;
    Qt::Key key;
    win::Answer answer;
  } cases[] = {
      {win::kOkOnly, Qt::Key_Escape, win::Answer::kOk},
      {win::kYesNo, Qt::Key_Return, win::Answer::kYes},
      {win::kYesNo, Qt::Key_Escape, win::Answer::kNo},
      {win::kYesNoCancel, Qt::Key_Escape, win::Answer::kCancel},
  };
  for (const auto& c : cases) {
    OnBox<QMessageBox>([&c](QMessageBox& box) {
      EXPECT_EQ(box.windowTitle(), "Varnik");
      EXPECT_EQ(box.text(), QString::fromUtf8("<b>caf\xc3\xa9"));
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      QTest::keyClick(&box, c.key);
    });
    EXPECT_EQ(win::MsgBox("<b>caf\xe9", c.style), c.answer) << c.style;
  }
}

TEST_F(ApplicationTest, ABoxInFrontOfADisabledFormCanBeAnswered) {
  win::Form form("frmMain", 1500, 1500);
  test::ShowActive(form);
  form.SetEnabled(false);
  OnBox<QMessageBox>([](QMessageBox& box) {
    QTimer::singleShot(test::kLongestWait, &box, [&box] { box.reject(); });
    QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
  });
  EXPECT_EQ(win::MsgBox("Go on?", win::kYesNo), win::Answer::kYes);
}

TEST_F(ApplicationTest, AnInputBoxKeepsBytesAndIsEmptyWhenCancelled) {
  for (const auto& [key, answer] : {std::pair{Qt::Key_Return, "caf\xe9"}, {Qt::Key_Escape, ""}}) {
    OnBox<QInputDialog>([&key](QInputDialog& box) { QTest::keyClick(&box, key); });
    EXPECT_EQ(win::InputBox("Name?", "", "caf\xe9"), answer);
  }
}

using Prepare = std::function<void(win::Form& form)>;

// In a process of its own: the event loop of the tests' application, with one form.
[[noreturn]] void RunProgram(const Prepare& prepare) {
  win::Form form("frmMain", 1500, 1500);
  form.QueryUnload = [](bool&, win::UnloadMode mode) { fprintf(stderr, "mode %d;", static_cast<int>(mode)); };
  QTimer::singleShot(test::kLongestWait, qApp, [] { _exit(99); });
  prepare(form);
  test::App().Run();
  fprintf(stderr, "ended");
  _exit(0);
}

using ApplicationDeathTest = ApplicationTest;

TEST_F(ApplicationDeathTest, TheProgramRunsUntilNoFormIsLoaded) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto expectEnd = [](const char* told, const Prepare& prepare) {
    EXPECT_EXIT(RunProgram(prepare), ::testing::ExitedWithCode(0), told);
  };
  expectEnd("ended", [](win::Form&) {});
  expectEnd("mode 0;ended", [](win::Form& form) {
    form.Show();
    QTimer::singleShot(0, qApp, [&form] { form.Window()->close(); });
  });
  expectEnd("waits;mode 2;ended", [](win::Form& form) {
    test::App().SetMainForm(&form);
    form.Show();
    form.SetEnabled(false);
    raise(SIGTERM);
    QTimer::singleShot(300, qApp, [&form] {
      fprintf(stderr, "waits;");
      form.SetEnabled(true);
    });
  });
}

}  // namespace
