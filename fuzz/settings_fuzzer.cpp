#include "fuzz/world.h"
#include "installs/installlist.h"
#include "platform/system/store/settings.h"

// The settings store as a crash, an editor or a disk may have left it. What cannot be read is kept aside.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  world.Put("settings.json", fuzz::Text(data, size), "/home/config/varnik/");

  win::GetSetting("Varnik", "Settings", "Active");
  varnik::ReadInstallList();
  const std::size_t rows = win::AllSettings("Varnik").size();
  fuzz::Require(win::SaveSetting("Varnik", "Settings", "Active", "7"));
  fuzz::Require(win::GetSetting("Varnik", "Settings", "Active") == "7");
  fuzz::Require(win::AllSettings("Varnik").size() >= rows);
  return 0;
}
