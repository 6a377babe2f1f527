#pragma once

#include "support/busywindow.h"
#include "support/ui/listfinder.h"
#include "windowing/button.h"
#include "windowing/frame.h"
#include "windowing/label.h"
#include "windowing/listbox.h"
#include "windowing/picturebox.h"
#include "windowing/textbox.h"
#include "windowing/timer.h"

#include <functional>
#include <string>
#include <vector>

namespace varnik {

// What the map page needs of the window.
struct MapPageHost {
  std::function<void(bool bold)> markMaps;  // the node of the map page
  std::function<std::string()> mapName;     // txtMapFileName of the command-line page
  std::function<void(const std::string&)> setMapName;
  std::function<void()> askForMapName;     // brings up the command-line page, with the focus in the box
  std::function<void()> showSelectedPage;  // the page switch for the tree's selected node
  BusyWindow busy;
};

// The map page: the list of a tree node's maps, and the chosen one's text, details and picture.
class FrmMap {
 public:
  FrmMap(win::Container& parent, MapPageHost host);

  void ClearMaps();
  void LoadMaps(bool rescan);

  // The numbers name the page as the tree does (maplist.h). Loads the catalogue at the first visit.
  void PopulateMapList(int mapType, int subType);

  // Notes the selected row and starts the timer, which does the work.
  void lstmap_Click();

  // The box for the map's name on the command-line page has lost the focus.
  void txtMapFileName_LostFocus();

  // The stand-by picture for a map without one.
  void SetNoMapPicture(const win::Picture& picture);

  // The box that narrows the list.
  ListFinder& Finder() { return finder_; }

  // For the hints of the status bar.
  std::vector<win::Control*> Controls() {
    return {&lstmap, &cmdMapLstRefresh, &imgmap, &imgnomap, &lblMapDetails, &txtMapDesc};
  }

  win::Frame frmMap;
  win::ListBox lstmap{frmMap, "lstmap", win::ListStyle::kSorted};
  win::Button cmdMapLstRefresh{frmMap, "cmdMapLstRefresh", "Refresh List"};
  win::PictureBox imgmap{frmMap, "imgmap"};
  win::PictureBox imgnomap{frmMap, "imgnomap"};  // never shown
  win::Label lblMapDetails{frmMap, "lblMapDetails"};
  win::TextBox txtMapDesc{frmMap, "txtMapDesc", win::TextBoxStyle::kMultiLine};
  win::Timer tmrMap{10};

 private:
  void PlaceControls();
  void ShowTexts(const std::string& text);
  void ShowNoMap();
  void FillList(const std::vector<std::size_t>& rows);
  void RestoreSelection();
  void tmrMap_Timer();
  void ShowPendingMap();
  void ShowNoPendingMap();
  void ShowDescription(const std::string& file);
  void cmdMapLstRefresh_Click();

  static std::string SearchedText(int map);

  ListFinder finder_;
  MapPageHost host_;
  bool showing_ = false;  // tmrMap_Timer is at work
  int PendingMap = -1;    // MapList index of the click not yet shown; -1 none
};

}  // namespace varnik
