#include "diagnosis/modsmeet.h"

#include "definition/bzonecfg.h"
#include "definition/currentline.h"
#include "diagnosis/definitioncheck.h"
#include "diagnosis/legacycheck.h"
#include "legacy/legacyformat.h"
#include "modengine/activation.h"
#include "modengine/catalogue.h"
#include "platform/system/files/rehearsal.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "support/install.h"

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace varnik {

namespace {

// More than any set of real mods takes; each of them takes about a tenth of a millisecond.
constexpr std::size_t kMaxOperations = 50'000;

// A file that an activation moves or writes.
struct TouchedFile {
  std::size_t line = 0;
  std::string name;  // as the definition has it
};
using TouchedFiles = std::unordered_map<std::string, TouchedFile>;  // by the name in lower case

std::string BelowRoot(const std::string& path) {
  const std::string root = InstallRoot();
  return path.starts_with(root) ? path.substr(root.size()) : path;
}

// One text for all spellings of a name.
std::string KeyOf(const std::string& name) { return win::LowerCase(win::ToNativeSpelling("/" + name)).substr(1); }

class Recorder {
 public:
  void Take(const win::FileOperation& operation) {
    ++operations_;
    if (CurrentLines.empty()) return;  // behind the last line the program does work of its own
    const bool isRename = operation.kind == win::Operation::kRename;
    if (isRename) Add(operation.source);
    if (isRename || operation.kind == win::Operation::kWrite) Add(operation.target);
  }
  std::size_t Operations() const { return operations_; }
  const TouchedFiles& Files() const { return files_; }

 private:
  // What is generated takes the place of bzone.cfg in the end. Where the program itself puts things away is no file of
  // a mod.
  void Add(const std::string& path) {
    std::string name = BelowRoot(path);
    std::string key = KeyOf(name);
    if (key == kGeneratedConfig || key == kLegacyGeneratedConfig) key = name = kGameConfig;
    const bool isOurs = key == kGameConfigBackup || key == kLegacyConfigBackup || key.ends_with(kLegacyFolderBackup) ||
                        key.starts_with(std::string(kParkingFolder) + "/");
    const auto line = static_cast<std::size_t>(CurrentLines.front()->LineNumber());
    if (!isOurs) files_.try_emplace(key, TouchedFile{line, std::move(name)});
  }

  TouchedFiles files_;
  std::size_t operations_ = 0;
};

// The readers have no limit on lines, so a file is looked at first.
bool IsTooLarge(const ModEntry& mod) {
  Findings unused;
  const auto check = mod.Legacy ? CheckLegacyDefinition : CheckCurrentDefinition;
  return !check(mod.DefinitionFile, unused, nullptr);
}

Recorder Rehearse(const ModEntry& mod) {
  const win::Rehearsal rehearsal;
  Recorder recorder;
  const win::OperationObserver observer([&](const win::FileOperation& operation) { recorder.Take(operation); });
  ActivationState unused;
  RunActivation(mod.DefinitionFile, mod.Legacy, unused);
  return recorder;
}

// The files that two mods share, in the order of lines.
using Shared = std::vector<TouchedFile>;

Shared InBoth(const TouchedFiles& mine, const TouchedFiles& others) {
  Shared shared;
  for (const auto& [key, file] : mine)
    if (others.contains(key)) shared.push_back(file);
  std::sort(shared.begin(), shared.end(), [](const TouchedFile& a, const TouchedFile& b) {
    return std::tie(a.line, a.name) < std::tie(b.line, b.name);
  });
  return shared;
}

std::string AndMore(std::size_t count, const std::string& what) {
  return count == 0 ? "" : " and " + std::to_string(count) + " more " + what + (count == 1 ? "" : "s");
}

// Mods that share the same files with the checked one are named together.
struct Meeting {
  Shared files;
  std::vector<std::string> others;  // file names of definitions
};

void Report(Findings& findings, Meeting& meeting) {
  auto& [files, others] = meeting;
  std::sort(others.begin(), others.end());
  const Place place{&findings, files.front().line, ""};
  place.Report(Problem::kModsMeet, "the mod shares " + Quoted(files.front().name) + AndMore(files.size() - 1, "file") +
                                       " with " + Quoted(others.front()) + AndMore(others.size() - 1, "mod") +
                                       ": only one of them can be active at a time");
}

}  // namespace

bool CheckModsMeet(const ModEntry& mod, Findings& findings) {
  const Recorder mine = Rehearse(mod);
  std::size_t operations = mine.Operations();
  bool anyLeftOut = false;
  std::map<std::string, Meeting> meetings;  // by the names of the files
  // By index: an activation handles events, and a handler may fill the list anew.
  for (std::size_t row = 1; row < ModList.size() && operations <= kMaxOperations; ++row) {
    const ModEntry other = ModList[row];
    const std::string name = win::FileNameOf(other.DefinitionFile);
    if (win::EqualNoCase(name, win::FileNameOf(mod.DefinitionFile))) continue;
    if (IsTooLarge(other)) {
      anyLeftOut = true;
      continue;
    }
    const Recorder theirs = Rehearse(other);
    operations += theirs.Operations();
    const Shared shared = InBoth(mine.Files(), theirs.Files());
    std::string key;
    for (const TouchedFile& file : shared)
      key += file.name + '\n';
    if (shared.empty()) continue;
    meetings[key].files = shared;
    meetings[key].others.push_back(name);
  }
  for (auto& [files, meeting] : meetings)
    Report(findings, meeting);
  return !anyLeftOut && operations <= kMaxOperations;
}

}  // namespace varnik
