#pragma once

#include <cstdint>
#include <string_view>
#include <tuple>

namespace win {

// Stands for the content of a file: two contents with the same one are the same for every purpose here. The numbers are
// kept on disk, so they never change for one content.
struct ContentId {
  std::uint64_t size = 0;  // bytes
  std::uint64_t high = 0;  // XXH3, 128 bits
  std::uint64_t low = 0;
  bool operator==(const ContentId&) const = default;
  bool operator<(const ContentId& other) const {
    return std::tie(size, high, low) < std::tie(other.size, other.high, other.low);
  }
};

ContentId ContentIdOf(std::string_view content);

}  // namespace win
