#include "windowing/captioned.h"

#include "platform/windowing/caption.h"
#include "platform/windowing/qtsupport.h"

#include <QGroupBox>

namespace win {

CaptionedControl::CaptionedControl(const char* name, QWidget* widget) : Control(name, widget) {}

void CaptionedControl::SetCaption(const std::string& caption) {
  if (!Widget() || (caption == caption_ && !caption.empty())) return;
  caption_ = caption;
  ShowCaption();
}

void CaptionedControl::SetMnemonic(char letter) {
  mnemonic_ = letter;
  if (Widget()) ShowCaption();
}

void CaptionedControl::ShowCaption() {
  QString shown = Readable(caption_).replace("\r\n", "\n");
  const qsizetype marked = mnemonic_ ? shown.indexOf(QChar::fromLatin1(mnemonic_), 0, Qt::CaseInsensitive) : -1;
  if (marked >= 0) shown.insert(marked, u'&');
  if (auto* frame = qobject_cast<QGroupBox*>(Widget()))
    frame->setTitle(QString(shown).replace("&", "&&"));  // no target for a key
  else
    Widget()->setProperty("text", shown);
  FitText();
}

void CaptionedControl::FitText() {
  if (Widget()) FitCaption(Widget(), PlacedSize());
}

}  // namespace win
