#pragma once

#include "windowing/control.h"
#include "windowing/picture.h"

class QLabel;

namespace win {

enum class PictureSize {
  kOwn,       // the picture at its own size from the top left corner, cut off by the box
  kStretch,   // the picture fills the box
  kAutoSize,  // the box takes the size of the picture
};

class PictureBox : public Control {
 public:
  PictureBox(Container& parent, const char* name, PictureSize size = PictureSize::kOwn);

  const Picture& Image() const { return picture_; }  // as it was set
  void SetPicture(const Picture& picture);           // an empty one clears the box

  Picture Shown() const;  // the box as a person sees it

 private:
  QLabel* label_;
  PictureSize size_;
  Picture picture_;
};

}  // namespace win
