#include "windowing/dialogs.h"

#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/windowing/qtsupport.h"
#include "windowing/form.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace win {

namespace {

std::function<BoxAnswer(const Box&)> boxAnswerer;

// The window that a box belongs in front of: the active one, else the form shown last. A window that has just been
// hidden may still count as active.
QWidget* BoxOwner() {
  for (QWidget* active : {QApplication::activeModalWidget(), QApplication::activeWindow()})
    if (active && active->isVisible()) return active;
  QWidget* last = nullptr;
  for (const Form* form : OpenForms())
    if (form->Visible()) last = form->Window();
  return last;
}

QString TitleOf(const std::string& title) { return Readable(title.empty() ? Program().title : title); }

QMessageBox::StandardButtons ButtonsOf(int style) {
  switch (ButtonsOfStyle(style)) {
    case kYesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case kYesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    default:
      return QMessageBox::Ok;
  }
}

QMessageBox::Icon IconOf(int style) {
  if (style & kCritical) return QMessageBox::Critical;
  return ButtonsOfStyle(style) == kOkOnly ? QMessageBox::Information : QMessageBox::Question;
}

// Enter never destroys anything.
QMessageBox::StandardButton DefaultOf(int style) {
  if (ButtonsOfStyle(style) == kOkOnly) return QMessageBox::Ok;
  return style & (kCritical | kDefaultNo) ? QMessageBox::No : QMessageBox::Yes;
}

Answer AnswerOf(int button) {
  switch (button) {
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::No:
      return Answer::kNo;
    case QMessageBox::Cancel:
      return Answer::kCancel;
    default:
      return Answer::kOk;
  }
}

Answer ShowMessage(const std::string& text, int style, const std::string& title) {
  if (boxAnswerer) return boxAnswerer({BoxKind::kMessage, text, title, style, ""}).answer;
  QMessageBox box(BoxOwner());
  box.setObjectName("MsgBox");
  box.setWindowTitle(TitleOf(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(Readable(text));
  box.setIcon(IconOf(style));
  box.setStandardButtons(ButtonsOf(style));
  box.setDefaultButton(DefaultOf(style));
  return AnswerOf(box.exec());
}

std::string AskText(const std::string& prompt, const std::string& title, const std::string& initial) {
  if (boxAnswerer) return boxAnswerer({BoxKind::kInput, prompt, title, kOkOnly, initial}).text;
  QInputDialog box(BoxOwner());
  box.setObjectName("InputBox");
  box.setWindowTitle(TitleOf(title));
  box.setLabelText(FromBytes(prompt));
  box.setTextValue(FromBytes(initial));
  return box.exec() == QDialog::Accepted ? BytesOfEdited(box.textValue(), initial) : std::string();
}

}  // namespace

WindowServices BoxServices() { return {{}, ShowMessage, AskText}; }

std::string BrowseForFolder(Form* owner, const std::string& title) {
  if (boxAnswerer) return boxAnswerer({BoxKind::kFolder, "", title, kOkOnly, ""}).text;
  QWidget* parent = owner ? owner->Window() : BoxOwner();
  const QString folder = QFileDialog::getExistingDirectory(parent, Readable(title));
  return folder.isEmpty() ? std::string() : WindowsPathFromNative(QFile::encodeName(folder).toStdString());
}

void AnswerBoxesWith(std::function<BoxAnswer(const Box&)> answerer) { boxAnswerer = std::move(answerer); }

}  // namespace win
