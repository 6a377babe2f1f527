#include "legacy/legacyloader.h"

#include "definition/bzonecfg.h"
#include "legacy/legacyformat.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/paths/paths.h"
#include "support/install.h"
#include "support/modfileexists.h"

#include <utility>

namespace varnik {

namespace {

constexpr char kHiddenTarget[] = "XXXXXXXXXXXXX";  // lies in no folder

struct LoaderState {
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

bool Decide(LoaderState& state, LegacyConfig config) {
  if (state.config != LegacyConfig::kUndecided) return false;
  state.config = config;
  state.execAllowed = false;
  return true;
}

void Exec(LoaderState& state, const LegacyLine&) {
  if (!state.execAllowed) return;
  state.entry.Standard = false;
  state.stop = true;
}

void Dynamic(LoaderState& state, const LegacyLine&) { Decide(state, LegacyConfig::kGenerated); }

void NoBzoneCfg(LoaderState& state, const LegacyLine&) { Decide(state, LegacyConfig::kUntouched); }

// The mod brings its own game configuration: the folders named there replace the usual ones.
void Predefined(LoaderState& state, const LegacyLine& line) {
  if (!Decide(state, LegacyConfig::kPredefined)) return;
  const std::string path = state.places.ExpandRootDir(line.Value());
  win::LineReader configuration(path);
  state.stop = !configuration.IsOpen();
  std::vector<std::string> folders(1);
  while (!configuration.AtEnd())
    if (auto folder = FolderOfConfigurationLine(configuration.ReadLine())) folders.push_back(std::move(*folder));
  if (folders.size() > 1) state.entry.Folders = std::move(folders);
}

void Fold(LoaderState& state, const LegacyLine& line) {
  if (state.config != LegacyConfig::kGenerated) return;
  std::string folder = win::Trim(line.Value());
  StripRootDir(folder);
  state.entry.Folders.push_back(std::move(folder));
}

void SplitStripped(LoaderState& state, const LegacyLine& line) {
  state.execAllowed = false;
  state.arguments.Split(line);
  StripRootDir(state.arguments.first);
  StripRootDir(state.arguments.second);
}

// The second file shows under the first one's name, so its row stands first: the first row that matches a path counts.
void Replace(LoaderState& state, const LegacyLine& line) {
  SplitStripped(state, line);
  state.entry.Renames.push_back({state.arguments.second, state.arguments.first, ""});
  state.entry.Renames.push_back({state.arguments.first, kHiddenTarget, ""});
}

void Move(LoaderState& state, const LegacyLine& line) {
  SplitStripped(state, line);
  state.entry.Renames.push_back({state.arguments.first, state.arguments.second, ""});
}

void Remove(LoaderState& state, const LegacyLine& line) {
  state.execAllowed = false;
  std::string path = win::Trim(line.Value());
  StripRootDir(path);
  state.entry.Renames.push_back({std::move(path), kHiddenTarget, ""});
}

// `pak`, `pilots` and `saved` matter to activation only. None of them, nor `fold`, rules out a later `exec` here.
constexpr LegacyDirective<LoaderState> kDirectives[] = {
    {"exec ", Exec},
    {"dynamic", Dynamic},
    {"predefined ", Predefined},
    {"nobzonecfg", NoBzoneCfg},
    {"fold ", Fold},
    {"replace ", Replace},
    {"move ", Move},
    {"remove ", Remove},
};

std::string ReadDescription(const LoaderState& state, const std::string& line) {
  if (!win::StartsWithNoCase(line, kLegacyDescription)) return "";
  const std::string path =
      state.places.ExpandRootDir(win::Trim(line.substr(std::string_view(kLegacyDescription).size())));
  if (!FileExists(path)) return "";
  return win::ReadWholeFile(path).value_or("");
}

// Lines 2 to 5 by position; line 1 has been read. The splash line is kept whole, keyword included, so no picture is
// ever found by it.
void ReadHeader(LoaderState& state, win::LineReader& file) {
  const std::string name = ReadLegacyLine(file).text;
  if (win::StartsWithNoCase(name, kLegacyName)) state.entry.Name = name.substr(std::string_view(kLegacyName).size());
  state.entry.Description = ReadDescription(state, ReadLegacyLine(file).text);
  file.ReadLine();
  const std::string splash = ReadLegacyLine(file).text;
  if (win::StartsWithNoCase(splash, kLegacySplash)) state.entry.Splash = splash;
}

}  // namespace

ModEntry LoadLegacyMod(win::LineReader& file, std::string& path) {
  LoaderState state;
  state.entry.Legacy = true;
  state.entry.MarkedX = true;
  state.entry.DefinitionFile = path;
  state.entry.Folders = {"", "addon", "data"};
  ReadHeader(state, file);
  if (state.entry.Name.empty()) {
    path = win::FileNameOf(path);
    state.entry.Name = path.substr(0, path.size() < 4 ? 0 : path.size() - 4);
  }
  // A path cut down to the file name is looked for in the working folder; where that fails, the row stays without
  // directives.
  file = win::LineReader(path);
  while (!state.stop && !file.AtEnd())
    ActOnLegacyLine(kDirectives, state, ReadLegacyLine(file));
  return std::move(state.entry);
}

}  // namespace varnik
