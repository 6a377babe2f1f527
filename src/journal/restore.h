#pragma once

#include "definition/report.h"
#include "journal/journal.h"

// Puts an install back to what a journal says of it.
namespace varnik {

enum class RestoreScope {
  kEverything,
  kAllButContents,  // a file that stands in its place keeps what the mod made of it
};

struct RestoreResult {
  Report failed;  // a line for each path that is not as it was, though another try may put it back
  Report lost;    // a line for each file that has gone, and of which there is no copy
  Report left;    // with kAllButContents: files that hold what the mod made of them
};

// What the mod moved goes back to its place, wherever it is now, found by its identity on the disk. What the mod wrote
// is removed, or gets its old content back byte for byte, if it holds nothing but what the mod wrote. What the game or
// the player has written since stays; where it is in the way it gets another name. Nothing is removed of which there is
// no copy. May be repeated, and finishes what a kill has cut off.
RestoreResult Restore(const Journal& journal, RestoreScope scope);

// Whether there is nothing to put back.
bool IsAsBefore(const Journal& journal);

}  // namespace varnik
