#include "modengine/force.h"

#include "installs/installlist.h"
#include "legacy/legacy.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"

namespace varnik {

bool PutIntoForce(const ModEntry& mod) {
  return mod.Legacy ? ActivateLegacyMod(mod.DefinitionFile) : ActivateMod(mod.DefinitionFile);
}

bool TakeOutOfForce(const ModEntry& mod) {
  if (!mod.Legacy) return DeactivateMod(mod.DefinitionFile, InstallRoot());
  DeactivateLegacyMod(mod.DefinitionFile, InstallRoot());
  return true;
}

}  // namespace varnik
