#include "tests/harness/wine.h"

#include <cstdlib>

namespace test {

namespace fs = std::filesystem;

std::string PrepareWine(const Sandbox& sandbox, fs::path& game) {
  if (std::system("command -v wine > /dev/null") != 0) return "Wine is not installed";
  if (!fs::exists(BINARY_DIR "/showline.exe")) return "the Windows programs were not built";
  for (const char* name : {"VARNIK_RUNNER", "DISPLAY", "WAYLAND_DISPLAY"})
    unsetenv(name);
  setenv("WINEDEBUG", "-all", 1);
  setenv("WINEDLLOVERRIDES", "mscoree,mshtml=", 1);
  if (std::system("wine wineboot -i > /dev/null 2>&1") != 0) return "Wine makes no prefix here";
  game = sandbox.Home() / "wine" / "drive_c" / "games" / "Battlezone II";
  fs::create_directories(game);
  fs::copy_file(BINARY_DIR "/showline.exe", game / "bzone.exe");
  return "";
}

}  // namespace test
