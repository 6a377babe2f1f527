#pragma once

#include "installs/installlist.h"
#include "mainwindow/frmmain.h"
#include "modengine/catalogue.h"
#include "support/install.h"
#include "support/runstate.h"
#include "support/settings.h"
#include "support/ui/frmsplash.h"
#include "tests/harness/sandbox.h"
#include "tests/harness/window_app.h"

#include <memory>
#include <string>

namespace test {

// An install to work on, selected, for tests of pages and dialogs.
class PageTest : public WindowTest {
 protected:
  PageTest() {
    varnik::AppPath = sandbox.AppText();
    sandbox.MakeInstall();
    varnik::UseInstallFolder(sandbox.InstallText());
    varnik::SelectModFolders(-1);
  }

  std::filesystem::path InRoot(const std::string& name) const { return sandbox.Install() / name; }
  void Put(const std::string& name, const std::string& content) const { WriteFile(InRoot(name), content); }
  std::string Content(const std::string& name) const { return ReadFile(InRoot(name)); }

  Sandbox sandbox;
};

// A window for a page to stand in.
template <class Page>
struct PageForm : win::Form {
  template <class... Args>
  explicit PageForm(Args... args) : Form("frmTest", 8000, 6000), page(*this, args...) {}
  Page page;
};

inline std::vector<std::string> RowsOf(const win::ListBox& list) {
  std::vector<std::string> rows;
  for (int row = 0; row < list.ListCount(); ++row)
    rows.push_back(list.List(row));
  return rows;
}

// The main window on an install that is row 0 of the list and selected.
class MainWindowTest : public PageTest {
 protected:
  MainWindowTest() {
    varnik::SelectInstall(-1);
    WriteFile(sandbox.App() / "varnik.cmd", "/nointro\r\n*/win\r\n/port:27\r\n");
  }

  // `lines` without the marker line.
  void AddMod(const std::string& fileName, const std::string& lines) { Put(fileName, "BZ2HALD5\r\n" + lines); }

  // Call before Open; without it no install is listed.
  void ListInstall(const std::string& version = "1.2") {
    sandbox.MakeInstall(version);
    for (const auto& [key, value] : {std::pair{"BZ2Loc0", sandbox.InstallText()}, {"BZ2Sel0", "Yes"}, {"Active", "0"}})
      varnik::Store(varnik::kInstallsSection, key, value);
  }

  // As a start does.
  void Open() {
    main = std::make_unique<varnik::FrmMain>(busy);
    main->EnsureLoaded();
    ShowActive(*main);
  }

  // False when the list of mods has no such row.
  bool SelectMod(const std::string& text) {
    const auto rows = RowsOf(main->modPage.lstmods);
    const auto row = std::find(rows.begin(), rows.end(), text);
    if (row == rows.end()) return false;
    main->modPage.lstmods.SetListIndex(static_cast<int>(row - rows.begin()));
    return true;
  }

  varnik::frmSplash busy;
  std::unique_ptr<varnik::FrmMain> main;
};

}  // namespace test
