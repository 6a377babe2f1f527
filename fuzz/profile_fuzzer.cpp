#include "fuzz/world.h"
#include "platform/system/files/profile.h"

// A profile file: reads of it, and edits that must be found again and must not grow the file beyond what they add.
namespace {

constexpr char kSection[] = "UserPrefs";

std::string Read(const std::string& path) {
  return std::string(win::ProfileFile(path).Find(kSection, "Key").value_or("none"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  const std::string path = world.Put("addon/gameprefs.ini", fuzz::Text(data, size));
  Read(path);
  fuzz::Require(win::WritePrivateProfileString(kSection, "Key", "value", path));
  // A section behind a byte-order mark is edited, but readers do not see it.
  fuzz::Require(Read(path) == "value" || fuzz::Text(data, size).starts_with("\xEF\xBB\xBF"));
  fuzz::Require(win::WritePrivateProfileString(kSection, std::nullopt, std::nullopt, path));
  return 0;
}
