#pragma once

#include "definition/confines.h"
#include "definition/directive.h"
#include "diagnosis/finding.h"

#include <map>
#include <string>
#include <unordered_set>

namespace varnik {

// What a step of a mod does with a name.
enum class NameUse {
  kMoves,     // needs the file
  kReplaces,  // keeps the file aside, if there is one
  kGives,     // needs the name to be free, in a folder that is there
};

struct MovedName {
  std::string name;
  NameUse use = NameUse::kMoves;
};

// Holds what a line names against the selected install, as it is now. Names are paths below its root, as a definition
// gives them.
class InstallCheck {
 public:
  // While the mod is active the install holds its changes: what depends on them is not looked at.
  explicit InstallCheck(bool modIsActive);

  bool Has(const std::string& name) const;

  // Whether the mod may change this path, or start it; that of a link, or what it leads to. Not only below the root.
  bool MayChange(const std::string& path, bool followLink) { return confines_.Contains(path, followLink); }

  // A condition on which the catalogue lists the mod.
  void Requirement(const Place& place, const std::string& name);

  // What is to be started in the place of an activation.
  void Program(const Place& place, const std::string& name) const;

  // What the catalogue looks for below the root, then in the program's folder of mods.
  void Picture(const Place& place, const std::string& name);
  void Description(const Place& place, const std::string& name);

  // A file or folder without which a step of the mod does nothing.
  void Needed(const Place& place, const std::string& name) const;

  void Moved(const Place& place, const MovedName& moved) const;

  // What the generated configuration names.
  void Pack(const Place& place, const std::string& name) const;
  void Folder(const Place& place, const std::string& name) const;

  // The name under which an activation keeps the game's configuration.
  void ConfigurationBackup(const Place& place);

  // Other capitals than on disk, and twins, on the way to a file or folder that is there.
  void Spelling(const Place& place, const std::string& name);

  // Twins alone; `name` as on disk, with `/` between its parts. Each pair is reported once.
  void Twins(const Place& place, const std::string& name);

  void IdFile(const Place& place, const std::string& name) const;
  void AddRecy(const Place& place, const Args& args) const;
  void SessionDefault(const Place& place, const std::string& key) const;
  void RaceName(const Place& place, char letter) const;

 private:
  // Where the catalogue finds it; empty when it does not.
  static std::string Extra(const Place& place, const std::string& name);

  using Names = std::unordered_set<std::string>;
  Names& TwinsIn(const std::string& folder);

  bool modIsActive_;
  Confines confines_;
  std::map<std::string, Names> twins_;  // by folder, in lower case
};

}  // namespace varnik
