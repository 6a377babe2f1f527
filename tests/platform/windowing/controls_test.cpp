#include "tests/harness/window_app.h"
#include "windowing/button.h"
#include "windowing/checkbox.h"
#include "windowing/combobox.h"
#include "windowing/form.h"
#include "windowing/frame.h"
#include "windowing/label.h"
#include "windowing/slider.h"
#include "windowing/statusbar.h"
#include "windowing/textbox.h"
#include "windowing/timer.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QSlider>
#include <QTest>

#include <vector>

namespace {

using win::Form;
using Log = std::vector<std::string>;

class ControlTest : public test::WindowTest {
 protected:
  ControlTest() : form("frmControls", 6000, 4500) {}
  Form form;
  Log log;
};

TEST_F(ControlTest, PlacesComeBackAsTheyWereSetAndNamesAreSpoken) {
  win::Frame frame(form, "frmMod", "Mods");
  win::TextBox box(frame, "txtMapFileName");
  frame.Move(1000, 500, 4000, 3000);
  box.Move(101, 202, 3003, 304);
  EXPECT_DOUBLE_EQ(box.Left(), 101);
  EXPECT_DOUBLE_EQ(box.Height(), 304);
  box.SetHeight(1635);
  EXPECT_DOUBLE_EQ(box.Height(), 1635);
  EXPECT_DOUBLE_EQ(box.Width(), 3003);
  EXPECT_EQ(box.Widget()->objectName(), "txtMapFileName");
  EXPECT_EQ(box.Widget()->accessibleName(), "Map File Name");
  box.SetAccessibleName("Map");
  EXPECT_EQ(box.Widget()->accessibleName(), "Map");
}

TEST_F(ControlTest, AHiddenFrameHidesWhatItHoldsAndMarksStay) {
  win::Frame frame(form, "frmMod", "Mods");
  win::Button button(frame, "cmdAdd", "Add");
  frame.Move(0, 0, 3000, 3000);
  button.Move(100, 100, 1000, 375);
  form.Show();
  frame.SetVisible(false);
  frame.SetEnabled(false);
  EXPECT_FALSE(button.Widget()->isVisible());
  EXPECT_TRUE(button.Visible());
  EXPECT_TRUE(button.Enabled());
  button.Click = [this] { log.push_back("click"); };
  button.Press();
  EXPECT_EQ(log, Log{}) << "its frame is disabled";
}

TEST_F(ControlTest, ACheckBoxTellsEachChangeOnce) {
  win::CheckBox box(form, "chkVsync", "VSync On");
  box.Move(0, 0, 3000, 300);
  box.Click = [&] { log.push_back(std::to_string(box.Value())); };
  form.Show();
  struct Case {
    const char* what;
    std::function<void()> act;
    Log told;
  };
  const Case cases[] = {
      {"set", [&] { box.SetValue(1); }, {"1"}},
      {"set again", [&] { box.SetValue(1); }, {}},
      {"clicked off", [&] { test::ClickOn(box); }, {"0"}},
      {"by key", [&] { test::PressKey(box, Qt::Key_Space); }, {"1"}},
      {"greyed", [&] { box.SetValue(2); }, {"2"}},
      {"clicked when greyed", [&] { test::ClickOn(box); }, {"1"}},
      {"clicked again", [&] { test::ClickOn(box); }, {"0"}},
      {"refused", [&] { EXPECT_FALSE(box.SetValue(3) || box.SetValue(-1)); }, {}},
  };
  for (const Case& c : cases) {
    log.clear();
    c.act();
    EXPECT_EQ(log, c.told) << c.what;
    EXPECT_EQ(qobject_cast<QAbstractButton*>(box.Widget())->isChecked(), box.Value() != 0) << c.what;
  }
}

TEST_F(ControlTest, AComboBoxTellsChoicesAndChanges) {
  win::ComboBox box(form, "cmbWalker");
  box.Move(0, 0, 3000, 300);
  box.Click = [&] { log.push_back(box.Text()); };
  form.Show();
  const char* const rows[] = {"Default", "Cockpit", "caf\xe9"};
  for (const char* row : rows) {
    box.AddItem(row);
    box.SetItemData(box.NewIndex(), box.NewIndex() - 1);
  }
  EXPECT_EQ(box.ListIndex(), -1) << "no row selects itself";
  EXPECT_TRUE(box.SetListIndex(1));
  EXPECT_TRUE(box.SetListIndex(1));
  EXPECT_FALSE(box.SetListIndex(3));
  EXPECT_EQ(box.ItemData(box.ListIndex()), 0);
  test::ChooseRow(box, 2);
  test::ChooseRow(box, 2);
  EXPECT_EQ(log, (Log{"Cockpit", "caf\xe9", "caf\xe9"}));
  box.Clear();
  EXPECT_EQ(box.ListIndex(), -1);
  EXPECT_EQ(box.Text(), "");
  EXPECT_EQ(log.size(), 3u);
}

TEST_F(ControlTest, ASliderTellsMovesAndKeepsItsRange) {
  win::Slider slider(form, "sldtrayicon");
  slider.Move(0, 0, 3000, 300);
  slider.SetRange(1, 1);
  slider.Change = [&] { log.push_back(std::to_string(slider.Value())); };
  form.Show();
  slider.SetRange(1, 5);
  slider.SetValue(4);
  slider.SetValue(4);
  slider.SetValue(99);
  test::PressKey(slider, Qt::Key_Left);
  slider.SetRange(1, 2);
  slider.SetRange(1, 0);
  EXPECT_EQ(log, (Log{"4", "5", "4", "2", "1"}));
  EXPECT_EQ(slider.Max(), 1);
}

TEST_F(ControlTest, TextComesBackToTheByte) {
  const std::string texts[] = {"plain",        "caf\xe9 \x81",       "caf\xc3\xa9",
                               "a\r\nb\nc\rd", "hard\xc2\xa0 blank", std::string("nul\0!", 5)};
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
  struct Case {
    const char* what;
    const char* before;
    const char16_t* typed;
    const char* after;
  };
  const Case cases[] = {
      {"Windows-1252 stays", "caf\xe9", u"\u00fc", "caf\xe9\xfc"},
      {"unless a character has no place in it", "caf\xe9", u"\u0416", "caf\xc3\xa9\xd0\x96"},
      {"UTF-8 stays", "caf\xc3\xa9", u"\u00fc", "caf\xc3\xa9\xc3\xbc"},
      {"plain text takes UTF-8", "cafe", u"\u00fc", "cafe\xc3\xbc"},
  };
  win::TextBox box(form, "txtText");
  form.Show();
  for (const Case& c : cases) {
    box.SetText(c.before);
    QTest::keyClick(box.Widget(), Qt::Key_End);
    QTest::sendKeyEvent(QTest::Click, box.Widget(), Qt::Key_unknown, QString::fromUtf16(c.typed), {});
    EXPECT_EQ(box.Text(), c.after) << c.what;
  }
  win::TextBox page(form, "txtPage", win::TextBoxStyle::kMultiLine);
  page.Move(0, 0, 3000, 3000);
  page.SetText("a\nb\xa0");
  page.SetFocus();
  test::Type(page, "x");
  EXPECT_EQ(page.Text(), "xa\r\nb\xa0") << "a changed page has the line ends of a text file";
}

TEST_F(ControlTest, AHugeTextIsShownInTimeAndLosesNothing) {
  const std::string texts[] = {std::string(200000, 'x'), std::string(5 << 20, '\n'), std::string(3 << 20, '\xe9')};
  for (const auto style : {win::TextBoxStyle::kSingleLine, win::TextBoxStyle::kMultiLine})
    for (const std::string& text : texts) {
      win::TextBox box(form, "txtText", style);
      win::Label label(form, "lblText", text);
      box.Move(0, 0, 3000, 3000);
      label.Move(0, 3000, 3000, 300);
      form.Show();
      box.SetText(text);
      test::Type(box, "a");
      form.Refresh();
      EXPECT_TRUE(box.Text() == text && label.Caption() == text);
    }
}

TEST_F(ControlTest, ABoxTellsTypingAndCanRefuseKeys) {
  win::TextBox box(form, "txtCmdEdit");
  box.Change = [&] { log.push_back(box.Text()); };
  box.KeyPress = [](int& key) { key = key == 'x' ? 0 : key; };
  form.Show();
  test::Type(box, "axb");
  EXPECT_EQ(log, (Log{"a", "ab"}));
  box.SetLocked(true);
  test::Type(box, "c");
  EXPECT_EQ(box.Text(), "ab");
}

TEST_F(ControlTest, MouseMovesReachEveryKindOfControl) {
  win::TextBox page(form, "txtPage", win::TextBoxStyle::kMultiLine);
  win::TextBox line(form, "txtLine");
  win::Label label(form, "lblText", "text");
  win::Button button(form, "cmdAdd", "Add");
  std::vector<win::Control*> controls = {&page, &line, &label, &button};
  for (std::size_t i = 0; i < controls.size(); ++i) {
    controls[i]->Move(0, 900.0 * i, 3000, 800);
    controls[i]->MouseMove = [this, control = controls[i]] { log.push_back(control->Name()); };
  }
  form.Show();
  for (const win::Control* control : controls) {
    log.clear();
    test::HoverOver(*control);
    ASSERT_TRUE(test::Await([this] { return !log.empty(); })) << control->Name();
    EXPECT_EQ(log.front(), control->Name());
  }
}

TEST_F(ControlTest, CaptionsAreNeverClipped) {
  const std::string text = "Enable this option only when you know exactly what it does to all of your installs";
  win::Frame frame(form, "frmPage");
  win::Label label(frame, "lblNote", text);
  win::CheckBox check(frame, "chkOption", text);
  win::Button button(frame, "cmdRun", text);
  win::Label path(frame, "lblPath", "C:\\" + std::string(120, 'x') + "\\");
  frame.Move(0, 0, 6000, 4500);
  label.Move(100, 300, 1500, 255);
  check.Move(1700, 300, 2000, 255);
  button.Move(3800, 300, 2000, 375);
  path.Move(100, 2400, 1500, 255);
  form.Show();
  const std::pair<win::Control*, std::string> captions[] = {
      {&label, text}, {&check, text}, {&button, text}, {&path, path.Caption()}};
  for (const auto& [control, caption] : captions) {
    QWidget& widget = *control->Widget();
    const int needed = widget.fontMetrics()
                           .boundingRect(QRect(0, 0, widget.width(), 9999), Qt::TextWrapAnywhere | Qt::TextWordWrap,
                                         QString::fromStdString(caption))
                           .height();
    EXPECT_GE(widget.height(), needed) << control->Name();
    EXPECT_LE(widget.geometry().bottom(), frame.Widget()->height()) << control->Name();
  }
  label.SetCaption("short");
  EXPECT_DOUBLE_EQ(label.Height(), 255) << "the place that was asked for comes back";
}

TEST_F(ControlTest, ACaptionWithNeighboursGetsASmallerFontBeforeItCoversThem) {
  const std::string text = "Two lines of text need a little more room than this label has";
  win::Label label(form, "lblNote", text);
  win::Label below(form, "lblBelow", "below");
  label.Move(0, 0, 3500, 375);
  below.Move(0, 390, 3500, 300);
  form.Show();
  EXPECT_LE(label.Widget()->geometry().bottom(), below.Widget()->y());
  EXPECT_LT(label.Widget()->font().pointSizeF(), form.Area()->font().pointSizeF());
}

TEST_F(ControlTest, AStatusBarShowsItsHintAndKeepsAllOfItInReach) {
  win::StatusBar bar(form, "StatusBar1");
  bar.Move(0, 4125, 1500, 375);
  form.Show();
  const std::string hint = "Select a map from the list to use it in game.";
  bar.SetPanelText(1, hint);
  bar.SetPanelText(2, "no such panel");
  EXPECT_EQ(bar.PanelText(1), hint);
  EXPECT_EQ(bar.Widget()->findChild<QLabel*>()->toolTip().toStdString(), hint);
  EXPECT_EQ(bar.PanelText(2), "");
}

TEST_F(ControlTest, ATimerStopsInItsOwnTickAndNeverMeetsItself) {
  win::Timer timer(5);
  int ticks = 0;
  timer.Tick = [&] {
    ++ticks;
    test::Await([] { return false; }, 40);
    timer.SetEnabled(false);
  };
  timer.SetEnabled(true);
  test::Await([] { return false; }, 100);
  EXPECT_EQ(ticks, 1);
  timer.SetInterval(0);
  timer.SetEnabled(true);
  test::Await([] { return false; }, 30);
  EXPECT_EQ(ticks, 1);
  timer.SetInterval(5);
  EXPECT_TRUE(test::Await([&] { return ticks == 2; }));
}

}  // namespace
