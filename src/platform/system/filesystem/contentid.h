#pragma once

#include <compare>
#include <cstdint>
#include <string_view>

namespace win {

// Stands for the content of a file: two contents with the same one are the same for every purpose here. The numbers are
// kept on disk, so they never change for one content.
struct ContentId {
  std::uint64_t size = 0;  // bytes
  std::uint64_t high = 0;  // XXH3, 128 bits
  std::uint64_t low = 0;
  auto operator<=>(const ContentId&) const = default;
};

ContentId ContentIdOf(std::string_view content);

}  // namespace win
