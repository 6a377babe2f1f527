#pragma once

#include "cli/arguments.h"
#include "definition/modentry.h"
#include "support/settings.h"

#include <functional>
#include <optional>
#include <string>

// The engine's state for one command, as a start of the window brings it up.
namespace varnik::cli {

// Program folder, option flags, and No to every question. No install is selected behind it.
void StartSession(const Arguments& arguments);

// Questions are answered with Yes from here on.
void AnswerYes();

// Suppresses messages from here on: the command itself reports what happened.
void SilenceMessages();

// A path from the command line as the program holds it. A relative one is completed, since the store outlives the
// folder in which a command was given.
std::string GivenPath(const std::string& path);

// A folder from the command line: as above, with a separator behind it.
std::string GivenFolder(const std::string& folder);

// What was stored when the command began.
const win::SettingsSnapshot& SessionSettings();

// Says that they could not be read, so that nobody knows whether a run was interrupted.
[[nodiscard]] int FailWithoutSettings();

// Does what must not end halfway: SIGINT, SIGTERM and SIGHUP wait for it. Gives what `work` returns, or after one of
// them 128 plus its number, with a note of it and of `outcome`.
int Uninterrupted(const std::string& outcome, const std::function<int()>& work);

// Makes the install of --root, or the one that the store names, the selected one, with the folders of no mod. False,
// with a note on why, when there is none.
[[nodiscard]] bool OpenInstall(const Arguments& arguments);

// The same for a command that can do without an install: false only for a --root that is no folder.
[[nodiscard]] bool OpenInstallIfAny(const Arguments& arguments);

// Loads the catalogue; the row of ModList that `mod` names, by its file name or a path, 0 for none. A path may also
// lead to a definition outside the catalogue that fits the install.
std::size_t FindGivenMod(const std::string& mod);

// Reports why FindGivenMod found none; returns kFailed.
int FailWithoutMod(const std::string& mod);

// The file that `mod` names, whether it fits the install or not; empty when there is none.
std::string FindGivenDefinition(const std::string& mod);

// The file to look at for `modOrPath`, as a path: the definition of that name in the catalogue, in the install or in
// the program's folder of mods, whether it fits or not; else a file in the working folder. Loads the catalogue, and
// needs no install. A note says so when there is a file of the name in both.
std::string FindFileToLookAt(const std::string& modOrPath);

// kDone, or kFailed with a note when the mod cannot be activated now: one is active already.
int RefuseActivation(const ModEntry& mod);

// Reports that this one is active; returns kFailed.
int FailOverActiveMod(const std::string& definitionFile);

constexpr char kNoMod[] = "-";

// Selects a mod as the list of mods does: its row of ModList, -1 for kNoMod. Nothing, with a note on why, when there
// is none.
[[nodiscard]] std::optional<int> SelectMod(const std::string& mod);

}  // namespace varnik::cli
