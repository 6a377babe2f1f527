#include "windowing/form.h"

#include "platform/windowing/formwindow.h"
#include "tests/harness/window_app.h"
#include "windowing/button.h"
#include "windowing/textbox.h"

#include <QScreen>
#include <QScrollArea>

#include <vector>

namespace {

using win::UnloadMode;
using win::WindowState;
using Log = std::vector<std::string>;

// A form with two boxes and two buttons that writes down what happens to it.
struct TestForm : win::Form {
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

  void Open() {
    test::ShowActive(*this);
    txtName.SetFocus();
    log.clear();
  }

  win::TextBox txtName{*this, "txtName"};
  win::TextBox txtOther{*this, "txtOther"};
  win::Button cmdOk{*this, "cmdOk", "&Ok"};
  win::Button cmdCancel{*this, "cmdCancel", "Cancel"};
  Log log;
  bool refuse = false;
};

using FormTest = test::WindowTest;

TEST_F(FormTest, LivesFromLoadToUnload) {
  TestForm form;
  EXPECT_TRUE(form.Close());
  form.Show();
  form.Hide();
  form.Show();
  form.refuse = true;
  EXPECT_FALSE(form.Close());
  EXPECT_TRUE(form.Visible());
  form.refuse = false;
  form.Window()->close();  // the close box
  EXPECT_FALSE(form.Visible() || form.Loaded());
  form.Show();
  EXPECT_EQ(form.log, (Log{"Load", "QueryUnload1", "QueryUnload0", "Unload", "Load"}));
}

TEST_F(FormTest, AModalFormReturnsWhenItIsClosedHiddenOrDestroyed) {
  TestForm owner;
  owner.Show();
  std::unique_ptr<TestForm> form;
  const std::function<void()> ends[] = {
      [&form] { form->Close(); },
      [&form] { form->Hide(); },
      [&form] { form.reset(); },
  };
  for (const auto& end : ends) {
    form = std::make_unique<TestForm>();
    test::DuringModal([&end](win::Form&) { end(); });
    form->ShowModal(&owner);
    EXPECT_FALSE(form && form->Visible());
  }
  TestForm closed;
  closed.Load = [&closed] { closed.Close(); };
  closed.ShowModal();
  EXPECT_FALSE(closed.Visible() || closed.Loaded());
}

TEST_F(FormTest, EnterAndEscapePressTheButtonsMeantForThem) {
  TestForm form;
  form.Open();
  test::PressKey(form.txtName, Qt::Key_Return);
  test::PressKey(form.txtName, Qt::Key_Escape);
  EXPECT_EQ(form.log, (Log{"Ok", "Cancel"}));
  form.cmdCancel.SetFocus();
  test::PressKey(form.cmdCancel, Qt::Key_Enter);
  EXPECT_EQ(form.log, (Log{"Ok", "Cancel", "Cancel"})) << "a button with the focus comes first";
  form.cmdCancel.SetEnabled(false);
  test::PressKey(form.txtName, Qt::Key_Escape);
  EXPECT_EQ(form.log.size(), 3u);
}

TEST_F(FormTest, FocusEventsComeOncePerMove) {
  TestForm form;
  form.Open();
  form.txtOther.GotFocus = [&form] { form.log.push_back("other"); };
  form.txtOther.LostFocus = [&form] { form.log.push_back("left"); };
  test::ClickOn(form.txtOther);
  TestForm second;
  test::ShowActive(second);
  test::ShowActive(form);
  EXPECT_EQ(form.log, (Log{"other"})) << "another window has the focus for a while only";
  QTest::keyClick(form.txtOther.Widget(), Qt::Key_O, Qt::AltModifier);
  EXPECT_TRUE(test::Await([&form] { return form.log.size() > 2; }));  // Qt shows the button pressed for a moment
  EXPECT_EQ(form.log, (Log{"other", "left", "Ok"})) << "what was typed is taken in before a button's key works";
}

TEST_F(FormTest, ADisabledFormTakesNoInputAndKeepsItsLook) {
  TestForm form;
  win::Menu mnuFile(form, "mnuFile", "&File");
  win::MenuItem mnuReload(mnuFile, "mnuReload", "&Reload");
  mnuReload.SetShortcut("F5");
  mnuReload.Click = [&form] { form.log.push_back("F5"); };
  form.Open();
  form.SetEnabled(false);
  test::ClickOn(form.cmdOk);
  QWindow* const native = form.Window()->windowHandle();  // where keys arrive
  QTest::keyClick(native, Qt::Key_A);
  QTest::keyClick(native, Qt::Key_F5);
  QTest::keyClick(native, Qt::Key_O, Qt::AltModifier);
  form.Window()->close();
  EXPECT_EQ(form.log, Log{});
  EXPECT_EQ(form.txtName.Text(), "");
  EXPECT_TRUE(form.cmdOk.Widget()->isEnabled() && form.txtName.HasFocus());
  form.SetEnabled(true);
  QTest::keyClick(native, Qt::Key_F5);
  mnuReload.SetEnabled(false);
  test::PressKey(form.txtName, Qt::Key_F5);
  test::ClickOn(form.cmdOk);
  EXPECT_EQ(form.log, (Log{"F5", "Ok"}));
}

TEST_F(FormTest, HidingKeepsPlaceAndState) {
  TestForm form;
  form.Move(1500, 3000);
  form.Show();
  EXPECT_DOUBLE_EQ(form.Left(), 1500);
  form.Window()->move(10, 20);
  form.SetState(WindowState::kMinimized);
  form.Hide();
  form.Show();
  EXPECT_DOUBLE_EQ(form.Left(), 150) << "a person's move counts more than the first place";
  EXPECT_EQ(form.State(), WindowState::kMinimized);
  form.SetState(WindowState::kNormal);
  EXPECT_TRUE(form.Visible() && !form.Window()->isMinimized());
}

TEST_F(FormTest, OpensWhollyOnOneScreen) {
  const QList<QRect> screens = {QRect(0, 0, 1000, 800), QRect(1000, 100, 600, 400)};
  const struct {
    const char* what;
    QRect frame;
    QPoint place;
  } cases[] = {
      {"partly off", QRect(-150, 700, 300, 200), QPoint(0, 568)},
      {"off to the left, title above the screen", QRect(-5000, -100, 300, 200), QPoint(0, 0)},
      {"below everything", QRect(10, 5000, 300, 200), QPoint(10, 568)},
      {"on the second screen", QRect(1200, 150, 300, 200), QPoint(1200, 150)},
      {"larger than the screen", QRect(-9000, -9000, 3000, 2000), QPoint(0, 0)},
  };
  for (const auto& c : cases)
    EXPECT_EQ(win::PlaceOnScreen(c.frame, screens), c.place) << c.what;
  EXPECT_EQ(win::PlaceOnScreen(QRect(5, 6, 7, 8), {}), QPoint(5, 6));
}

TEST_F(FormTest, AWindowTooTallForTheScreenScrolls) {
  win::Form form("frmTall", 6000, 60000);
  win::Button cmdLast(form, "cmdLast", "Last");
  cmdLast.Move(0, 59000, 1500, 375);
  form.Move(1000, 1000);
  form.Show();
  EXPECT_TRUE(form.Window()->screen()->availableGeometry().contains(form.Window()->geometry()));
  EXPECT_DOUBLE_EQ(form.Height(), 60000);
  form.Window()->findChild<QScrollArea*>()->ensureWidgetVisible(cmdLast.Widget());
  EXPECT_EQ(cmdLast.Widget()->visibleRegion().boundingRect().size(), cmdLast.Widget()->size());
}

}  // namespace
