#pragma once

#include "diagnosis/installcheck.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnik {

// What becomes of a name while the mod is active.
struct NameFate {
  std::size_t line = 0;
  NameUse use = NameUse::kMoves;  // the last one: a name that was moved away and given again is there
  std::string oldName;            // as the line spells it; a folder above the name, if that is what was moved
  std::string newName;            // of what was moved; empty for a name that holds it aside
  std::string backup;             // of what was replaced: where it is kept
  std::string replacement;        // what was moved for it, and is in its old place without the mod
};

// Names that actions of a definition move. A deactivation undoes lines from the first to the last, as they were done;
// so it puts everything back only when no two of them touch the same name, or one a folder that the other reaches into.
class UndoOrder {
 public:
  // Adds the names of one action, and reports the first that it shares with an earlier one.
  void Add(const Place& place, const std::vector<MovedName>& names);

  // Null for a name that no action moved, with the folders above it.
  const NameFate* FateOf(const std::string& name) const;

  // The first name under which there is something only while the mod is active; empty for none.
  const std::string& FirstGiven() const { return firstGiven_; }

  // Reports a pack or folder that the game does not find, since an action moved it, and returns false then.
  bool CheckFound(const Place& place, const std::string& name) const;

  // True when an action has named this, a folder above it or something below it.
  bool Touches(const std::string& name) const;

 private:
  using Lines = std::unordered_map<std::uint64_t, std::size_t>;  // by the hash of a name

  std::size_t FindShared(std::string_view key) const;
  void SetFates(const Place& place, const std::vector<MovedName>& names);

  std::unordered_map<std::uint64_t, NameFate> fates_;  // by the hash of a name
  std::string firstGiven_;
  Lines names_;
  Lines folders_;  // all that lie above a name
};

}  // namespace varnik
