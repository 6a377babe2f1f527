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
  chkFramerate.Move(240, 150, 5040, 285);
  chkFramerate.SetMnemonic('F');
  chkVsync.Move(240, 435, 5040, 285);
  chkVsync.SetMnemonic('S');
  lblViews.Move(240, 765, 5040, 255);
  PlaceViews(1020);
  PlaceTexts(2445);
  cmdCFGApply1_3.Move(3960, 4590, 1320, 360);
  cmdCFGApply1_3.SetMnemonic('y');
  cmdCFGApply1_3.SetAnchors(win::kBottomRight);
}

void FrmBZ2Config1_3::PlaceViews(double top) {
  const struct {
    win::Label& label;
    char key;
    win::ComboBox& box;
  } views[] = {{lblHovercraft, 'o', cmbHovercraft},
               {lblPerson, 'P', cmbPerson},
               {lblTracked, 'T', cmbTracked},
               {lblWalker, 'W', cmbWalker}};
  for (const auto& view : views) {
    view.label.Move(240, top + 45, 1500, 255);
    view.label.SetTarget(view.box);
    view.label.SetMnemonic(view.key);
    view.box.Move(1800, top, 3480, 330);
    view.box.SetAnchors(win::kAcross);
    top += 350;
  }
}

// Each label stands close above its box, and away from the box before.
void FrmBZ2Config1_3::PlaceTexts(double top) {
  const struct {
    win::Label& label;
    char key;
    win::TextBox& box;
  } texts[] = {{lblAltNick, 'N', txtAltNick}, {lblIRCUserID, 'I', txtIRCUserID}, {lblIRCFullName, 'u', txtIRCFullName}};
  for (const auto& text : texts) {
    text.label.Move(240, top, 5040, 450);
    text.label.SetAtBottom();
    text.label.SetTarget(text.box);
    text.label.SetMnemonic(text.key);
    text.label.SetAnchors(win::kAcross);
    text.box.Move(240, top + 450, 3540, 285);
    text.box.SetAnchors(win::kAcross);
    text.box.SetAccessibleName(text.label.Caption());
    top += 825;
  }
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
