#pragma once

#include "windowing/button.h"
#include "windowing/form.h"
#include "windowing/label.h"
#include "windowing/picturebox.h"

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
