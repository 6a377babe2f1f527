#include "tests/window/main_window.h"

#include "support/install.h"
#include "support/runstate.h"
#include "support/settings.h"

namespace test {

void MainWindowTest::SetUp() {
  varnik::AppPath = sandbox.AppText();
  varnik::SelectInstall(-1);
  varnik::SearchDirs = {"", "addon", "data"};
  WriteFile(sandbox.App() / "varnik.cmd", "/nointro\r\n*/win\r\n/port:27\r\n");
}

void MainWindowTest::TearDown() {
  main.reset();
  WindowTest::TearDown();
}

void MainWindowTest::AddMod(const std::string& fileName, const std::string& lines) {
  WriteFile(sandbox.Install() / fileName, "BZ2HALD5\r\n" + lines);
}

void MainWindowTest::ListInstall(const std::string& version) {
  sandbox.MakeInstall(version);
  varnik::Store(varnik::kInstallsSection, "BZ2Loc0", sandbox.InstallText());
  varnik::Store(varnik::kInstallsSection, "BZ2Sel0", "Yes");
  varnik::Store(varnik::kInstallsSection, "Active", "0");
}

void MainWindowTest::Open() {
  main = std::make_unique<varnik::FrmMain>(busy);
  main->EnsureLoaded();
  main->Show();
  main->SetFocus();
  RunEvents();
}

bool MainWindowTest::SelectMod(const std::string& text) {
  for (int row = 0; row < main->modPage.lstmods.ListCount(); ++row) {
    if (main->modPage.lstmods.List(row) != text) continue;
    main->modPage.lstmods.SetListIndex(row);
    return true;
  }
  return false;
}

}  // namespace test
