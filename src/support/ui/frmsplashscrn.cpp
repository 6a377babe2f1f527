#include "support/ui/frmsplashscrn.h"

namespace varnik {

frmSplashScrn::frmSplashScrn() : Form("frmSplashScrn", 4800, 3600) {
  SetCaption("Splash Screen");
  Picture1.Move(0, 0);
  Load = [this] {
    SplashDone = false;
    Timer1.SetEnabled(true);
  };
  Timer1.Tick = [this] {
    Timer1.SetEnabled(false);
    SplashDone = true;
  };
}

}  // namespace varnik
