#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace varnik {

// One pair of names: what lies under From in the install lies under To while the mod is active.
struct RenameEntry {
  std::string From;
  std::string To;
  std::string Third;  // used by rows of the legacy format only
};

// One row of the mod catalogue.
struct ModEntry {
  std::string Description;
  std::string Name;                     // empty when the definition gives none
  std::string Image;                    // below the install root, or below `mods\` of the program's folder
  std::string Splash;                   // same rule
  std::string DefinitionFile;           // full path
  std::vector<RenameEntry> Renames{1};  // index 0 is empty
  std::vector<std::string> Folders{1};  // folders under the root searched for game files; index 0 is empty
  bool Standard = true;                 // false: after requireexe an EXE does the mod's work
  bool ExeDeactivates = false;          // that EXE can undo it, too
  bool Legacy = false;
  bool MarkedX = false;    // line 1 carries /x; always true for a legacy row
  std::int32_t State = 0;  // 0 active during a run only; 1 persistent and active; -1 persistent and inactive
};

}  // namespace varnik
