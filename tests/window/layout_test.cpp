#include "editor/ui/frmnewmod.h"
#include "installs/ui/frmaddrembz2.h"
#include "mainwindow/windowsize.h"
#include "support/ui/frmabout.h"
#include "support/ui/frmoptions.h"
#include "tests/harness/cases.h"
#include "tests/window/pagetest.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QListView>
#include <QMenuBar>
#include <QRegularExpression>
#include <QScrollBar>

#include <map>

namespace {

constexpr double kTwipsToThePixel = 15;

QString CaptionOf(const QWidget* widget) { return widget->property("text").toString().remove('&'); }

// The top of a page, where its caption stands, lies under the title of the pages.
bool IsPage(const QWidget* widget) { return qobject_cast<const QGroupBox*>(widget) != nullptr; }

// The controls that a person sees, those of frames too.
std::vector<QWidget*> ShownControls(const win::Form& form) {
  std::vector<QWidget*> shown;
  for (QWidget* widget : form.Area()->findChildren<QWidget*>(QRegularExpression("^[a-zA-Z]+[a-zA-Z0-9_]*$")))
    if (widget->isVisible() && !widget->objectName().startsWith("qt_")) shown.push_back(widget);
  return shown;
}

// What a screen reader says: the name, or where that is a value, the label.
std::string SpokenName(QWidget* widget) {
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
  for (const auto& [label, relation] : spoken->relations(QAccessible::Label))
    return label->text(QAccessible::Name).toStdString();
  return spoken->role() == QAccessible::ComboBox ? "" : spoken->text(QAccessible::Name).toStdString();
}

class Layout : public test::MainWindowTest {
 protected:
  Layout() {
    ListInstall("1.3");
    Put("addon/gameprefs.ini", "[UserPrefs]\r\n");
    Open();
  }

  void ForEachPage(const std::function<void()>& look) {
    for (const char* key : {"RMod", "RMap", "RCMD", "CCMD1", "RCFG", "CCFG1", "RExtra"}) {
      SCOPED_TRACE(key);
      main->SettingTree_NodeClick(key);
      test::RunEvents();
      look();
    }
  }

