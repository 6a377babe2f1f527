#pragma once

#include "definition/modentry.h"
#include "platform/system/files/lines.h"

#include <string>

namespace varnik {

// The row of a definition of the older format (marker version 3 or less) whose first line has been read from `file`.
// `path` may be cut down to its file name.
ModEntry LoadLegacyMod(win::LineReader& file, std::string& path);

}  // namespace varnik
