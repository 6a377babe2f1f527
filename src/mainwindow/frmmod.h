#pragma once

#include "support/ui/listfinder.h"
#include "windowing/frame.h"
#include "windowing/listbox.h"
#include "windowing/picturebox.h"
#include "windowing/textbox.h"

#include <functional>
#include <string>
#include <vector>

namespace varnik {

struct ModEntry;

// What the mod page needs of the window.
struct ModPageHost {
  std::function<void(const std::string& caption)> setLaunchCaption;
  std::function<void(bool enabled)> enableEmergency;
  std::function<void(bool enabled)> enableEdit;
  std::function<void(bool bold)> markMods;         // the node of the mod page
  std::function<void(bool present)> keepModNodes;  // the map and command-line nodes
  std::function<void()> launch;                    // as its button does
  std::function<void()> followMod;                 // the map page shows the maps of the selected mod
};

// The page that the program opens on: the list of mods, and what hangs on the selected one.
class FrmMod {
 public:
  FrmMod(win::Container& parent, ModPageHost host);

  // Fills the list from ModList and selects row 0, whose click follows.
  void ShowModList();

  // Selects row 0 and refreshes the page, also when that row was selected already.
  void SelectFirstRow();

  // The box that narrows the list.
  ListFinder& Finder() { return finder_; }

  // Item data of the selected row: an index of ModList, -1 for no mod.
  int SelectedMod() const;

  // For the hints of the status bar.
  std::vector<win::Control*> Controls() { return {&txtModDesc, &picModPic, &lstmods}; }

  win::Frame frmMod;
  win::TextBox txtModDesc{frmMod, "txtModDesc", win::TextBoxStyle::kMultiLine};
  win::PictureBox picModPic{frmMod, "picModPic"};
  win::ListBox lstmods{frmMod, "lstmods", win::ListStyle::kSorted};

 private:
  void AddRow(const std::string& text, std::int32_t data);
  void lstmods_Click();
  void ShowNoMod();
  void ShowMod(const ModEntry& mod);
  void ShowPicture(const ModEntry& mod);

  static std::string SearchedText(int mod);

  ListFinder finder_;
  ModPageHost host_;
};

}  // namespace varnik
