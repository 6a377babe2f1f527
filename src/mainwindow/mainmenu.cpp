#include "mainwindow/mainmenu.h"

#include "installs/installlist.h"
#include "modengine/catalogue.h"

namespace varnik {

namespace {

constexpr char kHideMe[] = "hideme";

// A text of the player's as a caption, where `&` would mark a key.
std::string Literal(const std::string& text) {
  std::string caption;
  for (const char c : text)
    caption.append(c == '&' ? 2 : 1, c);
  return caption;
}

// An empty store leaves the list as it was, and the menus without rows.
std::size_t ListedInstalls() { return StoredInstallPath(0).empty() ? 0 : InstallList.size(); }

void UnloadInstallRows(MainMenu& menu, HiddenMenu& hidden) {
  menu.mnuBZ2Sel.UnloadAll();
  hidden.mnuBZ2SelH[0].SetVisible(true);
  hidden.mnuBZ2SelH.UnloadAll();
  menu.mnuBZ2Sel[0].SetVisible(false);
  menu.mnuBZ2DirSpacer.SetVisible(false);
  hidden.mnuBZ2DirH.SetVisible(false);
}

void AddInstallRow(MainMenu& menu, HiddenMenu& hidden, int index) {
  menu.mnuBZ2Sel.Load(index);
  hidden.mnuBZ2SelH.Load(index);
  const std::string caption = Literal(InstallList[index].Description);
  menu.mnuBZ2Sel[index].SetCaption(caption);
  hidden.mnuBZ2SelH[index].SetCaption(caption);
  const bool visible = !caption.empty() && IsOffered(index);
  menu.mnuBZ2Sel[index].SetVisible(visible);
  hidden.mnuBZ2SelH[index].SetTag(visible ? "" : kHideMe);
  if (!visible) return;
  menu.mnuBZ2DirSpacer.SetVisible(true);
  hidden.mnuBZ2DirH.SetVisible(true);
}

}  // namespace

MainMenu::MainMenu(win::Form& form)
    : mnuFile(form, "mnuFile", "&Varnik"),
      mnuBZ2Dir(form, "mnuBZ2Dir", "&BZ2 Directory"),
      mnuEmergency(form, "mnuEmergency", "&Emergency"),
      mnuHelp(form, "mnuHelp", "&Help") {
  mnubz2reload.SetShortcut("F5");
  mnuFileFind.SetShortcut("Ctrl+F");
}

HiddenMenu::HiddenMenu() {
  mnuRunModHBZ2.SetEnabled(false);
  mnuModH[0].SetTag("-1");
  mnuRunModH.SetVisible(false);
}

void FillInstallMenus(MainMenu& menu, HiddenMenu& hidden) {
  UnloadInstallRows(menu, hidden);
  for (std::size_t i = 0; i < ListedInstalls(); ++i)
    AddInstallRow(menu, hidden, static_cast<int>(i));
  if (!hidden.mnuBZ2DirH.Visible()) return;
  // Rows of a submenu are hidden only once the submenu itself is in sight.
  for (int i = 0; i <= hidden.mnuBZ2SelH.UBound(); ++i) {
    win::MenuItem& row = hidden.mnuBZ2SelH[i];
    if (row.Tag() == kHideMe) row.SetVisible(false);
    row.SetTag("");
  }
}

void MarkInstall(MainMenu& menu, HiddenMenu& hidden, int index) {
  for (win::MenuArray* rows : {&menu.mnuBZ2Sel, &hidden.mnuBZ2SelH}) {
    for (int i = 0; i <= rows->UBound(); ++i) {
      (*rows)[i].SetChecked(i == index);
      (*rows)[i].SetEnabled(i != index);
    }
  }
}

void FillModMenu(HiddenMenu& hidden) {
  win::MenuArray& rows = hidden.mnuModH;
  rows.UnloadAll();
  rows[0].SetCaption("<No Mod>");
  rows[0].SetTag("-1");
  for (std::size_t i = 1; i < ModList.size(); ++i) {
    const int index = static_cast<int>(i);
    rows.Load(index);
    rows[index].SetCaption(Literal(ModList[i].Name));
    rows[index].SetTag(std::to_string(index));
  }
}

}  // namespace varnik
