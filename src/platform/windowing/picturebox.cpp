#include "windowing/picturebox.h"

#include "platform/windowing/drawingsurface.h"
#include "platform/windowing/qtsupport.h"

#include <QFrame>
#include <QPainter>

namespace win {

// Shows an image of its own, on which a device context draws.
class PictureWidget : public QFrame, public DrawingSurface {
 public:
  PictureWidget(QWidget* parent, PictureSize itsSize) : QFrame(parent), size_(itsSize) {}

  void SetImage(const QImage& image) {
    picture_ = image;
    drawn_ = QImage();
    update();
  }

  QImage& Canvas() override {
    const QSize room = contentsRect().size();
    if (drawn_.size() == room) return drawn_;
    QImage canvas(room, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    QPainter(&canvas).drawImage(0, 0, drawn_);
    return drawn_ = canvas;
  }

  void Drawn() override { update(); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(this);
    painter.setClipRect(contentsRect());
    if (size_ == PictureSize::kStretch) {
      painter.setRenderHint(QPainter::SmoothPixmapTransform);
      if (!picture_.isNull()) painter.drawImage(contentsRect(), picture_);
    } else {
      painter.drawImage(contentsRect().topLeft(), picture_);
    }
    painter.drawImage(contentsRect().topLeft(), drawn_);
    painter.end();
    QFrame::paintEvent(event);
  }

 private:
  PictureSize size_;
  QImage picture_;
  QImage drawn_;
};

PictureBox::PictureBox(Container& parent, const char* name, PictureSize size)
    : Control(name, new PictureWidget(parent.Area(), size)),
      box_(static_cast<PictureWidget*>(Widget())),
      size_(size),
      context_(AddSurface(box_)) {
  box_->setFocusPolicy(Qt::NoFocus);
}

PictureBox::~PictureBox() { RemoveSurface(context_); }

const Picture& PictureBox::Image() const { return picture_; }

void PictureBox::SetPicture(const Picture& picture) {
  picture_ = picture;
  if (!Widget()) return;
  box_->SetImage(picture.Image());
  const QMargins edge = box_->contentsMargins();
  if (size_ == PictureSize::kAutoSize)
    Move(Left(), Top(), ToTwips(picture.WidthInPixels() + edge.left() + edge.right()),
         ToTwips(picture.HeightInPixels() + edge.top() + edge.bottom()));
}

void PictureBox::SetBorder(bool shown) {
  if (Widget()) box_->setFrameStyle(shown ? QFrame::Panel | QFrame::Sunken : QFrame::NoFrame);
}

DrawingHandle PictureBox::DeviceContext() const { return context_; }

Picture PictureBox::Shown() const { return Widget() ? Picture(box_->grab().toImage()) : Picture(); }

}  // namespace win
