#pragma once

#include "windowing/form.h"
#include "windowing/label.h"
#include "windowing/picturebox.h"

#include <string>

namespace varnik {

// The busy window: up while the program loads or reloads, with what it is doing and a joke beside it.
class frmSplash : public win::Form {
 public:
  frmSplash();

  // What is being done; when the window is not up the text goes nowhere. Cheap: the screen follows at its own pace.
  void SetStatus(const std::string& text);

  // Asks what is being done to end. The next time that the window comes up this is forgotten.
  void Stop() { isStopped_ = true; }
  bool IsStopped() const { return isStopped_; }

  win::PictureBox imgLogo{*this, "imgLogo"};
  win::Label lblProductName{*this, "lblProductName"};
  win::Label lblVersion{*this, "lblVersion"};
  win::Label lblPlatform{*this, "lblPlatform", "Windows 9x/ME/NT/2k/XP"};
  win::Label Label1{*this, "Label1", "Varnik is busy, please wait"};
  win::Label lblstatus{*this, "lblstatus"};
  win::Label lblWarning{*this, "lblWarning"};

 private:
  void Form_Load();

  bool isStopped_ = false;
};

}  // namespace varnik
