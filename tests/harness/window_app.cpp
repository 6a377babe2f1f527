#include "tests/harness/window_app.h"

#include "platform/system/paths/program.h"
#include "windowing/application.h"
#include "windowing/combobox.h"
#include "windowing/form.h"
#include "windowing/listbox.h"
#include "windowing/menu.h"
#include "windowing/treeview.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QListView>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <memory>

namespace test {

namespace {

constexpr int kLongestModal = 10000;  // milliseconds

std::unique_ptr<win::Application> application;

class OneApplication : public ::testing::Environment {
 public:
  void SetUp() override {
    win::SetProgram({"varnik", "Varnik", ""});
    application = std::make_unique<win::Application>();
  }
  void TearDown() override { application.reset(); }
};

[[maybe_unused]] const ::testing::Environment* const kApplication =
    ::testing::AddGlobalTestEnvironment(new OneApplication);

win::Form* ModalForm() {
  for (win::Form* form : win::OpenForms())
    if (form->Window() == QApplication::activeModalWidget()) return form;
  return nullptr;
}

// Tries again and again, since the form may show much later than the test asked.
void ActOnModal(std::function<void(win::Form&)> act) {
  win::Form* form = ModalForm();
  if (!form) {
    QTimer::singleShot(1, qApp, [act = std::move(act)] { ActOnModal(act); });
    return;
  }
  QTimer::singleShot(kLongestModal, form->Window(), [form] {
    ADD_FAILURE() << form->Name() << " stays open";
    form->Hide();
  });
  act(*form);
}

QPoint Center(const QWidget& widget) { return widget.rect().center(); }

QRect RowRect(const QListView& view, int row) { return view.visualRect(view.model()->index(row, 0)); }

}  // namespace

win::Application& App() { return *application; }

BoxScript::BoxScript() {
  win::AnswerBoxesWith([this](const win::Box& box) { return Reply(box); });
}

BoxScript::~BoxScript() {
  win::AnswerBoxesWith({});
  for (const Expected& expected : expected_)
    ADD_FAILURE() << "no box came: " << expected.box.text << expected.box.title;
}

void BoxScript::ExpectMsgBox(const std::string& text, win::Answer answer, const std::string& title) {
  expected_.push_back({{win::BoxKind::kMessage, text, title, 0, ""}, {answer, ""}});
}

void BoxScript::ExpectInputBox(const std::string& prompt, const std::string& typed, const std::string& title,
                               const std::string& initial) {
  expected_.push_back({{win::BoxKind::kInput, prompt, title, 0, initial}, {win::Answer::kOk, typed}});
}

void BoxScript::ExpectFolderDialog(const std::string& title, const std::string& chosen) {
  expected_.push_back({{win::BoxKind::kFolder, "", title, 0, ""}, {win::Answer::kOk, chosen}});
}

win::BoxAnswer BoxScript::Reply(const win::Box& box) {
  last_ = box;
  if (expected_.empty()) {
    ADD_FAILURE() << "unexpected box: " << box.title << ": " << box.text;
    return {box.style & win::kYesNo ? win::Answer::kNo : win::Answer::kOk, ""};
  }
  const Expected expected = expected_.front();
  expected_.pop_front();
  EXPECT_EQ(box.kind, expected.box.kind);
  EXPECT_EQ(box.text, expected.box.text);
  EXPECT_TRUE(expected.box.title.empty() || box.title == expected.box.title) << box.title;
  EXPECT_TRUE(expected.box.initial.empty() || box.initial == expected.box.initial) << box.initial;
  return expected.answer;
}

void WindowTest::TearDown() {
  RunEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void RunEvents() { QTest::qWait(1); }

bool Await(const std::function<bool()>& condition, int milliseconds) {
  return QTest::qWaitFor(condition, milliseconds);
}

void DuringModal(std::function<void(win::Form&)> act) {
  QTimer::singleShot(0, qApp, [act = std::move(act)] { ActOnModal(act); });
}

void ClickOn(const win::Control& control) {
  QTest::mouseClick(control.Widget(), Qt::LeftButton, {}, Center(*control.Widget()));
}

void ClickRow(const win::ListBox& list, int row) {
  auto* view = qobject_cast<QListView*>(list.Widget());
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, RowRect(*view, row).center());
}

void ClickTick(const win::ListBox& list, int row) {
  auto* view = qobject_cast<QListView*>(list.Widget());
  QStyleOptionViewItem option;
  option.initFrom(view);
  option.rect = RowRect(*view, row);
  option.features = QStyleOptionViewItem::HasCheckIndicator;
  const QRect tick = view->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, view);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, tick.center());
}

void ClickNode(const win::TreeView& tree, const std::string& text) {
  auto* view = qobject_cast<QTreeWidget*>(tree.Widget());
  const auto found = view->findItems(QString::fromStdString(text), Qt::MatchExactly | Qt::MatchRecursive);
  ASSERT_FALSE(found.isEmpty()) << text;
  view->scrollToItem(found.front());
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualItemRect(found.front()).center());
}

void HoverOver(const win::Control& control) {
  QWidget* surface = control.Widget();
  if (const auto* area = qobject_cast<QAbstractScrollArea*>(surface)) surface = area->viewport();
  QTest::mouseMove(surface, Center(*surface) - QPoint(1, 1));
  QTest::mouseMove(surface, Center(*surface));
}

void Type(const win::Control& control, const std::string& ascii) {
  QTest::keyClicks(control.Widget(), QString::fromStdString(ascii));
}

void PressKey(const win::Control& control, int qtKey) {
  QTest::keyClick(control.Widget(), static_cast<Qt::Key>(qtKey));
}

void PressKey(const win::Form& form, int qtKey) { QTest::keyClick(form.Window(), static_cast<Qt::Key>(qtKey)); }

void ChooseRow(const win::ComboBox& box, int row) {
  auto* widget = qobject_cast<QComboBox*>(box.Widget());
  widget->showPopup();
  QAbstractItemView* popup = widget->view();
  popup->setCurrentIndex(popup->model()->index(row, 0));
  QTest::keyClick(popup, Qt::Key_Return);
}

void ClickMenu(const win::MenuItem& item) {
  if (item.Visible()) item.Action()->trigger();
}

}  // namespace test
