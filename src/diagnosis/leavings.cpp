#include "diagnosis/leavings.h"

#include "definition/bzonecfg.h"
#include "platform/system/files/files.h"
#include "platform/system/files/findfile.h"
#include "platform/system/files/lines.h"
#include "support/modfileexists.h"

#include <algorithm>
#include <set>

namespace varnik {

namespace {

// A name inside an install that stands for something left over, in one of the states in which it may be found.
struct LeftFile {
  const char* item;
  bool (*isInThisState)(const std::string& root);
  const char* meaning;
  const char* remedy;
  void (*mend)(const std::string& root, const std::string& item);  // null: a person has to decide
};

bool Always(const std::string&) { return true; }

bool BothConfigurationsAreKept(const std::string& root) {
  return FileExists(root + "bzonevarnik.bak") && FileExists(root + "bzone.tmp.old");
}

bool ListIsMissing(const std::string& root) { return !FileExists(root + "RecyList.txt"); }

std::multiset<std::string> LinesOf(const std::string& path) {
  std::multiset<std::string> lines;
  for (win::LineReader file(path); !file.AtEnd();)
    lines.insert(file.ReadLine());
  return lines;
}

bool ListHoldsTheCopy(const std::string& root) {
  const auto list = LinesOf(root + "RecyList.txt");
  const auto copy = LinesOf(root + "tmp.recylist");
  return std::includes(list.begin(), list.end(), copy.begin(), copy.end());
}

bool TempFolderIsEmpty(const std::string& root) {
  win::FolderReader folder(root + "tempstuff");
  for (win::FoundEntry entry; folder.Next(entry);)
    if (entry.name != "." && entry.name != "..") return false;
  return folder.IsOpen();
}

bool PilotsAreMissing(const std::string& root) { return !FileExists(root + "pilots"); }

bool SavedGamesAreMissing(const std::string& root) { return !FileExists(root + "saved"); }

void PutAside(const std::string& root, const std::string& item) { SetAside(root + item); }

void PutConfigurationBack(const std::string& root, const std::string&) { RestoreConfiguration(root); }

void PutLegacyConfigurationBack(const std::string& root, const std::string& item) {
  if (FileExists(root + "bzone.cfg")) win::DeleteFiles(root + "bzone.cfg");
  win::RenameFile(root + item, root + "bzone.cfg");
}

void TakeForTheList(const std::string& root, const std::string& item) {
  win::RenameFile(root + item, root + "RecyList.txt");
}

void RemoveTempFolder(const std::string& root, const std::string& item) { win::RemoveFolder(root + item); }

void TakeOffSuffix(const std::string& root, const std::string& item) {
  win::RenameFile(root + item, root + item.substr(0, item.rfind('.')));
}

constexpr char kTwoConfigurations[] =
    "Two configurations are put away, as bzonevarnik.bak and as bzone.tmp.old; one of them is the game's own.";
constexpr char kFindTheOwn[] = "Look into both, and name the game's own bzone.cfg.";
constexpr char kDeactivateByHand[] =
    "`varnik-cli deactivate MOD` with the mod that was in force moves it back; only its definition tells where to.";

// Of the rows of one item the first whose state is found counts.
constexpr LeftFile kLeftFiles[] = {
    {"bzonevarnik.cfg", Always,
     "A generated configuration that never took the place of bzone.cfg; the next activation would add to it.",
     "It is set aside.", PutAside},
    {"bzonevarnik.bak", BothConfigurationsAreKept, kTwoConfigurations, kFindTheOwn, nullptr},
    {"bzonevarnik.bak", Always, "The game's own bzone.cfg, put away for a mod that is not in force any more.",
     "It becomes bzone.cfg again.", PutConfigurationBack},
    {"newbzone.tmp", Always, "A configuration generated for a legacy mod that never took the place of bzone.cfg.",
     "It is set aside.", PutAside},
    {"bzone.tmp.old", BothConfigurationsAreKept, kTwoConfigurations, kFindTheOwn, nullptr},
    {"bzone.tmp.old", Always, "The game's own bzone.cfg, put away for a legacy mod that is not in force any more.",
     "It becomes bzone.cfg again; the mod's own, if it brought one, is the copy that is kept.",
     PutLegacyConfigurationBack},
    {"tmp.recylist", ListIsMissing, "RecyList.txt without a mod's lines, on the way to getting its name back.",
     "It becomes RecyList.txt again.", TakeForTheList},
    {"tmp.recylist", ListHoldsTheCopy, "A copy of RecyList.txt that was not needed any more.", "It is set aside.",
     PutAside},
    {"tmp.recylist", Always, "A list without a mod's lines, whose own file may be missing.",
     "Give it the name of the list that the mod's addrecy line names, if that is missing, else delete it.", nullptr},
    {"tempstuff", TempFolderIsEmpty, "The folder in which a legacy mod parked files; it is empty.", "It is removed.",
     RemoveTempFolder},
    {"tempstuff", Always, "Files of the game that a legacy mod parked under numbers, and that were not moved back.",
     kDeactivateByHand, nullptr},
    {"pilots.orig", PilotsAreMissing, "The player's pilots folder, put away for a legacy mod.",
     "It becomes pilots again.", TakeOffSuffix},
    {"pilots.orig", Always, "The player's pilots folder, put away for a legacy mod whose own is in its place.",
     kDeactivateByHand, nullptr},
    {"saved.orig", SavedGamesAreMissing, "The player's saved games, put away for a legacy mod.",
     "It becomes saved again.", TakeOffSuffix},
    {"saved.orig", Always, "The player's saved games, put away for a legacy mod whose own folder is in their place.",
     kDeactivateByHand, nullptr},
};

Leaving LeavingOf(const LeftFile& row, const std::string& root) {
  Leaving leaving{row.item, row.meaning, row.remedy, {}};
  if (row.mend) leaving.mend = [&row, root] { row.mend(root, row.item); };
  return leaving;
}

}  // namespace

void AddLeftFiles(const std::string& root, std::vector<Leaving>& leavings) {
  std::set<std::string> told;
  for (const LeftFile& row : kLeftFiles) {
    if (told.contains(row.item) || !FileExists(root + row.item) || !row.isInThisState(root)) continue;
    told.insert(row.item);
    leavings.push_back(LeavingOf(row, root));
  }
}

}  // namespace varnik
