#include "diagnosis/leftovers.h"

#include "definition/bzonecfg.h"
#include "definition/recylist.h"
#include "legacy/legacyformat.h"
#include "platform/system/files/files.h"
#include "platform/system/files/findfile.h"
#include "platform/system/files/lines.h"
#include "support/modfileexists.h"

#include <algorithm>
#include <set>

namespace varnik {

namespace {

using Path = const std::string&;

// A name inside an install that stands for something left over, in one of the states in which it may be found.
struct LeftoverFile {
  std::string item;
  bool (*isInThisState)(Path root);  // null: in any other state
  std::string meaning;
  std::string remedy;
  void (*mend)(Path root, Path item);  // null: a person has to decide
};

bool BothConfigurationsAreKept(Path root) {
  return FileExists(root + kGameConfigBackup) && FileExists(root + kLegacyConfigBackup);
}

template <const char* kName>
bool IsMissing(Path root) {
  return !FileExists(root + kName);
}

std::multiset<std::string> LinesOf(Path path) {
  std::multiset<std::string> lines;
  for (win::LineReader file(path); !file.AtEnd();)
    lines.insert(file.ReadLine());
  return lines;
}

bool ListHoldsTheCopy(Path root) {
  const auto list = LinesOf(root + kRecyList);
  const auto copy = LinesOf(root + kRecyListCopy);
  return std::includes(list.begin(), list.end(), copy.begin(), copy.end());
}

bool ParkingFolderIsEmpty(Path root) {
  win::FolderReader folder(root + kParkingFolder);
  for (win::FoundEntry entry; folder.Next(entry);)
    if (entry.name != "." && entry.name != "..") return false;
  return folder.IsOpen();
}

void SetAside(Path root, Path item) { win::RenameFile(root + item, FreeKeptName(root + item)); }

void PutConfigurationBack(Path root, Path) { RestoreConfiguration(root); }

void PutLegacyConfigurationBack(Path root, Path item) {
  if (FileExists(root + kGameConfig)) win::DeleteFiles(root + kGameConfig);
  win::RenameFile(root + item, root + kGameConfig);
}

void RemoveParkingFolder(Path root, Path item) { win::RemoveFolder(root + item); }

template <const char* kName>
void PutBackAs(Path root, Path item) {
  win::RenameFile(root + item, root + kName);
}

const std::string kTwoConfigurations = std::string("Two configurations are put away, as ") + kGameConfigBackup +
                                       " and as " + kLegacyConfigBackup + "; one of them is the game's own.";
const std::string kFindTheOwn = "Look into both, and name the game's own bzone.cfg.";
const std::string kDeactivateByHand =
    "`varnik-cli deactivate --force MOD` with the mod that was active moves it back; only its definition tells where "
    "to.";
const std::string kPilotsBackup = std::string(kPilotsFolder) + kLegacyFolderBackup;
const std::string kSavedGamesBackup = std::string(kSavedGamesFolder) + kLegacyFolderBackup;

// Of the rows of one item the first whose state is found counts.
const LeftoverFile kLeftoverFiles[] = {
    {kGeneratedConfig, nullptr,
     "A generated configuration that never took the place of bzone.cfg; the next activation would add to it.",
     "It is set aside.", SetAside},
    {kGameConfigBackup, BothConfigurationsAreKept, kTwoConfigurations, kFindTheOwn, nullptr},
    {kGameConfigBackup, nullptr, "The game's own bzone.cfg, put away for a mod that is not active any more.",
     "It becomes bzone.cfg again.", PutConfigurationBack},
    {kLegacyGeneratedConfig, nullptr,
     "A configuration generated for a legacy mod that never took the place of bzone.cfg.", "It is set aside.",
     SetAside},
    {kLegacyConfigBackup, BothConfigurationsAreKept, kTwoConfigurations, kFindTheOwn, nullptr},
    {kLegacyConfigBackup, nullptr, "The game's own bzone.cfg, put away for a legacy mod that is not active any more.",
     "It becomes bzone.cfg again; the mod's own, if it brought one, is the copy that is kept.",
     PutLegacyConfigurationBack},
    {kRecyListCopy, IsMissing<kRecyList>, "RecyList.txt without a mod's lines, on the way to getting its name back.",
     "It becomes RecyList.txt again.", PutBackAs<kRecyList>},
    {kRecyListCopy, ListHoldsTheCopy, "A copy of RecyList.txt that was not needed any more.", "It is set aside.",
     SetAside},
    {kRecyListCopy, nullptr, "A list without a mod's lines, whose own file may be missing.",
     "Give it the name of the list that the mod's addrecy line names, if that is missing, else delete it.", nullptr},
    {kParkingFolder, ParkingFolderIsEmpty, "The folder in which a legacy mod parked files; it is empty.",
     "It is removed.", RemoveParkingFolder},
    {kParkingFolder, nullptr, "Files of the game that a legacy mod parked under numbers, and that were not moved back.",
     kDeactivateByHand, nullptr},
    {kPilotsBackup, IsMissing<kPilotsFolder>, "The player's pilots folder, put away for a legacy mod.",
     "It becomes pilots again.", PutBackAs<kPilotsFolder>},
    {kPilotsBackup, nullptr, "The player's pilots folder, put away for a legacy mod whose own is in its place.",
     kDeactivateByHand, nullptr},
    {kSavedGamesBackup, IsMissing<kSavedGamesFolder>, "The player's saved games, put away for a legacy mod.",
     "It becomes saved again.", PutBackAs<kSavedGamesFolder>},
    {kSavedGamesBackup, nullptr,
     "The player's saved games, put away for a legacy mod whose own folder is in their place.", kDeactivateByHand,
     nullptr},
};

}  // namespace

void AddLeftoverFiles(const std::string& root, std::vector<Leftover>& leftovers) {
  std::set<std::string> found;
  for (const LeftoverFile& row : kLeftoverFiles) {
    if (found.contains(row.item) || !FileExists(root + row.item)) continue;
    if (row.isInThisState && !row.isInThisState(root)) continue;
    found.insert(row.item);
    leftovers.push_back({row.item, row.meaning, row.remedy, {}});
    if (row.mend) leftovers.back().mend = [&row, root] { row.mend(root, row.item); };
  }
}

std::string FreeKeptName(const std::string& path) {
  for (int number = 1;; ++number)
    if (const std::string name = path + ".kept-" + std::to_string(number); !FileExists(name)) return name;
}

}  // namespace varnik
