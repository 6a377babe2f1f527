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
  std::string unreadable;  // native path of a file that would be overwritten and cannot be kept; the journal is of no
  std::string why;         // use then. And the reason
};

RehearsedMod RehearseMod(const std::string& definitionFile, bool isLegacy);

}  // namespace varnik