  void ForEachForm(const std::function<void(win::Form&)>& look) {
    ForEachPage([&] { look(*main); });
    varnik::frmNewMod editor([] {});
    varnik::frmAddRemBZ2 locations([] {});
    varnik::frmAbout about;
    const auto nothing = [](const auto&) {};
    varnik::frmOptions options({main->imglstnomap, main->imglstIcon, nothing, nothing, nothing});
    for (win::Form* form : std::initializer_list<win::Form*>{&editor, &locations, &about, &options, &busy}) {
      SCOPED_TRACE(form->Name());
      form->Show();
      test::RunEvents();
      look(*form);
      form->Hide();
    }
  }
};

TEST_F(Layout, HasItsPlacesAtTheDesignSize) {
  for (const test::Case& c : test::Cases("window/places.jsonl")) {
    const QString name = QString::fromStdString(c[0]);
    const QWidget* widget = main->Area()->findChild<QWidget*>(name);
    ASSERT_TRUE(widget) << c;
    if (!c[1].is_null()) {
      const auto pixels = [&c](int column) { return qRound(c[column].get<double>() / kTwipsToThePixel); };
      EXPECT_EQ(widget->geometry(), QRect(pixels(1), pixels(2), pixels(3), pixels(4))) << c;
    }
    EXPECT_TRUE(c.size() <= 5 || CaptionOf(widget).toStdString() == c[5].get<std::string>()) << c;
  }
}

// At the design size, larger, and a little smaller: no control leaves its container or covers another one, every list
// shows whole rows, and no scroll bar stands in the window.
TEST_F(Layout, FillsTheWindowAtAnySize) {
  const QSize design = main->Window()->size();
  for (const QSize more : {QSize(0, 0), QSize(400, 260), QSize(37, 11), QSize(-1, -1)}) {
    main->Window()->setMinimumSize(1, 1);
    main->Window()->resize(design + more);
    ForEachPage([&] {
      for (const QWidget* control : ShownControls(*main)) {
        SCOPED_TRACE(control->objectName().toStdString() + " " + std::to_string(more.width()));
        EXPECT_TRUE(control->parentWidget()->rect().contains(control->geometry()));
        for (const QWidget* other : ShownControls(*main))
          EXPECT_TRUE(other == control || other->parent() != control->parent() || IsPage(control) || IsPage(other) ||
                      !other->geometry().intersects(control->geometry()))
              << other->objectName().toStdString();
        const auto* list = qobject_cast<const QListView*>(control);
        EXPECT_TRUE(!list || list->model()->rowCount() == 0 ||
                    list->viewport()->height() % list->sizeHintForRow(0) == 0);
      }
      for (const QScrollBar* bar : main->Window()->findChildren<QScrollBar*>())
        EXPECT_TRUE(!bar->isVisible() || bar->parentWidget()->parentWidget()->parentWidget() != main->Window());
      const QWidget* launch = main->cmdLaunchBZ2.Widget();
      EXPECT_EQ(launch->parentWidget()->width() - launch->geometry().right(), 6) << more.width();
    });
  }
}

TEST_F(Layout, KeepsItsSizeWithAndWithoutTheStatusBar) {
  main->Window()->resize(700, 600);
  main->showstatusbar(false);
  EXPECT_EQ(main->Window()->size(), QSize(700, 575));
  EXPECT_EQ(main->cmdLaunchBZ2.Widget()->geometry().bottom(), main->lblBZ2LocVer.Widget()->geometry().bottom());
  const int launchTop = main->cmdLaunchBZ2.Widget()->y();
  main->showstatusbar(true);
  EXPECT_EQ(main->cmdLaunchBZ2.Widget()->y(), launchTop);
  main->showstatusbar(false);
  main->Close();
  varnik::StoreOption("StatusBar", "On");
  Open();
  EXPECT_EQ(main->Window()->size(), QSize(700, 600));
}

TEST_F(Layout, OpensAsLargeAsTheScreenAsksFor) {
  const struct {
    int width, height, wide, high;
  } cases[] = {{1366, 768, 526, 459}, {800, 600, 526, 459}, {1920, 1080, 900, 680}, {3840, 2160, 900, 680}};
  for (const auto& c : cases) {
    const auto size = varnik::FirstWindowSize({526 * kTwipsToThePixel, 459 * kTwipsToThePixel},
                                              {c.width * kTwipsToThePixel, c.height * kTwipsToThePixel});
    EXPECT_EQ(size.width / kTwipsToThePixel, c.wide) << c.width;
    EXPECT_EQ(size.height / kTwipsToThePixel, c.high) << c.height;
  }
}

TEST_F(Layout, EverythingIsSpokenByAName) {
  ForEachForm([](win::Form& form) {
    EXPECT_NE(QAccessible::queryAccessibleInterface(form.Window())->role(), QAccessible::Client);
    for (QWidget* widget : ShownControls(form)) {
      const std::string name = SpokenName(widget);
      const bool isWorkedWith = qobject_cast<QAbstractButton*>(widget) || widget->focusPolicy() != Qt::NoFocus;
      EXPECT_TRUE(!isWorkedWith || !name.empty()) << widget->objectName().toStdString();
      for (const char c : name)
        if (c >= '0' && c <= '9' && name.find(' ') == std::string::npos) ADD_FAILURE() << name;
    }
  });
}

TEST_F(Layout, NoTwoControlsHaveTheSameKey) {
  ForEachForm([](win::Form& form) {
    std::map<QKeySequence, QString> keys;
    const auto note = [&keys](const QString& caption) {
      const QKeySequence key = QKeySequence::mnemonic(caption);
      if (key.isEmpty()) return;
      EXPECT_EQ(keys.count(key), 0u) << caption.toStdString() << " and " << keys[key].toStdString();
      keys[key] = caption;
    };
    for (const QMenuBar* bar : form.Window()->findChildren<QMenuBar*>())
      for (const QAction* menu : bar->actions())
        note(menu->text());
    for (const QWidget* widget : ShownControls(form)) {
      const auto* label = qobject_cast<const QLabel*>(widget);
      if (widget->isEnabled() && (qobject_cast<const QAbstractButton*>(widget) || (label && label->buddy())))
        note(widget->property("text").toString());
    }
    EXPECT_TRUE(form.Name() == "frmSplash" || !keys.empty());
  });
}

TEST_F(Layout, AFindBoxNarrowsTheListAndGoesAwayAgain) {
  AddMod("ice.bzm", "dname(Frozen);\r\ndescription(Snow on \xC3\x89t\xC3\xA9 hills);\r\n");
  AddMod("sand.bzm", "dname(Dunes);\r\n");
  main->activatebz2(0, false);
  test::ShowActive(*main);
  auto& list = main->modPage.lstmods;
  win::TextBox& box = main->modPage.Finder().box;
  const double top = list.Top();
  const auto shown = [&list] {
    std::string rows;
    for (int row = 0; row < list.ListCount(); ++row)
      if (list.IsShown(row)) rows += list.List(row) + ";";
    return rows;
  };
  test::ClickMenu(main->menu.mnuFileFind);
  EXPECT_TRUE(box.Visible() && box.HasFocus() && list.Top() > top);
  const std::pair<const char*, const char*> cases[] = {
      {"ETE", "<No Mod>;Frozen;"}, {"sand.B", "<No Mod>;Dunes;"}, {"zzz", "<No Mod>;"}, {"", "<No Mod>;Dunes;Frozen;"}};
  for (const auto& [typed, rows] : cases) {
    box.SetText("");
    test::Type(box, typed);
    EXPECT_EQ(shown(), rows) << typed;
  }
  test::Type(box, "froz");
  main->modPage.lstmods.SetListIndex(1);
  test::PressKey(box, Qt::Key_Return);
  EXPECT_EQ(list.List(list.ListIndex()), "Frozen") << "Enter goes to what was found";
  main->modPage.Finder().Open();
  test::PressKey(box, Qt::Key_Escape);
  EXPECT_TRUE(!box.Visible() && list.Top() == top);
  EXPECT_EQ(shown(), "<No Mod>;Dunes;Frozen;");
}

}  // namespace
