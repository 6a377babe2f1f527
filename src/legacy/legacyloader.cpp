#include "legacy/legacyloader.h"

#include "definition/bzonecfg.h"
#include "legacy/legacyformat.h"
#include "platform/system/paths/paths.h"
#include "support/install.h"
#include "support/modfileexists.h"

#include <utility>

namespace varnik {

namespace {

constexpr char kHiddenTarget[] = "XXXXXXXXXXXXX";  // lies in no folder

struct LoaderWalk {
  ModEntry entry;
  LegacyPlaces places{InstallRoot()};
  LegacyArguments arguments;
  LegacyConfig config = LegacyConfig::kUndecided;
  bool execAllowed = true;
  bool stop = false;
};

// Rows of the catalogue hold paths below the install root.
void StripRootDir(std::string& path) {
  if (HasRootDir(path)) path.erase(0, kRootDirLength);
}

bool Decide(LoaderWalk& walk, LegacyConfig config) {
  if (walk.config != LegacyConfig::kUndecided) return false;
  walk.config = config;
  walk.execAllowed = false;
  return true;
}

void Exec(LoaderWalk& walk, const LegacyLine&) {
  if (!walk.execAllowed) return;
  walk.entry.Standard = false;
  walk.stop = true;
}

void Dynamic(LoaderWalk& walk, const LegacyLine&) {
  Decide(walk, LegacyConfig::kGenerated);
}

void NoBzoneCfg(LoaderWalk& walk, const LegacyLine&) {
  Decide(walk, LegacyConfig::kUntouched);
}

// The mod brings its own game configuration: the folders named there replace the usual ones.
void Predefined(LoaderWalk& walk, const LegacyLine& line) {
  if (!Decide(walk, LegacyConfig::kPredefined)) return;
  const std::string path = walk.places.ExpandRootDir(line.Value());
  win::LineReader configuration(path);
  walk.stop = !configuration.IsOpen();
  std::vector<std::string> folders(1);
  while (!configuration.AtEnd())
    if (auto folder = FolderOfConfigurationLine(configuration.ReadLine())) folders.push_back(std::move(*folder));
  if (folders.size() > 1) walk.entry.Folders = std::move(folders);
}

void Fold(LoaderWalk& walk, const LegacyLine& line) {
  if (walk.config != LegacyConfig::kGenerated) return;
  std::string folder = win::Trim(line.Value());
  StripRootDir(folder);
  walk.entry.Folders.push_back(std::move(folder));
}

void SplitStripped(LoaderWalk& walk, const LegacyLine& line) {
  walk.execAllowed = false;
  walk.arguments.Split(line);
  StripRootDir(walk.arguments.first);
  StripRootDir(walk.arguments.second);
}

// The second file shows under the first one's name, so its row stands first: the first row that matches a path counts.
void Replace(LoaderWalk& walk, const LegacyLine& line) {
  SplitStripped(walk, line);
  walk.entry.Renames.push_back({walk.arguments.second, walk.arguments.first, ""});
  walk.entry.Renames.push_back({walk.arguments.first, kHiddenTarget, ""});
}

void Move(LoaderWalk& walk, const LegacyLine& line) {
  SplitStripped(walk, line);
  walk.entry.Renames.push_back({walk.arguments.first, walk.arguments.second, ""});
}

void Remove(LoaderWalk& walk, const LegacyLine& line) {
  walk.execAllowed = false;
  std::string path = win::Trim(line.Value());
  StripRootDir(path);
  walk.entry.Renames.push_back({std::move(path), kHiddenTarget, ""});
}

// `pak`, `pilots` and `saved` matter to activation only. None of them, nor `fold`, rules out a later `exec` here.
constexpr LegacyDirective<LoaderWalk> kDirectives[] = {
    {"exec ", Exec},
    {"dynamic", Dynamic},
    {"predefined ", Predefined},
    {"nobzonecfg", NoBzoneCfg},
    {"fold ", Fold},
    {"replace ", Replace},
    {"move ", Move},
    {"remove ", Remove},
};

std::string ReadDescription(const LoaderWalk& walk, const std::string& line) {
  if (!win::StartsWithNoCase(line, kLegacyDescription)) return "";
  const std::string path =
      walk.places.ExpandRootDir(win::Trim(line.substr(std::string_view(kLegacyDescription).size())));
  if (!FileExists(path)) return "";
  return win::ReadWholeFile(path).value_or("");
}

// Lines 2 to 5 by position; line 1 has been read. The splash line is kept whole, keyword included, so no picture is
// ever found by it.
void ReadHeader(LoaderWalk& walk, win::LineReader& file) {
  const std::string name = ReadLegacyLine(file).text;
  if (win::StartsWithNoCase(name, kLegacyName)) walk.entry.Name = name.substr(std::string_view(kLegacyName).size());
  walk.entry.Description = ReadDescription(walk, ReadLegacyLine(file).text);
  file.ReadLine();
  const std::string splash = ReadLegacyLine(file).text;
  if (win::StartsWithNoCase(splash, kLegacySplash)) walk.entry.Splash = splash;
}

void NameByFile(ModEntry& entry, std::string& path) {
  path = win::FileNameOf(path);
  entry.Name = path.substr(0, path.size() < 4 ? 0 : path.size() - 4);
}

}  // namespace

ModEntry LoadLegacyMod(win::LineReader& file, std::string& path) {
  LoaderWalk walk;
  walk.entry.Legacy = true;
  walk.entry.MarkedX = true;
  walk.entry.DefinitionFile = path;
  walk.entry.Folders = {"", "addon", "data"};
  ReadHeader(walk, file);
  if (walk.entry.Name.empty()) NameByFile(walk.entry, path);
  // A path cut down to the file name is looked for in the working folder; where that fails, the row stays without
  // directives.
  file = win::LineReader(path);
  while (!walk.stop && !file.AtEnd())
    ActOnLegacyLine(kDirectives, walk, ReadLegacyLine(file));
  return std::move(walk.entry);
}

}  // namespace varnik
