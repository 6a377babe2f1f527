#include "fuzz/world.h"
#include "legacy/legacyactivation.h"
#include "legacy/legacydeactivation.h"
#include "modengine/catalogue.h"

// A definition of the older format through its three passes. Its first line is given, so that every input has one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::Text(data, size);
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  const std::string path = world.Put("mod.bzm", "BZ2HALD3\r\n" + std::string(text));
  varnik::LoadModFile(path);
  fuzz::Require(varnik::ModListFilled);
  varnik::SelectModFolders(1);
  fuzz::LookAhead(path);
  varnik::ActivateLegacyMod(path);
  varnik::DeactivateLegacyMod(path, fuzz::kInstall);
  return 0;
}
