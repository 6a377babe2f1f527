#include "maps/ui/frmmap.h"

#include "maps/mapdetails.h"
#include "maps/maplist.h"
#include "platform/system/files/files.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/process/services.h"
#include "platform/system/text/text.h"
#include "support/runstate.h"

#include <optional>
#include <utility>

namespace varnik {
namespace {

constexpr char kNoMap[] = "No Map Selected";
constexpr std::int32_t kNoMapData = -1;
constexpr int kTypedName = -2;

// A description is a page of text; what is larger is something else under its name, and the box would choke on it.
constexpr std::uint64_t kMaxDescriptionBytes = 1u << 20;

// Of what the page gains: in width the list beside the picture, in height both of them above the description.
constexpr double kListShare = 0.5;
constexpr double kUpperShare = 0.75;

bool HasMapExtension(const std::string& name) {
  const std::string lower = win::LowerCase(win::Trim(name));
  return lower.ends_with(".bzn") || lower.ends_with(".trn");
}

// What is wrong with a typed name; empty when nothing is. The message names another slash than the one tested.
std::string ProblemWith(const std::string& name) {
  if (!HasMapExtension(name)) return "Invalid Map Filename. Must end in .bzn or .trn";
  if (name.find_first_of("-+/") == std::string::npos) return "";
  return "Invalid Chars in map name.\r\n\\, +, and - are not valid in map names.";
}

}  // namespace

FrmMap::FrmMap(win::Container& parent, MapPageHost host)
    : frmMap(parent, "frmMap"),
      finder_(frmMap, "txtMapFind", lstmap, [this](int row) { return SearchedText(lstmap.ItemData(row)); }),
      host_(std::move(host)) {
  PlaceControls();
  lstmap.Click = [this] { lstmap_Click(); };
  cmdMapLstRefresh.Click = [this] { cmdMapLstRefresh_Click(); };
  tmrMap.Tick = [this] { tmrMap_Timer(); };
}

void FrmMap::PlaceControls() {
  frmMap.Move(2280, 360, 5520, 5010);
  finder_.Place(240, 300, 2160, 2355, {0, 0, kListShare, kUpperShare});
  lstmap.SetAccessibleName("Maps");
  cmdMapLstRefresh.Move(240, 2715, 2160, 375);
  imgmap.Move(2520, 300, 2760, 2790);
  imgmap.SetAccessibleName("Picture of the map");
  imgnomap.Move(2520, 300, 2760, 2790);
  imgnomap.SetVisible(false);
  txtMapDesc.Move(240, 3180, 5040, 1080);
  txtMapDesc.SetLocked(true);
  txtMapDesc.SetAccessibleName("Description of the map");
  lblMapDetails.Move(240, 4320, 5040, 630);
  lblMapDetails.SetElided();
  cmdMapLstRefresh.SetMnemonic('R');
  cmdMapLstRefresh.SetAnchors({0, kUpperShare, kListShare, kUpperShare});
  imgmap.SetAnchors({kListShare, 0, 1, kUpperShare});
  txtMapDesc.SetAnchors({0, kUpperShare, 1, 1});
  lblMapDetails.SetAnchors(win::kBottomAcross);
}

void FrmMap::SetNoMapPicture(const win::Picture& picture) { imgnomap.SetPicture(picture); }

void FrmMap::ShowTexts(const std::string& text) {
  txtMapDesc.SetText(text);
  lblMapDetails.SetCaption(text);
  imgmap.SetPicture(imgnomap.Image());
}

void FrmMap::ShowNoMap() {
  ShowTexts(kNoMap);
  SelectedMapIndex = -1;
  host_.markMaps(false);
}

void FrmMap::ClearMaps() {
  ClearMapList();
  PendingMap = -1;  // a waiting click now chooses no map: the name that the game would be given goes too
  lstmap.Clear();
  ShowNoMap();
}

void FrmMap::LoadMaps(bool rescan) {
  ClearMaps();
  host_.busy.begin();
  LoadMapList(rescan, host_.busy.setStatus, host_.busy.isStopped);
  host_.busy.end();
}

void FrmMap::PopulateMapList(int mapType, int subType) {
  if (!MapLoadTried) LoadMaps(false);
  if (!MapsLoaded) return;
  FillList(MapRowsOfPage(mapType, subType));
  finder_.Filled();
  RestoreSelection();
}

std::string FrmMap::SearchedText(int map) {
  if (map < 0 || map >= static_cast<int>(MapList.size())) return "";
  return MapList[map].Title + "\n" + MapList[map].FileName;
}

void FrmMap::FillList(const std::vector<std::size_t>& rows) {
  const win::ListUpdate update(lstmap);
  lstmap.Clear();
  lstmap.AddItem("*No Map*");
  lstmap.SetItemData(lstmap.NewIndex(), kNoMapData);
  for (const std::size_t row : rows) {
    lstmap.AddItem(MapList[row].Title);
    lstmap.SetItemData(lstmap.NewIndex(), static_cast<std::int32_t>(row));
  }
}

// Of a map that is listed twice the last row counts.
void FrmMap::RestoreSelection() {
  if (SelectedMapIndex == kTypedName) return;
  for (int row = lstmap.ListCount() - 1; row >= 0; --row)
    if (lstmap.ItemData(row) == SelectedMapIndex) return lstmap.SetListIndex(row);
}

void FrmMap::lstmap_Click() {
  const int row = lstmap.ListIndex();
  tmrMap.SetEnabled(false);
  PendingMap = row < 0 ? -1 : lstmap.ItemData(row);
  tmrMap.SetEnabled(true);
}

// Events run while a map is looked up. A click among them gets the next tick, when this one is done.
void FrmMap::tmrMap_Timer() {
  if (showing_) return;
  tmrMap.SetEnabled(false);
  showing_ = true;
  if (PendingMap >= 0 && PendingMap < static_cast<int>(MapList.size()))
    ShowPendingMap();
  else
    ShowNoPendingMap();
  showing_ = false;
}

void FrmMap::ShowNoPendingMap() {
  win::DoEvents();
  ShowNoMap();
  host_.setMapName("");
}

void FrmMap::ShowPendingMap() {
  const int row = SelectedMapIndex = PendingMap;
  const MapEntry map = MapList[row];
  const std::string description = FindMapDescription(map);
  win::Picture picture;
  FindMapPicture(map, [&picture](const std::string& file) {
    picture = win::Picture::FromFile(file, win::Alpha::kIgnored);
    return !picture.Empty();
  });
  if (SelectedMapIndex != row || tmrMap.Enabled()) return;  // another row was chosen since
  ShowDescription(description);
  imgmap.SetPicture(picture.Empty() ? imgnomap.Image() : picture);
  lblMapDetails.SetCaption(MapDetails(map));
  host_.markMaps(true);
  host_.setMapName(map.FileName);
}

// What cannot be read leaves the text as it is.
void FrmMap::ShowDescription(const std::string& file) {
  const std::optional<std::uint64_t> size = win::FileSize(file);
  if (file.empty() || size > kMaxDescriptionBytes) return txtMapDesc.SetText("No Description Available");
  if (!size) return;
  if (const std::optional<std::string> text = win::ReadWholeFile(file)) txtMapDesc.SetText(*text);
}

void FrmMap::txtMapFileName_LostFocus() {
  const bool nameIsGoing = tmrMap.Enabled() && PendingMap < 0;  // with a reload, for one
  if (host_.busy.isUp() || nameIsGoing) return;
  const std::string name = host_.mapName();
  if (win::Trim(name).empty()) return ShowNoMap();
  if (SelectedMapIndex >= 0 && win::EqualNoCase(name, MapList[SelectedMapIndex].FileName)) return;
  if (const std::string problem = ProblemWith(name); !problem.empty()) {
    win::MsgBox(problem);
    return host_.askForMapName();
  }
  SelectedMapIndex = kTypedName;
  ShowTexts("Manual Entry");
  host_.markMaps(true);
}

void FrmMap::cmdMapLstRefresh_Click() {
  ClearMaps();
  host_.busy.begin();
  LoadMaps(true);
  host_.busy.end();
  frmMap.Refresh();
  host_.showSelectedPage();
}

}  // namespace varnik
