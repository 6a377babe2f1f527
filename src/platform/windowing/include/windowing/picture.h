#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

class QImage;

namespace win {

enum class Alpha {
  kKept,
  kIgnored,  // every pixel is opaque, whatever the file says
};

// A picture to show; a value that is cheap to copy. An empty one has the size 0, 0.
class Picture {
 public:
  Picture();
  explicit Picture(const QImage& image);  // for this layer

  // A picture file by its Windows path, in any format that FreeImage reads: BMP, PNG, JPEG, TGA, GIF, ICO, TIFF and
  // others, told by its content, or by its name where the format has no signature. Of an icon the largest image of up
  // to 64 pixels. Empty when there is no such file, and when it cannot be decoded within a moment and within 256 MiB. A
  // program of its own decodes it (platform/system/process/picturedecoder.h): the file may be damaged on purpose.
  static Picture FromFile(const std::string& path, Alpha alpha = Alpha::kKept);

  // The content of a PNG that is part of this program.
  static Picture FromOwnPng(std::string_view content);

  bool Empty() const { return !image_; }
  int WidthInPixels() const;
  int HeightInPixels() const;
  std::uint32_t Pixel(int x, int y) const;  // 0xAARRGGBB; 0 outside the picture

  const QImage& Image() const;  // for this layer

 private:
  std::shared_ptr<const QImage> image_;
};

}  // namespace win
