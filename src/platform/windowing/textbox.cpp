#include "windowing/textbox.h"

#include "platform/windowing/qtsupport.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace win {

namespace {

constexpr int kEnter = 13;
constexpr qsizetype kMaxShown = 1 << 18;   // characters of a page
constexpr qsizetype kMaxParagraph = 2048;  // Qt needs minutes to wrap one of a hundred thousand characters

// A Qt edit that asks before it takes a key.
template <class Edit>
class AskingEdit : public Edit {
 public:
  using Edit::Edit;
  std::function<bool(int key)> takesKey;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const QString text = event->text();
    if (text.size() == 1 && takesKey && !takesKey(text[0].unicode())) return;
    Edit::keyPressEvent(event);
  }
};

using LineEdit = AskingEdit<QLineEdit>;

class PageEdit : public AskingEdit<QPlainTextEdit> {
 public:
  using AskingEdit::AskingEdit;

 protected:
  bool event(QEvent* event) override {
    const bool taken = AskingEdit::event(event);
    if (event->type() == QEvent::Paint) DrawEdge(this);
    return taken;
  }
};

// The page's text with line ends as a text file has them; toPlainText would turn hard blanks into blanks.
QString PageText(const QPlainTextEdit& page) {
  QString text = page.document()->toRawText();
  text.replace(QChar::ParagraphSeparator, "\r\n");
  text.replace(QChar::LineSeparator, "\r\n");
  return text;
}

// The text as a page can show it in good time: long paragraphs are broken, and there is an end.
QString Pageable(const QString& text) {
  QString shown;
  qsizetype paragraph = 0;
  for (const QChar c : QStringView(text).left(kMaxShown)) {
    paragraph = c == u'\n' || c == u'\r' ? 0 : paragraph + 1;
    if (paragraph > kMaxParagraph) {
      shown += u'\n';
      paragraph = 1;
    }
    shown += c;
  }
  return shown;
}

}  // namespace

TextBox::TextBox(Container& parent, const char* name, TextBoxStyle style)
    : Control(name, style == TextBoxStyle::kSingleLine ? static_cast<QWidget*>(new LineEdit(parent.Area()))
                                                       : new PageEdit(parent.Area())) {
  const auto changed = [this] { TextChanged(); };
  const auto takesKey = [this](int key) { return TakesKey(key); };
  if (style == TextBoxStyle::kSingleLine) {
    auto* line = static_cast<LineEdit*>(Widget());
    line->takesKey = takesKey;
    QObject::connect(line, &QLineEdit::textChanged, line, changed);
    line_ = line;
  } else {
    auto* page = static_cast<PageEdit*>(Widget());
    page->takesKey = takesKey;
    page->setTabChangesFocus(true);
    QObject::connect(page, &QPlainTextEdit::textChanged, page, changed);
    page_ = page;
  }
}

std::string TextBox::Text() const {
  if (!edited_ || !Widget()) return text_;
  const QString now = line_ ? line_->text() : PageText(*page_);
  return BytesOfEdited(now, text_);
}

void TextBox::SetText(const std::string& text) {
  if (!Widget() || text == Text()) return;
  const QString whole = FromBytes(text);
  const QString shown = line_ ? whole.left(line_->maxLength()) : Pageable(whole);
  setting_ = true;
  if (line_)
    line_->setText(shown);
  else
    page_->setPlainText(shown);
  setting_ = false;
  text_ = text;
  edited_ = false;
  partly_ = shown != whole;
  ApplyLock();
  Raise(Change);
}

void TextBox::SetLocked(bool locked) {
  locked_ = locked;
  ApplyLock();
}

void TextBox::SetHeading() {
  if (!line_ || !Widget()) return;
  line_->setFrame(false);
  QPalette flat;
  flat.setColor(QPalette::Base, Qt::transparent);
  line_->setPalette(flat);
  QFont bold;
  bold.setBold(true);
  line_->setFont(bold);
}

void TextBox::SetMonospace() {
  if (Widget()) Widget()->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

void TextBox::SetHint(const std::string& text) {
  if (line_ && Widget()) line_->setPlaceholderText(FromBytes(text));
}

void TextBox::ApplyLock() {
  // An edit of what is shown would lose what is not.
  const bool readOnly = locked_ || partly_;
  if (line_ && Widget()) line_->setReadOnly(readOnly);
  if (page_ && Widget()) page_->setReadOnly(readOnly);
}

void TextBox::TextChanged() {
  if (setting_) return;
  edited_ = true;
  Raise(Change);
}

bool TextBox::TakesKey(int key) {
  if (!KeyPress) return true;
  const bool staysHere = line_ && key == kEnter;
  Raise(KeyPress, key);
  return key != 0 && !staysHere;
}

}  // namespace win
