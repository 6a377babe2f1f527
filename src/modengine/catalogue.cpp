#include "modengine/catalogue.h"

#include "definition/directive.h"
#include "legacy/legacyloader.h"
#include "modengine/definitionreader.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "support/debuglog.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"
#include "support/runstate.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace varnik {

namespace {

std::vector<ModEntry> list(1);
bool listFilled = false;
std::vector<RenameEntry> renames(1);
bool renamesActive = false;

// Counts the clearings. Events run during a load, and a handler may fill the list anew.
unsigned generation = 0;

// Names of the definition files in the list, in lower case.
std::unordered_set<std::string> knownFiles;

std::string KeyOf(const std::string& path) { return win::LowerCase(win::FileNameOf(path)); }

void LoadCurrentMod(win::LineReader& file, const std::string& path, const std::string& marker) {
  if (knownFiles.contains(KeyOf(path))) return;
  ModEntry entry;
  entry.MarkedX = marker.size() > 9 && marker.substr(9) == "/x";
  entry.DefinitionFile = path;
  bool noActionYet = true;
  if (!ReadModDefinition(file, entry, noActionYet)) return;
  // The mod's own folders come first; the two that every install has follow unless it named them itself.
  for (const char* standard : {"addon", "data"})
    if (std::find(entry.Folders.begin() + 1, entry.Folders.end(), standard) == entry.Folders.end())
      entry.Folders.emplace_back(standard);
  AppendModRow(std::move(entry));
}

}  // namespace

const std::vector<ModEntry>& ModList = list;
const bool& ModListFilled = listFilled;
const std::vector<RenameEntry>& ModRenames = renames;
const bool& ModRenamesActive = renamesActive;

void ClearModList() {
  LogLine("ClearMods Begin");
  ++generation;
  list.assign(1, ModEntry());
  listFilled = false;
  renames.assign(1, RenameEntry());
  renamesActive = false;
  knownFiles.clear();
}

void LoadModList(const std::function<void(const std::string&)>& progress) {
  LogLine("LoadMods Begin");
  if (CurrentInstall < 0) return;
  ClearModList();
  LogLine("LoadMods Continue");
  const unsigned mine = generation;
  const auto report = [&](const std::string& text) {
    if (progress) progress(text);
  };
  FileSearchParams search;
  search.Pattern = kDefinitionPattern;
  FileSearchResults found(1);
  report("Loading Mod File List");
  FindFiles(InstallRoot(), search, found, false);
  FindFiles(AppPath + "mods\\", search, found, false);
  for (std::int32_t i = 1; i <= search.FoundCount && mine == generation; ++i) {
    report("Processing Mod:" + std::to_string(i));
    LoadModFile(win::Trim(found[i]));
  }
}

void LoadModFile(std::string path) {
  win::LineReader file(path);
  const std::string marker = win::Trim(file.ReadLine());
  double version = 0;
  if (!ReadMarker(marker, version)) return;
  if (version == kCurrentFormat) LoadCurrentMod(file, path, marker);
  if (version <= kLastLegacyFormat && ShowOldMods && !StandsInModsFolder(path)) AppendModRow(LoadLegacyMod(file, path));
}

bool StandsInModsFolder(const std::string& path) {
  const std::string folder = AppPath + "mods\\";
  return FileExists(folder) && FileExists(folder + win::FileNameOf(path));
}

std::string ModRowText(const ModEntry& entry) {
  return entry.Name + (entry.State == 1 ? "(ACTIVE)" : entry.State == -1 ? "(INACTIVE)" : "");
}

std::size_t FindMod(const std::string& nameOrPath) {
  const std::string name = win::FileNameOf(nameOrPath);
  const bool isPath = name.size() != nameOrPath.size();
  for (std::size_t row = 1; row < list.size(); ++row) {
    const std::string& file = list[row].DefinitionFile;
    if (!win::EqualNoCase(win::FileNameOf(file), name)) continue;
    if (!isPath || win::IsSamePath(file, nameOrPath)) return row;
  }
  return 0;
}

void AppendModRow(ModEntry entry) {
  knownFiles.insert(KeyOf(entry.DefinitionFile));
  list.push_back(std::move(entry));
  listFilled = true;
}

void SelectModFolders(int modIndex) {
  if (modIndex > 0 && static_cast<std::size_t>(modIndex) < list.size()) {
    SearchDirs = list[modIndex].Folders;
    renames = list[modIndex].Renames;
  } else {
    SearchDirs = {"", "addon"};
    if (!IsVersion13()) SearchDirs.emplace_back("data");
    renames.assign(1, RenameEntry());
  }
  renamesActive = renames.size() > 1;
  SelectedMapIndex = -1;
}

}  // namespace varnik
