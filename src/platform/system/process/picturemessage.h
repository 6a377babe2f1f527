#pragma once

#include <cstdint>

// What goes over the socket between a program and its picture decoder. The asking side sends a PictureRequest with the
// picture's file, opened for reading, as its one attached descriptor. The decoder answers with a PictureHead and
// width * height pixels, rows from the top, each 0xAARRGGBB in the machine's byte order. Both run on one machine and
// come from one build.
namespace win {

struct PictureRequest {
  char extension[15] = {};  // that of the file's name, for formats without a signature; ends in a NUL
  bool opaque = false;      // every pixel is to be opaque, whatever the file says
};

struct PictureHead {
  std::uint32_t width = 0, height = 0;  // both 0: no picture
};

// 256 MiB of pixels.
constexpr std::uint64_t kMaxPicturePixels = 64u << 20;

constexpr bool IsPictureSize(std::uint32_t width, std::uint32_t height) {
  return width > 0 && height > 0 && std::uint64_t{width} * height <= kMaxPicturePixels;
}

}  // namespace win
