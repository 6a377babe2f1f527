#include "support/ui/win95_functions.h"

#include "platform/system/paths/paths.h"
#include "windowing/dialogs.h"

namespace varnik {

std::string BrowseForFolder(win::Form* owner, const std::string& title) {
  const std::string folder = win::BrowseForFolder(owner, title);
  return folder.empty() ? "" : win::WithSeparator(folder);
}

}  // namespace varnik
