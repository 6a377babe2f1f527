#pragma once

#include <string>

namespace varnik {

// True for files and folders. Blanks round the path and one trailing separator are ignored; a path with wildcards is
// true when anything matches.
bool FileExists(const std::string& path);

}  // namespace varnik
