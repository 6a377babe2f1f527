#pragma once

#include "tests/harness/sandbox.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// A small install for the fuzz targets, made anew for each input. No program in it can be started, and none is found
// elsewhere.
namespace fuzz {

class World {
 public:
  World();

  // The install has its first files again and is the selected one.
  void Reset();

  // Puts a file into the install; gives its Windows path.
  std::string Put(const std::string& name, std::string_view content);

  test::Sandbox sandbox;
};

// Made at the first call.
World& TheWorld();

inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Definitions may name files anywhere, which is their good right and no place for random names: false for a text that
// may leave the install by `..`, by a drive or by a separator at the front of a path.
bool StaysInside(std::string_view definition);

// What a person may ask of a definition ahead of a run: its check, and the plan of row 1 of the catalogue when there is
// one. Neither may change the install.
void LookAhead(const std::string& path);

// Ends the process where a promise is broken.
void Require(bool holds);

}  // namespace fuzz
