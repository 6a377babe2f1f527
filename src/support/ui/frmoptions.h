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
int ChosenPicture(win::ImageList& list, const char* option);

// What the options need of the main window.
struct OptionsHost {
  win::ImageList& noMapPictures;
  win::ImageList& trayIcons;
  std::function<void(const win::Picture&)> showNoMapPicture;
  std::function<void(const win::Picture&)> showTrayIcon;  // does nothing while the icon is off
  std::function<void(bool shown)> showStatusBar;
};

// The program's own preferences. Every control takes effect, and is stored, the moment it changes.
class frmOptions : public win::Form {
 public:
  explicit frmOptions(OptionsHost host);

  win::CheckBox chkBinData{*this, "chkBinData", "Auto-Clear Bindata when launching BZ2 (ALL INSTALLS!)"};
  win::CheckBox chkHighPriority{*this, "chkHighPriority", "Run BZ2 as High Priority(ADVANCED SETTING)"};
  win::CheckBox chkOldMods{*this, "chkOldMods", "Show Old Format(Halder Style) Mods in list"};
  win::CheckBox chkRenameLog{*this, "chkRenameLog", "Rename Battlezone.log file on run"};
  win::CheckBox chkStatusBar{*this, "chkStatusBar", "Show StatusBar in Main Window"};
  win::CheckBox chkOnBoot{*this, "chkOnBoot", "Run Varnik on Login/Startup"};
  win::Label lblStartup{
      *this, "lblStartup",
      "Note: Varnik only stays running on startup if you are using the Tray Icon. Otherwise Varnik will not "
      "stay loaded on startup. This is intentional."};
  win::Label lblTrayIcon{*this, "lblTrayIcon", "System Tray Icon:"};
  win::Slider sldtrayicon{*this, "sldtrayicon"};
  win::PictureBox imgtrayicon{*this, "imgtrayicon"};
  win::Label lblNoMapPic{*this, "lblNoMapPic", "\"No Map Picture\" Picture"};
  win::Slider sldNoMapImage{*this, "sldNoMapImage"};
  win::PictureBox imgNoMapPreview{*this, "imgNoMapPreview"};
  win::Button cmdOk{*this, "cmdOk", "&OK"};

 private:
  void PlaceControls();
  void WireControls();
  void WireOption(win::CheckBox& box, const char* key, std::function<void(bool on)> effect);
  void Form_Load();
  static void LoadSlider(win::Slider& slider, win::ImageList& pictures, const char* key,
                         const std::function<void()>& change);
  void chkOnBoot_Click();
  void sldNoMapImage_Change();
  void sldtrayicon_Change();

  OptionsHost host_;
};

}  // namespace varnik
