#pragma once

#include "platform/windowing/button.h"
#include "platform/windowing/form.h"
#include "platform/windowing/label.h"
#include "platform/windowing/picturebox.h"

namespace varnik {

// The About box.
class frmAbout : public win::Form {
 public:
  frmAbout();

  win::PictureBox Image1{*this, "Image1"};
  win::Label lblTitle{*this, "lblTitle"};
  win::Label lblVersion{*this, "lblVersion"};
  win::Label lblDescription{*this, "lblDescription"};
  win::Label lblDisclaimer{*this, "lblDisclaimer"};
  win::Button cmdOK{*this, "cmdOK", "OK"};
  win::Button cmdSysInfo{*this, "cmdSysInfo", "&System Info..."};
};

}  // namespace varnik
