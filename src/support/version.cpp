#include "support/version.h"

namespace varnik {

const char kVersion[] = VARNIK_VERSION;

std::string VersionLine() { return std::string("Version ") + kVersion; }

}  // namespace varnik
