#include "gameconfig/ui/frmextras.h"

#include "gameconfig/screenshots.h"

#include <utility>

namespace varnik {

FrmExtras::FrmExtras(win::Container& parent, std::function<void(const std::string&)> setHint)
    : frmExtras(parent, "frmExtras"), setHint_(std::move(setHint)) {
  frmExtras.Move(2280, 360, 5520, 5010);
  lblScreenshots.Move(240, 240, 5040, 300);
  cmbScreenshots.Move(240, 570, 5040, 330);
  imgScreenshot.Move(240, 1020, 5040, 3060);
  imgScreenshot.SetAccessibleName("The chosen screenshot");
  lblClearBindata.Move(240, 4260, 3300, 480);
  cmdClearBindata.Move(3660, 4290, 1620, 375);
  lblNoScreenshots.Move(240, 1020, 5040, 600);
  lblNoScreenshots.SetAnchors(win::kAcross);
  lblScreenshots.SetTarget(cmbScreenshots);
  lblScreenshots.SetMnemonic('D');
  cmdClearBindata.SetMnemonic('C');
  lblScreenshots.SetAnchors(win::kAcross);
  cmbScreenshots.SetAnchors(win::kAcross);
  imgScreenshot.SetAnchors(win::kFill);
  lblClearBindata.SetAnchors(win::kBottomAcross);
  cmdClearBindata.SetAnchors(win::kBottomRight);
  cmbScreenshots.Click = [this] { cmbScreenshots_Click(); };
  cmdClearBindata.Click = [] { ClearBindata(); };
}

void FrmExtras::populatescreenshots() {
  const std::vector<std::string> names = ListScreenshots();
  cmbScreenshots.Clear();
  cmbScreenshots.SetEnabled(!names.empty());
  lblNoScreenshots.SetVisible(names.empty());
  imgScreenshot.SetVisible(!names.empty());
  for (const std::string& name : names)
    cmbScreenshots.AddItem(name);
  imgScreenshot.SetPicture(win::Picture());
}

void FrmExtras::cmbScreenshots_Click() {
  setHint_("Select a screenshot to view.");
  imgScreenshot.SetPicture(win::Picture::FromFile(ScreenshotFile(cmbScreenshots.Text())));
}

}  // namespace varnik
