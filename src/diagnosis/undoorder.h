#pragma once

#include "diagnosis/installcheck.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnik {

// Names that actions of a definition move. A deactivation undoes lines from the first to the last, as they were done;
// so it puts everything back only when no two of them touch the same name, or one a folder that the other reaches into.
class UndoOrder {
 public:
  // Adds the names of one action, and reports the first that it shares with an earlier one.
  void Add(const Place& place, const std::vector<MovedName>& names);

  // True when an action has named this, a folder above it or something below it.
  bool Touches(const std::string& name) const;

 private:
  using Lines = std::unordered_map<std::uint64_t, std::size_t>;  // by the hash of a name

  std::size_t FindShared(std::string_view key) const;

  Lines names_;
  Lines folders_;  // all that lie above a name
};

}  // namespace varnik
