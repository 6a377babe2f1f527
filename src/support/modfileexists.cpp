#include "support/modfileexists.h"

#include "platform/system/files/findfile.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"

namespace varnik {

bool FileExists(const std::string& path) {
  std::string bare = win::Trim(path);
  if (win::EndsInSeparator(bare)) bare = win::Trim(std::string_view(bare).substr(0, bare.size() - 1));
  return win::FindFirstFileSucceeds(bare);
}

}  // namespace varnik
