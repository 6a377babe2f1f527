#include "tests/harness/window_app.h"

#include "platform/system/paths/program.h"
#include "windowing/application.h"

#include <QApplication>
#include <QComboBox>
#include <QListView>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTimer>
#include <QTreeWidget>

// Fontconfig keeps what it allocated until the process ends, out of the leak checker's sight.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig"; }

namespace test {

namespace {

// Through the native window, where a blocked form stops input, unless none is shown.
void Click(QWidget* widget, const QRect& target) {
  QWidget* window = widget->window();
  if (window->isVisible())
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, widget->mapTo(window, target.center()));
  else
    QTest::mouseClick(widget, Qt::LeftButton, {}, target.center());
}

}  // namespace

win::Application& App() {
  static auto* const application = new win::Application;
  return *application;
}

WindowTest::WindowTest() {
  win::SetProgram({"varnik", "Varnik", ""});
  App();
  win::AnswerBoxesWith([this](const win::Box& box) { return Reply(box); });
}

WindowTest::~WindowTest() {
  RunEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  win::AnswerBoxesWith({});
  for (const auto& [box, answer] : expected_)
    ADD_FAILURE() << "no box came: " << box.text << box.title;
}

win::BoxAnswer WindowTest::Reply(const win::Box& box) {
  if (expected_.empty()) {
    ADD_FAILURE() << "unexpected box: " << box.title << ": " << box.text;
    return {box.style & win::kYesNo ? win::Answer::kNo : win::Answer::kOk, ""};
  }
  const auto [expected, answer] = expected_.front();
  expected_.pop_front();
  EXPECT_TRUE(box.kind == expected.kind && box.text.starts_with(expected.text) &&
              box.title.starts_with(expected.title) && box.initial.starts_with(expected.initial) &&
              (expected.style == 0 || box.style == expected.style))
      << box.title << ": " << box.text << " (" << box.initial << ") instead of " << expected.text;
  return answer;
}

void ShowActive(win::Form& form) {
  win::Form other("frmOther", 1500, 1500);  // on this screen the active window changes only from one to another
  for (win::Form* next : {&other, &form}) {
    next->Show();
    next->SetFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(next->Window(), kLongestWait));
  }
}

void DuringModal(std::function<void(win::Form&)> act) {
  auto* poll = new QTimer(qApp);
  QObject::connect(poll, &QTimer::timeout, poll, [poll, act = std::move(act)] {
    if (!QApplication::activeModalWidget()) return;
    poll->stop();
    poll->deleteLater();
    act(*win::OpenForms().back());
  });
  poll->start(1);
}

void ClickOn(const win::Control& control) { Click(control.Widget(), control.Widget()->rect()); }

void ClickRow(const win::ListBox& list, int row) {
  auto* view = qobject_cast<QListView*>(list.Widget());
  Click(view->viewport(), view->visualRect(view->model()->index(row, 0)));
}

void ClickTick(const win::ListBox& list, int row) {
  auto* view = qobject_cast<QListView*>(list.Widget());
  QStyleOptionViewItem option;
  option.initFrom(view);
  option.rect = view->visualRect(view->model()->index(row, 0));
  option.features = QStyleOptionViewItem::HasCheckIndicator;
  Click(view->viewport(), view->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, view));
}

void ClickNode(const win::TreeView& tree, const std::string& text) {
  auto* view = qobject_cast<QTreeWidget*>(tree.Widget());
  const auto found = view->findItems(QString::fromStdString(text), Qt::MatchExactly | Qt::MatchRecursive);
  ASSERT_FALSE(found.isEmpty()) << text;
  view->scrollToItem(found.front());
  Click(view->viewport(), view->visualItemRect(found.front()));
}

void HoverOver(const win::Control& control) {
  QWidget* surface = control.Widget();
  if (const auto* area = qobject_cast<QAbstractScrollArea*>(surface)) surface = area->viewport();
  for (const int offset : {1, 0})
    QTest::mouseMove(surface, surface->rect().center() - QPoint(offset, offset));
}

void PressKey(const win::Control& control, Qt::Key key, Qt::KeyboardModifiers modifiers, int times) {
  for (int i = 0; i < times; ++i)
    QTest::keyClick(control.Widget(), key, modifiers);
}

void ChooseRow(const win::ComboBox& box, int row) {
  auto* widget = qobject_cast<QComboBox*>(box.Widget());
  widget->showPopup();
  QAbstractItemView* popup = widget->view();
  popup->setCurrentIndex(popup->model()->index(row, 0));
  QTest::keyClick(popup, Qt::Key_Return);
}

}  // namespace test
