#include "support/ui/frmoptions.h"

#include "platform/system/store/registry.h"
#include "platform/system/text/text.h"
#include "support/registry.h"
#include "support/runstate.h"
#include "support/settings.h"

#include <cmath>
#include <utility>

namespace varnik {

int ChosenPicture(win::ImageList& list, const char* option) {
  const double index = std::nearbyint(win::LeadingNumber(ReadOption(option)));
  return index > 1 && index <= list.Count() ? static_cast<int>(index) : 1;
}

frmOptions::frmOptions(OptionsHost host) : Form("frmOptions", 6240, 6960), host_(std::move(host)) {
  SetCaption("Varnik Options");
  PlaceControls();
  WireControls();
}

void frmOptions::PlaceControls() {
  double top = 180;
  for (win::CheckBox* box : {&chkBinData, &chkHighPriority, &chkOldMods, &chkRenameLog, &chkStatusBar, &chkOnBoot}) {
    box->Move(240, top, 5760, 315);
    top += 360;
  }
  lblStartup.Move(525, 2340, 5475, 630);
  lblTrayIcon.Move(240, 3180, 2400, 300);
  sldtrayicon.Move(240, 3540, 2640, 480);
  sldtrayicon.SetAccessibleName("System tray icon");
  imgtrayicon.Move(960, 4200, 960, 960);
  imgtrayicon.SetAccessibleName("Preview of the tray icon");
  lblNoMapPic.Move(3360, 3180, 2640, 300);
  sldNoMapImage.Move(3360, 3540, 2640, 480);
  sldNoMapImage.SetAccessibleName("Picture for a map without one");
  imgNoMapPreview.Move(3480, 4080, 2400, 2400);
  imgNoMapPreview.SetAccessibleName("Preview of the picture");
  cmdOk.Move(240, 6420, 1815, 375);
  const std::pair<win::CheckBox&, char> keys[] = {{chkBinData, 'A'},   {chkHighPriority, 'H'}, {chkOldMods, 'F'},
                                                  {chkRenameLog, 'R'}, {chkStatusBar, 'S'},    {chkOnBoot, 'V'}};
  for (const auto& [box, key] : keys)
    box.SetMnemonic(key);
  lblTrayIcon.SetTarget(sldtrayicon);
  lblTrayIcon.SetMnemonic('T');
  lblNoMapPic.SetTarget(sldNoMapImage);
  lblNoMapPic.SetMnemonic('N');
}

void frmOptions::WireControls() {
  Load = [this] { Form_Load(); };
  WireOption(chkBinData, "BinDat", [](bool on) { ClearBindataOnLaunch = on; });
  WireOption(chkHighPriority, "HighPri", [](bool on) { HighPriority = on; });
  WireOption(chkOldMods, "OldMods", [](bool on) { ShowOldMods = on; });
  WireOption(chkRenameLog, "RenameLog", [](bool) {});
  WireOption(chkStatusBar, "StatusBar", host_.showStatusBar);
  chkOnBoot.Click = [this] { chkOnBoot_Click(); };
  cmdOk.Click = [this] { Close(); };
  SetDefaultButton(cmdOk);
  SetCancelButton(cmdOk);
}

void frmOptions::WireOption(win::CheckBox& box, const char* key, std::function<void(bool on)> effect) {
  box.Click = [&box, key, effect = std::move(effect)] {
    const bool on = box.Value() != 0;
    StoreOption(key, on ? "On" : "Off");
    effect(on);
  };
}

void frmOptions::Form_Load() {
  LoadSlider(sldNoMapImage, host_.noMapPictures, "NoMapPic", [this] { sldNoMapImage_Change(); });
  LoadSlider(sldtrayicon, host_.trayIcons, "TrayIconNum", [this] { sldtrayicon_Change(); });
  chkOldMods.SetValue(OptionIsOn("OldMods"));
  chkHighPriority.SetValue(OptionIsOn("HighPri"));
  chkBinData.SetValue(OptionIsOn("BinDat"));
  chkRenameLog.SetValue(OptionIsOn("RenameLog"));
  chkOnBoot.SetValue(!win::Trim(RegReadValue(win::kHkeyLocalMachine, kRunKey, kAutoloadValue)).empty());
  chkStatusBar.SetValue(OptionIsOn("StatusBar"));
}

// The change handling runs once, at the end, so that opening the dialog puts an index that is out of range right in the
// store and never shows or stores one in between.
void frmOptions::LoadSlider(win::Slider& slider, win::ImageList& pictures, const char* key,
                            const std::function<void()>& change) {
  slider.Change = {};
  slider.SetRange(1, pictures.Count());
  slider.SetValue(ChosenPicture(pictures, key));
  slider.Change = change;
  change();
}

void frmOptions::chkOnBoot_Click() {
  if (chkOnBoot.Value() == 0)
    RegRemoveValue(win::kHkeyLocalMachine, kRunKey, kAutoloadValue);
  else
    RegWriteValue(win::kHkeyLocalMachine, kRunKey, kAutoloadValue, AutoloadCommand(), win::kRegSz);
}

void frmOptions::sldNoMapImage_Change() {
  const int index = sldNoMapImage.Value();
  imgNoMapPreview.SetPicture(host_.noMapPictures.At(index));
  host_.showNoMapPicture(host_.noMapPictures.At(index));
  StoreOption("NoMapPic", std::to_string(index));
  const std::string maker = host_.noMapPictures.Tag(index);
  imgNoMapPreview.SetToolTipText(maker.empty() ? "Picture origin unknown" : "Picture made by: " + maker);
}

void frmOptions::sldtrayicon_Change() {
  const int index = sldtrayicon.Value();
  imgtrayicon.SetPicture(host_.trayIcons.At(index));
  host_.showTrayIcon(host_.trayIcons.At(index));
  StoreOption("TrayIconNum", std::to_string(index));
  const std::string maker = host_.trayIcons.Tag(index);
  imgtrayicon.SetToolTipText(maker.empty() ? "" : "Icon made by: " + maker);
}

}  // namespace varnik
