#include "definition/includes.h"

#include "support/install.h"
#include "support/modfileexists.h"
#include "support/runstate.h"

namespace varnik {

std::string FindModFile(const std::string& name) {
  const std::string root = InstallRoot();
  if (!root.empty() && FileExists(root + name)) return root + name;
  const std::string shared = AppPath + "mods\\" + name;
  return FileExists(shared) ? shared : std::string();
}

}  // namespace varnik
