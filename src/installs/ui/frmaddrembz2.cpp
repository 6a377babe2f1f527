#include "installs/ui/frmaddrembz2.h"

#include "installs/installlist.h"
#include "platform/system/paths/paths.h"
#include "platform/system/process/services.h"
#include "platform/system/text/text.h"
#include "support/modfindfile.h"
#include "support/ui/win95_functions.h"
#include "windowing/shortcut.h"
#include "windowing/timer.h"

#include <utility>

namespace varnik {

namespace {

constexpr char kListNote[] =
    "The list on the left is your list of BZ2 locations. The number/string in parentheses next to the "
    "folder/descriptive name is the version Varnik thinks the BZ2 install is currently running at.";
constexpr char kSearchNote[] =
    "Pressing the button below will start a search of your computer for any BZ2 directories Varnik can find. Network "
    "paths may or may not work, although manual entry should work for them. Any directories found will be added to the "
    "list on the left, if they are not already there.";
constexpr char kRemoveNote[] =
    "Pressing the button below will remove the currently selected BZ2 directory from the list on the left. This button "
    "will NOT remove the folder itself!";
constexpr char kSearchWarning[] =
    "Varnik will now search the location you specified for BZ2. During this time Varnik may appear to have stopped "
    "responding. It is most likely busy searching your computer. Please be patient.";
constexpr int kProgressInterval = 200;  // milliseconds
constexpr int kEnter = 13;

}  // namespace

frmAddRemBZ2::frmAddRemBZ2(std::function<void()> listSaved)
    : Form("frmAddRemBZ2", 10920, 6720),
      lblList(*this, "lblList", kListNote),
      lblSearch(*this, "lblSearch", kSearchNote),
      lblRemove(*this, "lblRemove", kRemoveNote),
      listSaved_(std::move(listSaved)) {
  SetCaption("Add/Remove BZ2 Locations");
  PlaceControls();
  WireControls();
}

void frmAddRemBZ2::PlaceControls() {
  constexpr double kLeftWidth = 6180;
  constexpr double kRight = 6480;
  constexpr double kRightWidth = 4320;
  lstBZ2Loc.Move(120, 120, kLeftWidth, 3180);
  lstBZ2Loc.SetAccessibleName("Locations");
  cmdMvUp.Move(120, 3420, 3030, 375);
  cmdMvDown.Move(3270, 3420, 3030, 375);
  lblSel.Move(120, 3900, kLeftWidth, 720);
  lblDescriptiveName.Move(120, 4680, kLeftWidth, 285);
  txtDescriptiveName.Move(120, 4980, kLeftWidth, 315);
  txtDescriptiveName.SetAccessibleName(lblDescriptiveName.Caption());
  lblManual.Move(120, 5460, kLeftWidth, 285);
  txtManual.Move(120, 5760, 5040, 315);
  txtManual.SetAccessibleName(lblManual.Caption());
  cmdManualAdd.Move(5280, 5730, 1020, 375);
  lblList.Move(kRight, 120, kRightWidth, 1080);
  lblSearch.Move(kRight, 1320, kRightWidth, 1380);
  cmdSearchBZ2.Move(kRight, 2760, kRightWidth, 375);
  lblRemove.Move(kRight, 3420, kRightWidth, 840);
  cmdRemove.Move(kRight, 4320, kRightWidth, 375);
  cmdSaveChanges.Move(kRight, 6210, 2100, 375);
  cmdCancel.Move(8700, 6210, 2100, 375);
  SetSizable();
  lblDescriptiveName.SetTarget(txtDescriptiveName);
  lblDescriptiveName.SetMnemonic('N');
  lblManual.SetTarget(txtManual);
  lblManual.SetMnemonic('M');
  const std::pair<win::Button&, char> keys[] = {{cmdMvUp, 'U'},   {cmdMvDown, 'w'},      {cmdSearchBZ2, 'S'},
                                                {cmdRemove, 'R'}, {cmdSaveChanges, 'C'}, {cmdCancel, 'D'}};
  for (const auto& [button, key] : keys)
    button.SetMnemonic(key);
  lstBZ2Loc.SetAnchors(win::kFill);
  cmdMvUp.SetAnchors({0, 1, 0.5, 1});
  cmdMvDown.SetAnchors({0.5, 1, 1, 1});
  for (win::Control* control :
       std::initializer_list<win::Control*>{&lblSel, &lblDescriptiveName, &txtDescriptiveName, &lblManual, &txtManual})
    control->SetAnchors(win::kBottomAcross);
  for (win::Control* control :
       std::initializer_list<win::Control*>{&lblList, &lblSearch, &cmdSearchBZ2, &lblRemove, &cmdRemove})
    control->SetAnchors(win::kTopRight);
  for (win::Button* button : {&cmdManualAdd, &cmdSaveChanges, &cmdCancel})
    button->SetAnchors(win::kBottomRight);
}

void frmAddRemBZ2::WireControls() {
  Load = [this] { Form_Load(); };
  lstBZ2Loc.Click = [this] { lstBZ2Loc_Click(); };
  lstBZ2Loc.ItemCheck = [this](int row) { list_.rows[row].Offered = lstBZ2Loc.Selected(row); };
  lstBZ2Loc.DragRow = [this](int step) { MoveRow(step); };
  txtDescriptiveName.Change = [this] { txtDescriptiveName_Change(); };
  cmdMvUp.Click = [this] { MoveRow(-1); };
  cmdMvDown.Click = [this] { MoveRow(1); };
  cmdManualAdd.Click = [this] { cmdManualAdd_Click(); };
  cmdSearchBZ2.Click = [this] { cmdSearchBZ2_Click(); };
  cmdRemove.Click = [this] { cmdRemove_Click(); };
  cmdSaveChanges.Click = [this] { cmdSaveChanges_Click(); };
  cmdCancel.Click = [this] { Close(); };
  txtManual.KeyPress = [this](int& key) {
    if (key == kEnter) cmdManualAdd_Click();
  };
  SetCancelButton(cmdCancel);
  win::AddShortcut(lstBZ2Loc, "Del", [this] { cmdRemove_Click(); });
  win::AddShortcut(lstBZ2Loc, "Ctrl+Up", [this] { MoveRow(-1); });
  win::AddShortcut(lstBZ2Loc, "Ctrl+Down", [this] { MoveRow(1); });
}

void frmAddRemBZ2::Form_Load() {
  list_ = LoadLocations();
  lstBZ2Loc.Clear();
  ShowAddedRows();
}

void frmAddRemBZ2::ShowAddedRows() {
  for (int row = lstBZ2Loc.ListCount(); row < static_cast<int>(list_.rows.size()); ++row) {
    lstBZ2Loc.AddItem(list_.rows[row].Path);
    lstBZ2Loc.SetSelected(row, list_.rows[row].Offered);
  }
  lstBZ2Loc_Click();
}

void frmAddRemBZ2::lstBZ2Loc_Click() {
  const int row = lstBZ2Loc.ListIndex();
  const std::string text = lstBZ2Loc.List(row);
  txtDescriptiveName.SetEnabled(row >= 0);
  txtDescriptiveName.SetText(row < 0 ? "" : list_.Descriptions[row]);
  lblSel.SetCaption(row < 0 ? "" : "Current Selection: " + text);
  lblSel.SetToolTipText(text);
}

void frmAddRemBZ2::txtDescriptiveName_Change() {
  const int row = lstBZ2Loc.ListIndex();
  if (row >= 0) list_.Descriptions[row] = txtDescriptiveName.Text();
}

void frmAddRemBZ2::cmdManualAdd_Click() {
  const std::string path = win::WithSeparator(txtManual.Text());
  txtManual.SetText(path);
  if (!IsBZ2Install(path)) {
    win::MsgBox("That location does not appear to be valid.", win::kOkOnly, "Location invalid");
    return;
  }
  if (!AddLocation(list_, path)) {
    win::MsgBox("That location is already listed", win::kOkOnly, "Location Exists");
    return;
  }
  ShowAddedRows();
}

void frmAddRemBZ2::cmdSearchBZ2_Click() {
  win::MsgBox("Please select a folder/drive to start searching from in the next window.", win::kOkOnly, "Instructions");
  const std::string folder = BrowseForFolder(this, "Search Start");
  if (win::Trim(folder).empty()) return;
  win::MsgBox(kSearchWarning);
  FileSearchParams params;
  params.Recurse = true;
  params.Pattern = "bzone.exe";
  FileSearchResults results;
  {
    win::Timer progress(kProgressInterval, true);
    progress.Tick = [this, &params] {
      lblSel.SetCaption("Searching: " + std::to_string(params.SearchedCount) + " entries, " +
                        std::to_string(params.FoundCount) + " found");
    };
    SetEnabled(false);
    win::DoEvents();
    FindFiles(folder, params, results, false);
  }
  if (!Loaded()) return;  // the program was told to end during the search
  AddSearchResults(list_, results);
  ShowAddedRows();
  SetEnabled(true);
  win::MsgBox("Thank you for waiting. Varnik has finished searching.");
}

void frmAddRemBZ2::cmdRemove_Click() {
  const int row = lstBZ2Loc.ListIndex();
  if (row < 0) return;
  RemoveLocation(list_, row);
  lstBZ2Loc.RemoveItem(row);
  lstBZ2Loc_Click();
}

void frmAddRemBZ2::MoveRow(int step) {
  const int row = lstBZ2Loc.ListIndex();
  const int target = row + step;
  if (row < 0 || target < 0 || target >= lstBZ2Loc.ListCount()) return;
  SwapLocations(list_, row, target);
  for (const int moved : {row, target}) {
    lstBZ2Loc.SetList(moved, list_.rows[moved].Path);
    lstBZ2Loc.SetSelected(moved, list_.rows[moved].Offered);
  }
  lstBZ2Loc.SetListIndex(target);
}

void frmAddRemBZ2::cmdSaveChanges_Click() {
  SaveLocations(list_);
  listSaved_();
  Close();
}

}  // namespace varnik
