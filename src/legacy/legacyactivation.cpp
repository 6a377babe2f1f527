#include "legacy/legacyactivation.h"

#include "definition/bzonecfg.h"
#include "definition/confines.h"
#include "definition/crashmarker.h"
#include "definition/currentline.h"
#include "legacy/legacyformat.h"
#include "platform/system/files/files.h"
#include "platform/system/files/lines.h"
#include "platform/system/process/process.h"
#include "support/install.h"

#include <optional>
#include <set>

namespace varnik {

namespace {

// The game configuration that a mod with `dynamic` gets. The text goes to `newbzone.tmp` in the install root, and takes
// the place of bzone.cfg when it is whole. Names stand in it as the definition gives them: the game resolves
// `@rootdir`.
class ConfigWriter {
 public:
  void Begin(const std::string& root) {
    file_.emplace(root + kLegacyGeneratedConfig, win::WriteMode::kOutput);
    file_->WriteLine(ConfigurationHead(true) + "\r\n");
  }

  void AddPack(const std::string& name) { file_->WriteLine(PackEntry(kIndent, name) + "\r\n"); }
  void AddFolder(const std::string& path) { file_->WriteLine(FolderEntry(kIndent, path) + "\r\n"); }

  // Keeps the game's own bzone.cfg as `bzone.tmp.old`.
  void Finish(const std::string& root) {
    file_->WriteLine(kAddonEntries);
    file_->WriteLine("");
    file_->WriteLine(kGamePacks);
    file_->WriteLine(FolderEntry(kIndent, "@rootdir\\data"));
    file_->WriteLine(kConfigurationEnd);
    if (!file_->Close()) return static_cast<void>(win::DeleteFiles(root + kLegacyGeneratedConfig));
    win::RenameFile(root + kGameConfig, root + kLegacyConfigBackup);
    win::RenameFile(root + kLegacyGeneratedConfig, root + kGameConfig);
  }

 private:
  static constexpr int kIndent = 16;
  std::optional<win::LineWriter> file_;
};

struct ActivationPass {
  LegacyPlaces places{InstallRoot()};
  Confines confines{places.root};
  LegacyArguments arguments;
  LegacyConfig config = LegacyConfig::kUndecided;
  ConfigWriter generated;
  std::set<std::string> swappedFolders;
  bool tempMade = false;
  bool execAllowed = true;
  bool programTookOver = false;

  std::string InRoot(const std::string& name) const { return places.root + name; }
};

void Exec(ActivationPass& pass, const LegacyLine& line) {
  if (!pass.execAllowed) return;
  const std::string commandLine = "\"" + pass.places.ExpandRootDir(line.Value()) + "\"";
  if (!pass.confines.MayStart(commandLine)) return;
  win::ShellExecute(commandLine);
  pass.programTookOver = true;
}

bool Decide(ActivationPass& pass, LegacyConfig config) {
  if (pass.config != LegacyConfig::kUndecided) return false;
  pass.config = config;
  pass.execAllowed = false;
  return true;
}

void Dynamic(ActivationPass& pass, const LegacyLine&) {
  if (Decide(pass, LegacyConfig::kGenerated)) pass.generated.Begin(pass.places.root);
}

void Predefined(ActivationPass& pass, const LegacyLine& line) {
  if (!Decide(pass, LegacyConfig::kPredefined)) return;
  const std::string path = pass.places.ExpandRootDir(line.Value());
  win::RenameFile(pass.InRoot(kGameConfig), pass.InRoot(kLegacyConfigBackup));
  win::RenameFile(path, pass.InRoot(kGameConfig));
}

void NoBzoneCfg(ActivationPass& pass, const LegacyLine&) { Decide(pass, LegacyConfig::kUntouched); }

// `pilots` and `saved`: the keyword is the folder's name, and its first line counts.
void SwapFolder(ActivationPass& pass, const LegacyLine& line) {
  const std::string folder = line.Keyword();
  if (!pass.swappedFolders.insert(folder).second) return;
  const std::string path = pass.places.ExpandRootDir(line.Value());
  win::RenameFile(pass.InRoot(folder), pass.InRoot(folder + kLegacyFolderBackup));
  win::RenameFile(path, pass.InRoot(folder));
  pass.execAllowed = false;
}

void Pak(ActivationPass& pass, const LegacyLine& line) {
  if (pass.config != LegacyConfig::kGenerated) return;
  std::string name = win::Trim(line.Value());
  if (!win::LowerCase(name).ends_with(".pak")) name += ".pak";
  pass.generated.AddPack(name);
}

void Fold(ActivationPass& pass, const LegacyLine& line) {
  if (pass.config == LegacyConfig::kGenerated) pass.generated.AddFolder(win::Trim(line.Value()));
}

void MakeTempFolder(ActivationPass& pass) {
  if (!pass.tempMade) win::MakeFolder(pass.InRoot(kParkingFolder));
  pass.tempMade = true;
}

// The one change after which a later `exec` still counts.
void Replace(ActivationPass& pass, const LegacyLine& line) {
  MakeTempFolder(pass);
  pass.places.SplitExpanded(line, pass.arguments);
  win::RenameFile(pass.arguments.first, pass.places.NextTempName());
  win::RenameFile(pass.arguments.second, pass.arguments.first);
}

void Move(ActivationPass& pass, const LegacyLine& line) {
  pass.places.SplitExpanded(line, pass.arguments);
  win::RenameFile(pass.arguments.first, pass.arguments.second);
  pass.execAllowed = false;
}

void Remove(ActivationPass& pass, const LegacyLine& line) {
  MakeTempFolder(pass);
  const std::string path = pass.places.ExpandRootDir(win::Trim(line.Value()));
  win::RenameFile(path, pass.places.NextTempName());
  pass.execAllowed = false;
}

constexpr LegacyDirective<ActivationPass> kDirectives[] = {
    {"exec ", Exec},
    {"dynamic", Dynamic},
    {"predefined ", Predefined},
    {"nobzonecfg", NoBzoneCfg},
    {"pilots ", SwapFolder},
    {"saved ", SwapFolder},
    {"pak ", Pak},
    {"fold ", Fold},
    {"replace ", Replace},
    {"move ", Move},
    {"remove ", Remove},
};

}  // namespace

std::vector<std::string_view> LegacyKeywords() {
  std::vector<std::string_view> keywords;
  for (const LegacyDirective<ActivationPass>& directive : kDirectives)
    keywords.emplace_back(directive.keyword);
  return keywords;
}

bool ActivateLegacyMod(const std::string& definitionFile) {
  win::LineReader file(definitionFile);
  if (!file.IsOpen()) return false;
  ActivationPass pass;
  while (!file.AtEnd() && !pass.programTookOver) {
    const LegacyLine line = ReadLegacyLine(file);
    const ScopedLine here(file);
    const win::ScopedFileSystem confined = pass.confines.Enforce();
    ActOnLegacyLine(kDirectives, pass, line);
  }
  if (pass.programTookOver) return false;
  if (pass.config == LegacyConfig::kGenerated) {
    const win::ScopedFileSystem confined = pass.confines.Enforce();
    pass.generated.Finish(pass.places.root);
  }
  // What undoes the mod starts from what is on the disk.
  win::SyncFileSystemOf(pass.places.root);
  WriteCrashMarker({pass.places.root, definitionFile});
  return true;
}

}  // namespace varnik
