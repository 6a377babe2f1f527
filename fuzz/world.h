#pragma once

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/overlayfilesystem.h"
#include "tests/harness/memoryfilesystem.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

// A small install for the fuzz targets, in memory: a definition may name any path, by `..`, by a drive or by a link.
// No program in it can be started.
namespace fuzz {

constexpr char kInstall[] = "/game\\";  // as the program holds it

class World {
 public:
  World();

  // The install has its first files again and is the selected one.
  void Reset();

  // Puts a file into the install, or elsewhere below `folder`; gives its Windows path.
  std::string Put(const std::string& name, std::string_view content, const std::string& folder = kInstall);

  // All paths with their content.
  std::map<std::string, std::string> Everything();

 private:
  test::EmptyFileSystem links_;
  win::OverlayFileSystem first_;  // never changed once it is filled
  std::optional<win::OverlayFileSystem> files_;
  std::optional<win::ScopedFileSystem> scope_;
};

// Made at the first call.
World& TheWorld();

inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// What a person may ask of a definition ahead of a run: its check, and the plan of row 1 of the catalogue when there is
// one. Neither may change anything.
void LookAhead(const std::string& path);

// Ends the process where a promise is broken.
void Require(bool holds);

}  // namespace fuzz
