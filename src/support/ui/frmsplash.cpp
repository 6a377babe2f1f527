#include "support/ui/frmsplash.h"

#include "platform/system/paths/program.h"
#include "support/debuglog.h"
#include "support/quips.h"
#include "support/ui/artwork.h"
#include "support/version.h"
#include "windowing/shortcut.h"

#include <random>

namespace varnik {

frmSplash::frmSplash() : Form("frmSplash", 7800, 2880) {
  SetTitleBar(false);
  SetCaption(win::Program().title);
  imgLogo.Move(240, 240, 1440, 1440);
  imgLogo.SetAccessibleName("Logo");
  lblProductName.Move(1920, 240, 5640, 360);
  lblProductName.SetBold(true);
  lblVersion.Move(1920, 600, 5640, 300);
  lblPlatform.Move(1920, 900, 5640, 300);
  Label1.Move(1920, 1260, 5640, 300);
  lblstatus.Move(1920, 1560, 5640, 300);
  lblWarning.Move(240, 2040, 7320, 720);
  lblWarning.SetCentered(true);
  Load = [this] { Form_Load(); };
  QueryUnload = [this](bool& cancel, win::UnloadMode mode) {
    cancel = mode == win::UnloadMode::kControlMenu;
    if (cancel) Stop();
  };
  win::AddShortcut(*this, "Esc", [this] { Stop(); });
  Unload = [] { LogLine("frmSplash Unload"); };
}

void frmSplash::Form_Load() {
  LogLine("frmSplash Load");
  isStopped_ = false;
  imgLogo.SetPicture(Logo());
  lblVersion.SetCaption(VersionLine());
  lblProductName.SetCaption(win::Program().title);
  static std::minstd_rand generator{std::random_device{}()};
  lblWarning.SetCaption(Quip(QuipIndex(std::uniform_real_distribution<>(0, 1)(generator))));
}

void frmSplash::SetStatus(const std::string& text) {
  if (Loaded()) lblstatus.SetCaption(text);
}

}  // namespace varnik
