#pragma once

#include "windowing/form.h"
#include "windowing/picturebox.h"
#include "windowing/timer.h"

namespace varnik {

// Holds a mod's picture on screen for its minimum time during a run. It does not close itself.
class frmSplashScrn : public win::Form {
 public:
  frmSplashScrn();

  win::PictureBox Picture1{*this, "Picture1", win::PictureSize::kAutoSize};
  win::Timer Timer1{4000};
  bool SplashDone = false;  // the picture has had its time
};

}  // namespace varnik
