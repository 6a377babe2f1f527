#include "modengine/listedmod.h"

#include "legacy/legacyactivation.h"
#include "legacy/legacydeactivation.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "support/install.h"

namespace varnik {

bool ActivateListedMod(const ModEntry& mod) {
  return mod.Legacy ? ActivateLegacyMod(mod.DefinitionFile) : ActivateMod(mod.DefinitionFile);
}

bool DeactivateListedMod(const ModEntry& mod) {
  if (!mod.Legacy) return DeactivateMod(mod.DefinitionFile, InstallRoot());
  DeactivateLegacyMod(mod.DefinitionFile, InstallRoot());
  return true;
}

}  // namespace varnik
