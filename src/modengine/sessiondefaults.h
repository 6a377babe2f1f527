#pragma once

#include "journal/journal.h"
#include "modengine/activationstate.h"
#include "support/settings.h"

#include <optional>
#include <string>
#include <vector>

// What a mod changes for the length of a run in the player's own files below the selected install: session defaults in
// gameprefs.ini and race names in RaceName_A.txt to RaceName_Z.txt. The old values wait in section Backup of the
// settings store. A file that is not found is skipped, and all are with no install selected.
namespace varnik {

// All old values are stored in one write before the first change; when that fails, nothing is changed.
void ApplyPlayersValues(const ActivationState& state);

// Puts back what `stored` holds, and forgets what was put back. False when something could not be written: it stays
// stored. A session default whose old value was empty stays as the mod set it, and a race name file grows by one line
// end: the game accepts both.
bool RestorePlayersValues(const win::SettingsSnapshot& stored = StoredSettings());

// The session defaults of which `stored` keeps the player's values, with what gameprefs.ini holds now.
std::vector<SessionValue> SessionValuesSet(const win::SettingsSnapshot& stored = StoredSettings());

// Sets those that still are as the mod set them to what they were, in that gameprefs.ini.
bool PutBackSessionDefaults(const std::vector<SessionValue>& values, const std::string& file);

// What gameprefs.ini holds now under DefaultSessionName, DefaultPassword or DefaultMessage; nothing without such a
// file.
std::optional<std::string> PresentSessionDefault(const std::string& key);

// `letter` is one of A to Z.
bool HasRaceFile(char letter);

}  // namespace varnik
