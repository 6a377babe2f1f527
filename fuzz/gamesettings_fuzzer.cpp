#include "fuzz/world.h"
#include "gameconfig/gamesettings.h"

// The game's settings files, found in the install, read and written back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  world.Put("addon/gameprefs.ini", fuzz::Text(data, size));
  world.Put("render.cfg", fuzz::Text(data, size));
  varnik::ApplyUserPrefs(varnik::ReadUserPrefs().value_or(varnik::UserPrefs{}));
  varnik::ApplyDarkPlants(varnik::ReadDarkPlants() == 0);
  return 0;
}
