#pragma once

#include "mainwindow/frmmain.h"
#include "support/ui/frmsplash.h"
#include "tests/harness/sandbox.h"
#include "tests/harness/window_app.h"

#include <memory>
#include <string>

namespace test {

// The main window on an install of a sandbox, which is row 0 of the list and selected.
class MainWindowTest : public WindowTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Adds a definition to the install; `lines` without the marker line.
  void AddMod(const std::string& fileName, const std::string& lines);

  // Lists the install in the store. Call before Open; without it the store is empty.
  void ListInstall(const std::string& version = "1.2");

  // Loads and shows the window as a start does.
  void Open();

  // Selects the row of the list of mods with this text; false when there is none.
  bool SelectMod(const std::string& text);

  Sandbox sandbox;
  varnik::frmSplash busy;
  std::unique_ptr<varnik::FrmMain> main;
};

}  // namespace test
