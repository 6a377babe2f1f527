#pragma once

#include "windowing/control.h"
#include "windowing/drawing.h"
#include "windowing/picture.h"

namespace win {

class PictureWidget;

enum class PictureSize {
  kOwn,       // the picture at its own size from the top left corner, cut off by the box
  kStretch,   // the picture fills the box
  kAutoSize,  // the box takes the size of the picture
};

// Shows a picture, and takes drawing through its device context. What was drawn stays until the next SetPicture.
class PictureBox : public Control {
 public:
  PictureBox(Container& parent, const char* name, PictureSize size = PictureSize::kOwn);
  ~PictureBox() override;

  const Picture& Image() const;             // as it was set
  void SetPicture(const Picture& picture);  // drops what was drawn; an empty picture clears the box
  void SetBorder(bool shown);

  // For the calls of drawing.h; lives as long as the box.
  DrawingHandle DeviceContext() const;

  Picture Shown() const;  // the box as a person sees it

 private:
  PictureWidget* box_;
  PictureSize size_;
  Picture picture_;
  DrawingHandle context_;
};

}  // namespace win
