#include "gameconfig/ui/frmbz2config1_3.h"

#include "gameconfig/gamesettings.h"
#include "platform/system/process/services.h"

namespace varnik {

FrmBZ2Config1_3::FrmBZ2Config1_3(win::Container& parent) : frmBZ2Config1_3(parent, "frmBZ2Config1_3") {
  PlaceControls();
  FillViews();
  cmdCFGApply1_3.Click = [this] { cmdCFGApply1_3_Click(); };
}

void FrmBZ2Config1_3::PlaceControls() {
  frmBZ2Config1_3.Move(2280, 360, 5520, 5010);
  chkFramerate.Move(240, 180, 5040, 300);
  chkVsync.Move(240, 480, 5040, 300);
  lblViews.Move(240, 840, 5040, 285);
  const struct {
    win::Label& label;
    win::ComboBox& box;
  } views[] = {
      {lblHovercraft, cmbHovercraft}, {lblPerson, cmbPerson}, {lblTracked, cmbTracked}, {lblWalker, cmbWalker}};
  double top = 1125;
  for (const auto& view : views) {
    view.label.Move(240, top + 45, 1500, 285);
    view.box.Move(1800, top, 3480, 330);
    view.box.SetAccessibleName("View for " + view.label.Caption());
    top += 360;
  }
  const struct {
    win::Label& label;
    win::TextBox& box;
  } texts[] = {{lblAltNick, txtAltNick}, {lblIRCUserID, txtIRCUserID}, {lblIRCFullName, txtIRCFullName}};
  top = 2610;
  for (const auto& text : texts) {
    text.label.Move(240, top, 5040, 450);
    text.box.Move(240, top + 450, 3540, 300);
    text.box.SetAccessibleName(text.label.Caption());
    top += 780;
  }
  cmdCFGApply1_3.Move(3960, 4560, 1320, 375);
}

void FrmBZ2Config1_3::FillViews() {
  for (win::ComboBox* box : {&cmbHovercraft, &cmbPerson, &cmbTracked, &cmbWalker}) {
    for (const CraftView& view : kCraftViews) {
      box->AddItem(view.text);
      box->SetItemData(box->NewIndex(), view.value);
    }
  }
}

bool FrmBZ2Config1_3::LoadSettings() {
  const std::optional<UserPrefs> prefs = ReadUserPrefs();
  if (!prefs) {
    win::MsgBox("Sorry, but the 1.3 options file was not found.");
    return false;
  }
  chkFramerate.SetValue(prefs->showFps);
  chkVsync.SetValue(prefs->vsyncOn);
  cmbHovercraft.SetListIndex(prefs->hovercraftView);
  cmbPerson.SetListIndex(prefs->personView);
  cmbTracked.SetListIndex(prefs->trackedView);
  cmbWalker.SetListIndex(prefs->walkerView);
  txtAltNick.SetText(prefs->ircAlternateNick);
  txtIRCUserID.SetText(prefs->ircUserId);
  txtIRCFullName.SetText(prefs->ircFullName);
  return true;
}

void FrmBZ2Config1_3::cmdCFGApply1_3_Click() {
  UserPrefs prefs;
  prefs.showFps = chkFramerate.Value() == 1;
  prefs.vsyncOn = chkVsync.Value() == 1;
  prefs.hovercraftView = cmbHovercraft.ListIndex();
  prefs.personView = cmbPerson.ListIndex();
  prefs.trackedView = cmbTracked.ListIndex();
  prefs.walkerView = cmbWalker.ListIndex();
  prefs.ircAlternateNick = txtAltNick.Text();
  prefs.ircUserId = txtIRCUserID.Text();
  prefs.ircFullName = txtIRCFullName.Text();
  ApplyUserPrefs(prefs);
}

std::vector<win::Control*> FrmBZ2Config1_3::Controls() {
  return {&chkFramerate, &chkVsync,   &cmbHovercraft, &cmbPerson,      &cmbTracked,
          &cmbWalker,    &txtAltNick, &txtIRCUserID,  &txtIRCFullName, &cmdCFGApply1_3};
}

}  // namespace varnik
