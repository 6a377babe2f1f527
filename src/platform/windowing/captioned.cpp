#include "windowing/captioned.h"

#include "platform/windowing/caption.h"
#include "platform/windowing/qtsupport.h"

#include <QGroupBox>

namespace win {

CaptionedControl::CaptionedControl(const char* name, QWidget* widget) : Control(name, widget) {}

void CaptionedControl::SetCaption(const std::string& caption) {
  if (!Widget() || (caption == caption_ && !caption.empty())) return;
  caption_ = caption;
  const QString shown = Readable(caption).replace("\r\n", "\n");
  if (auto* frame = qobject_cast<QGroupBox*>(Widget()))
    frame->setTitle(QString(shown).replace("&", "&&"));  // no target for a key
  else
    Widget()->setProperty("text", shown);
  FitText();
}

void CaptionedControl::FitText() {
  if (Widget()) FitCaption(Widget(), AskedSize());
}

}  // namespace win
