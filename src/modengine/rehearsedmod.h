#pragma once

#include "journal/journal.h"
#include "modengine/activationsteps.h"

#include <optional>
#include <string>
#include <vector>

// What an activation of a mod would do to the selected install, found by doing it in a rehearsal.
namespace varnik {

struct RehearsedMod {
  bool active = false;  // false: an EXE takes over, or there is no such definition
  std::vector<ActivationStep> steps;
  std::optional<std::string> configuration;  // the bzone.cfg that the game would find
  Journal journal;                           // not written yet
  std::string unreadable;  // a file that cannot be read, so that nobody knows what would be done, or cannot be kept
                           // though it would be overwritten; the journal is of no use then
  std::string why;         // the reason
};

RehearsedMod RehearseMod(const std::string& definitionFile, bool isLegacy);

}  // namespace varnik
