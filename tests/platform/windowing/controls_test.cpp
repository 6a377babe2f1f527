#include "tests/harness/window_app.h"
#include "windowing/button.h"
#include "windowing/checkbox.h"
#include "windowing/label.h"
#include "windowing/textbox.h"
#include "windowing/timer.h"

#include <QAbstractButton>

#include <vector>

namespace {

using Log = std::vector<std::string>;

class ControlTest : public test::WindowTest {
 protected:
  win::Form form{"frmControls", 6000, 4500};
  Log log;
};

TEST_F(ControlTest, NamesAreSpokenAsWords) {
  win::TextBox box(form, "txtMapFileName");
  EXPECT_EQ(box.Widget()->accessibleName(), "Map File Name");
  box.SetAccessibleName("Map");
  EXPECT_EQ(box.Widget()->accessibleName(), "Map");
}

TEST_F(ControlTest, ACheckBoxReportsEachChangeOnce) {
  win::CheckBox box(form, "chkVsync", "VSync On");
  box.Move(0, 0, 3000, 300);
  box.Click = [&] { log.push_back(std::to_string(box.Value())); };
  form.Show();
  box.SetValue(1);
  box.SetValue(1);
  test::ClickOn(box);
  test::PressKey(box, Qt::Key_Space);
  box.SetValue(2);
  EXPECT_TRUE(qobject_cast<QAbstractButton*>(box.Widget())->isChecked());
  test::ClickOn(box);
  EXPECT_FALSE(box.SetValue(3) || box.SetValue(-1));
  EXPECT_EQ(log, (Log{"1", "0", "1", "2", "1"}));
  test::ClickOn(box);
  EXPECT_FALSE(qobject_cast<QAbstractButton*>(box.Widget())->isChecked());
}

TEST_F(ControlTest, AComboBoxReportsChoicesAndChanges) {
  win::ComboBox box(form, "cmbWalker");
  box.Click = [&] { log.push_back(box.Text()); };
  form.Show();
  for (const char* row : {"Default", "Cockpit", "caf\xe9"})
    box.AddItem(row);
  EXPECT_EQ(box.ListIndex(), -1) << "no row selects itself";
  EXPECT_TRUE(box.SetListIndex(1) && box.SetListIndex(1));
  EXPECT_FALSE(box.SetListIndex(3));
  test::ChooseRow(box, 2);
  test::ChooseRow(box, 2);
  box.Clear();
  EXPECT_EQ(box.Text() + std::to_string(box.ListIndex()), "-1");
  EXPECT_EQ(log, (Log{"Cockpit", "caf\xe9", "caf\xe9"}));
}

TEST_F(ControlTest, TextComesBackToTheByte) {
  const std::string texts[] = {"caf\xe9 \x81", "caf\xc3\xa9", "a\r\nb\nc\rd", "hard\xc2\xa0 blank",
                               std::string("nul\0!", 5)};
  for (const auto style : {win::TextBoxStyle::kSingleLine, win::TextBoxStyle::kMultiLine}) {
    win::TextBox box(form, "txtText", style);
    box.Change = [this] { log.push_back("change"); };
    for (const std::string& text : texts) {
      log.clear();
      box.SetText(text);
      box.SetText(text);
      EXPECT_EQ(box.Text(), text);
      EXPECT_EQ(log.size(), 1u) << text;
    }
  }
}

TEST_F(ControlTest, EditedTextKeepsItsEncoding) {
  const struct {
    const char* what;
    const char* before;
    const char16_t* typed;
    const char* after;
  } cases[] = {
      {"Windows-1252 stays", "caf\xe9", u"\u00fc", "caf\xe9\xfc"},
      {"unless a character has no place in it", "caf\xe9", u"\u0416", "caf\xc3\xa9\xd0\x96"},
      {"UTF-8 stays", "caf\xc3\xa9", u"\u00fc", "caf\xc3\xa9\xc3\xbc"},
      {"plain text takes UTF-8", "cafe", u"\u00fc", "cafe\xc3\xbc"},
  };
  win::TextBox box(form, "txtText");
  form.Show();
  for (const auto& c : cases) {
    box.SetText(c.before);
    test::PressKey(box, Qt::Key_End);
    QTest::sendKeyEvent(QTest::Click, box.Widget(), Qt::Key_unknown, QString::fromUtf16(c.typed), {});
    EXPECT_EQ(box.Text(), c.after) << c.what;
  }
  win::TextBox page(form, "txtPage", win::TextBoxStyle::kMultiLine);
  page.SetText("a\nb\xa0");
  page.SetFocus();
  test::Type(page, "x");
  page.SetLocked(true);
  test::Type(page, "y");
  EXPECT_EQ(page.Text(), "xa\r\nb\xa0") << "a changed page has the line ends of a text file";
}

TEST_F(ControlTest, CaptionsAreNeverClipped) {
  const std::string text = "Enable this option only when you know exactly what it does to all of your installs";
  win::Label label(form, "lblNote", text);
  win::CheckBox check(form, "chkOption", text);
  win::Button button(form, "cmdRun", text);
  win::Label path(form, "lblPath", "C:\\" + std::string(text.size(), 'x') + "\\");
  win::Label tight(form, "lblTight", "Two lines of text need a little more room than this label has");
  win::Label below(form, "lblBelow", "below");
  label.Move(100, 300, 1500, 255);
  check.Move(1700, 300, 2000, 255);
  button.Move(3800, 300, 2000, 375);
  path.Move(100, 2400, 1500, 255);
  tight.Move(2000, 3400, 3500, 375);
  below.Move(2000, 3790, 3500, 300);
  form.Show();
  for (const win::Control* control : std::initializer_list<win::Control*>{&label, &check, &button, &path}) {
    const QWidget& widget = *control->Widget();
    const QString caption = QString::fromStdString(control == &path ? path.Caption() : text);
    const QRect room(0, 0, widget.width(), 9999);
    const int wrap = Qt::TextWrapAnywhere | Qt::TextWordWrap;
    EXPECT_GE(widget.height(), widget.fontMetrics().boundingRect(room, wrap, caption).height()) << control->Name();
  }
  EXPECT_LE(tight.Widget()->geometry().bottom(), below.Widget()->y());
  EXPECT_LT(tight.Widget()->font().pointSizeF(), form.Area()->font().pointSizeF()) << "it covers no neighbour";
  label.SetCaption("short");
  EXPECT_DOUBLE_EQ(label.Height(), 255) << "the label has its own height again";
}

TEST_F(ControlTest, ATimerStopsInItsOwnTickAndNeverMeetsItself) {
  win::Timer timer(5);
  int ticks = 0;
  timer.Tick = [&] {
    ++ticks;
    test::RunEvents(40);
    timer.SetEnabled(false);
  };
  timer.SetEnabled(true);
  ASSERT_TRUE(test::Await([&] { return ticks > 0; }));
  test::RunEvents(30);
  EXPECT_EQ(ticks, 1);
}

}  // namespace
