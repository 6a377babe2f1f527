#pragma once

#include "tests/harness/sandbox.h"

#include <filesystem>
#include <string>

namespace test {

// Makes the sandbox's Wine prefix and, in it, the folder of a game whose bzone.exe is the Windows program showline. A
// reason to skip the test where Wine or that program is missing, else empty.
std::string PrepareWine(const Sandbox& sandbox, std::filesystem::path& game);

}  // namespace test
