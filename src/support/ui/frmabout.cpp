#include "support/ui/frmabout.h"

#include "platform/system/paths/program.h"
#include "support/sysinfo.h"
#include "support/ui/artwork.h"
#include "support/version.h"

namespace varnik {

frmAbout::frmAbout() : Form("frmAbout", 6600, 4080) {
  SetCaption("About " + win::Program().title);
  Image1.Move(240, 240, 1440, 1440);
  Image1.SetPicture(Logo());
  lblTitle.Move(1920, 240, 4440, 360);
  lblTitle.SetBold(true);
  lblTitle.SetCaption(win::Program().title);
  lblVersion.Move(1920, 600, 4440, 300);
  lblVersion.SetCaption(VersionLine());
  lblDescription.Move(1920, 960, 4440, 1080);
  lblDescription.SetCaption(
      "Varnik is a mod management program for Battlezone II.\r\nIt was written to provide more functionality then "
      "Halder, as well as incorperate new additions to Battlezone II in the 1.3 patch.");
  lblDisclaimer.Move(240, 2220, 6120, 960);
  lblDisclaimer.SetCaption(
      "Warning: Use of this program is at your own risk. There is no guarentee provided with this program. Any issues "
      "that may arise from the use of this program are your own problem. You have been warned.");
  cmdOK.Move(4920, 3540, 1440, 375);
  cmdSysInfo.Move(3300, 3540, 1440, 375);
  Image1.SetAccessibleName("Logo");
  cmdOK.SetMnemonic('O');
  cmdOK.Click = [this] { Close(); };
  cmdSysInfo.Click = [] { LaunchSystemInfo(); };
  SetDefaultButton(cmdOK);
  SetCancelButton(cmdOK);
}

}  // namespace varnik
