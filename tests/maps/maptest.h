#pragma once

#include "maps/maplist.h"
#include "tests/modengine/modtest.h"

namespace test {

// A selected install with maps.
class MapTest : public ModTest {
 protected:
  MapTest() { varnik::ClearMapList(); }

  void PutFile(const std::string& name, std::string_view content = "") const { WriteFile(InRoot(name), content); }

  // Selects a mod that searches these folders and causes these renames.
  static void SelectMod(const std::vector<std::string>& folders, const std::vector<varnik::RenameEntry>& renames = {}) {
    varnik::ClearModList();
    varnik::ModEntry mod;
    mod.Folders.insert(mod.Folders.end(), folders.begin(), folders.end());
    mod.Renames.insert(mod.Renames.end(), renames.begin(), renames.end());
    varnik::AppendModRow(mod);
    varnik::SelectModFolders(1);
  }
};

}  // namespace test
