#include "mainwindow/frmmod.h"

#include "mainwindow/modpagetext.h"
#include "modengine/catalogue.h"
#include "platform/system/paths/paths.h"

#include <utility>

namespace varnik {

namespace {

constexpr double kHeightWithPicture = 1635;
constexpr double kHeightAlone = 3255;
constexpr double kTextShare = 0.4;  // of the height that the page gains; the list has the rest

const char* LaunchCaption(std::int32_t state) {
  if (state == 1) return "Deactivate";
  return state == -1 ? "Activate" : "Launch";
}

win::RowMark MarkOf(std::int32_t state) {
  if (state == 1) return win::RowMark::kOn;
  return state == -1 ? win::RowMark::kOff : win::RowMark::kPlain;
}

}  // namespace

FrmMod::FrmMod(win::Container& parent, ModPageHost host)
    : frmMod(parent, "frmMod"),
      finder_(frmMod, "txtModFind", lstmods, [this](int row) { return SearchedText(lstmods.ItemData(row)); }),
      host_(std::move(host)) {
  frmMod.Move(2280, 480, 5520, 4890);
  txtModDesc.Move(240, 360, 5010, kHeightWithPicture);
  txtModDesc.SetLocked(true);
  txtModDesc.SetAccessibleName("Mod description");
  picModPic.Move(240, 2160, 5010, 1500);
  picModPic.SetAccessibleName("Mod picture");
  finder_.Place(240, 3780, 5010, 1035, {0, kTextShare, 1, 1});
  lstmods.SetAccessibleName("Mods");
  txtModDesc.SetAnchors({0, 0, 1, kTextShare});
  picModPic.SetAnchors({0, kTextShare, 1, kTextShare});
  lstmods.Click = [this] { lstmods_Click(); };
  lstmods.DblClick = [this] { host_.launch(); };
}

void FrmMod::ShowModList() {
  {
    const win::ListUpdate update(lstmods);
    lstmods.Clear();
    AddRow("<No Mod>", -1);
    for (std::size_t i = 1; i < ModList.size(); ++i)
      AddRow(ModRowText(ModList[i]), static_cast<std::int32_t>(i));
  }
  finder_.Filled();
  SelectFirstRow();
}

void FrmMod::AddRow(const std::string& text, std::int32_t data) {
  lstmods.AddItem(text);
  lstmods.SetItemData(lstmods.NewIndex(), data);
  if (data > 0) lstmods.SetMark(lstmods.NewIndex(), MarkOf(ModList[data].State));
}

std::string FrmMod::SearchedText(int mod) {
  if (mod < 1 || mod >= static_cast<int>(ModList.size())) return "";
  const ModEntry& entry = ModList[mod];
  return entry.Name + "\n" + win::FileNameOf(entry.DefinitionFile) + "\n" + entry.Description;
}

void FrmMod::SelectFirstRow() {
  if (lstmods.ListIndex() == 0)
    lstmods_Click();
  else
    lstmods.SetListIndex(0);
}

int FrmMod::SelectedMod() const { return lstmods.ListIndex() < 0 ? -1 : lstmods.ItemData(lstmods.ListIndex()); }

void FrmMod::lstmods_Click() {
  const int index = SelectedMod();
  if (index >= static_cast<int>(ModList.size())) return;
  SelectModFolders(index);
  if (index < 0)
    ShowNoMod();
  else
    ShowMod(ModList[index]);
  host_.followMod();
  host_.setLaunchCaption(index < 0 ? "Launch" : LaunchCaption(ModList[index].State));
}

void FrmMod::ShowNoMod() {
  host_.enableEmergency(false);
  host_.markMods(false);
  host_.enableEdit(false);
  txtModDesc.SetHeight(kHeightAlone);
  txtModDesc.SetText(NoModText());
  frmMod.SetCaption("No Mod");
  picModPic.SetVisible(false);
  host_.keepModNodes(true);
}

void FrmMod::ShowMod(const ModEntry& mod) {
  host_.markMods(true);
  host_.enableEdit(!mod.MarkedX);
  frmMod.SetCaption(mod.Name);
  txtModDesc.SetText(ModText(mod));
  ShowPicture(mod);
  host_.enableEmergency(mod.ExeDeactivates || mod.Standard);
  host_.keepModNodes(mod.Standard);
}

// Once hidden the box stays hidden; the height of the text alone follows the picture.
void FrmMod::ShowPicture(const ModEntry& mod) {
  const std::string file = ModPicture(mod);
  txtModDesc.SetHeight(file.empty() ? kHeightAlone : kHeightWithPicture);
  if (file.empty()) {
    picModPic.SetVisible(false);
    return;
  }
  const win::Picture picture = win::Picture::FromFile(file);
  if (!picture.Empty()) picModPic.SetPicture(picture);
}

}  // namespace varnik
