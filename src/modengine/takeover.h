#pragma once

#include <string>

// A mod may hand its work to an EXE of its own, which is started in place of the game, or of the undo. Whether this
// system can run that program is found out ahead of any change, as it is for the game.
namespace varnik {

// Why an activation of this mod on the selected install would come to a Windows program that this system cannot run, as
// a message to the player: an EXE of the mod, or where none takes over, the program of the command line `game`, if one
// is given. Empty when nothing speaks against it.
std::string ActivationProblem(const std::string& definitionFile, bool isLegacy, const std::string& game = "");

// The same for undoing it in the install at `root`.
std::string DeactivationProblem(const std::string& definitionFile, const std::string& root);

// The same for the game or its editor.
std::string GameProblem(const std::string& game);

}  // namespace varnik
