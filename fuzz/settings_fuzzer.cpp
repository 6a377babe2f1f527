#include "fuzz/world.h"
#include "installs/installlist.h"
#include "platform/system/store/settings.h"

#include <fcntl.h>
#include <unistd.h>

// The settings store as a crash, an editor or a disk may have left it. What cannot be read is kept aside.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::TheWorld();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::World& world = fuzz::TheWorld();
  const std::filesystem::path folder = world.sandbox.Home() / "config" / "varnik";
  std::filesystem::remove_all(folder);
  test::WriteFile(folder / "settings.json", fuzz::Text(data, size));
  const int errors = dup(2);  // each store that is kept aside is told there
  const int nowhere = open("/dev/null", O_WRONLY);
  dup2(nowhere, 2);

  win::GetSetting("Varnik", "Settings", "Active");
  varnik::ReadInstallList();
  const std::size_t rows = win::AllSettings("Varnik").size();
  const bool stored = win::SaveSetting("Varnik", "Settings", "Active", "7");

  dup2(errors, 2);
  close(nowhere);
  close(errors);
  fuzz::Require(stored && win::GetSetting("Varnik", "Settings", "Active") == "7");
  fuzz::Require(win::AllSettings("Varnik").size() >= rows);
  return 0;
}
