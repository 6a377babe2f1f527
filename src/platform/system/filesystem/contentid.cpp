#include "platform/system/filesystem/contentid.h"

#include <xxhash.h>

namespace win {

ContentId ContentIdOf(std::string_view content) {
  const XXH128_hash_t hash = XXH3_128bits(content.data(), content.size());
  return {content.size(), hash.high64, hash.low64};
}

}  // namespace win
