#pragma once

#include <array>
#include <string>

namespace varnik {

// What an activation collects from a definition and the files it includes.
struct ActivationState {
  std::string sessionName;
  std::string password;
  std::string message;
  std::array<std::string, 26> RaceNames;  // new names by letter, A to Z
  bool noActionYet = true;
  bool configurationFailed = false;  // an entry of the generated bzone.cfg could not be written
  bool persistent = false;           // that of an included file is not taken over
};

}  // namespace varnik
