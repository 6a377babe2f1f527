#pragma once

#include "windowing/button.h"
#include "windowing/checkbox.h"
#include "windowing/form.h"
#include "windowing/imagelist.h"
#include "windowing/label.h"
#include "windowing/picturebox.h"
#include "windowing/slider.h"

#include <functional>
#include <string>

namespace varnik {

// The entry of the list that the option names; 1 when the list has no such entry. The store is not corrected.
int ChosenPicture(const win::ImageList& list, const char* option);

// What the options need of the main window.
struct OptionsHost {
  const win::ImageList& noMapPictures;
  const win::ImageList& trayIcons;
  std::function<void(const win::Picture&)> showNoMapPicture;
  std::function<void(const win::Picture&)> showTrayIcon;  // does nothing while the icon is off
  std::function<void(bool shown)> showStatusBar;
};

// The program's own preferences. Every control takes effect, and is stored, the moment it changes.
class frmOptions : public win::Form {
 public:
  explicit frmOptions(OptionsHost host);

  win::CheckBox chkBinData;
  win::CheckBox chkHighPriority;
  win::CheckBox chkOldMods;
  win::CheckBox chkRenameLog;
  win::CheckBox chkStatusBar;
  win::CheckBox chkOnBoot;
  win::Label lblStartup;
  win::Label lblTrayIcon;
  win::Slider sldtrayicon;
  win::PictureBox imgtrayicon;
  win::Label lblNoMapPic;
  win::Slider sldNoMapImage;
  win::PictureBox imgNoMapPreview;
  win::Button cmdOk;

 private:
  void PlaceControls();
  void WireControls();
  void WireOption(win::CheckBox& box, const char* key, std::function<void(bool on)> effect);
  void Form_Load();
  static void LoadSlider(win::Slider& slider, const win::ImageList& pictures, const char* key,
                         const std::function<void()>& change);
  void chkOnBoot_Click();
  void sldNoMapImage_Change();
  void sldtrayicon_Change();

  OptionsHost host_;
};

}  // namespace varnik
