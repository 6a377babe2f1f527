#pragma once

#include "definition/modentry.h"
#include "definition/passdirective.h"
#include "platform/system/files/lines.h"

#include <string>
#include <vector>

// The catalogue pass over a definition of the current format: it judges and describes the mod and changes nothing on
// disk.
namespace varnik {

// Reads what follows line 1. False when the mod does not fit the selected install. `noActionYet` goes through included
// files, so one flag serves the whole pass.
[[nodiscard]] bool ReadModDefinition(win::LineReader& file, ModEntry& entry, bool& noActionYet);

// True when an argument of a `version` line names this version of an install.
bool NamesVersion(const Args& args, const std::string& version);

std::vector<DirectiveForm> CatalogueDirectives();

}  // namespace varnik
