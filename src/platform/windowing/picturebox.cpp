#include "windowing/picturebox.h"

#include "platform/windowing/qtsupport.h"

#include <QLabel>

namespace win {

PictureBox::PictureBox(Container& parent, const char* name, PictureSize size)
    : Control(name, new QLabel(parent.Area())), label_(static_cast<QLabel*>(Widget())), size_(size) {
  label_->setFocusPolicy(Qt::NoFocus);
  label_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label_->setScaledContents(size == PictureSize::kStretch);
}

void PictureBox::SetPicture(const Picture& picture) {
  picture_ = picture;
  if (!Widget()) return;
  label_->setPixmap(QPixmap::fromImage(picture.Image()));
  if (size_ == PictureSize::kAutoSize)
    Move(Left(), Top(), ToTwips(picture.WidthInPixels()), ToTwips(picture.HeightInPixels()));
}

Picture PictureBox::Shown() const { return Widget() ? Picture(label_->grab().toImage()) : Picture(); }

}  // namespace win
