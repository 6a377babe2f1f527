#include "fuzz/world.h"
#include "modengine/activation.h"
#include "modengine/catalogue.h"
#include "modengine/deactivation.h"

// A definition of the current format through all that reads one: the catalogue, its check and plan, and both passes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::Text(data, size);
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  world.Put("part.inc", "BZ2HALD5\r\nrename(b.odf, part.odf);\r\n");
  const std::string path = world.Put("mod.bzm", text);
  varnik::LoadModFile(path);
  if (varnik::ModListFilled) varnik::SelectModFolders(1);
  fuzz::LookAhead(path);
  varnik::ActivateMod(path);
  varnik::DeactivateMod(path, fuzz::kInstall);
  return 0;
}
