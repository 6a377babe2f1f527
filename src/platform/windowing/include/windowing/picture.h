#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

class QImage;

namespace win {

// A picture to show; a value that is cheap to copy. An empty one has the size 0, 0.
class Picture {
 public:
  Picture();
  explicit Picture(const QImage& image);  // for this layer

  // A BMP, GIF, JPEG, PNG or ICO file by its Windows path. Empty when there is no such file, when it cannot be read to
  // its end or is damaged, and when it would take more than kMaxBytes. An empty path gives an empty picture.
  static Picture FromFile(const std::string& path);

  // The content of such a file.
  static Picture FromFileContent(std::string_view content);

  // Rows from the top, each pixel 0xAARRGGBB. Empty unless there are exactly width * height pixels.
  static Picture FromPixels(int width, int height, std::span<const std::uint32_t> pixels);

  static constexpr std::size_t kMaxBytes = 256u << 20;

  bool Empty() const;
  int WidthInPixels() const;
  int HeightInPixels() const;
  std::uint32_t Pixel(int x, int y) const;  // 0xAARRGGBB; 0 outside the picture

  const QImage& Image() const;  // for this layer

 private:
  std::shared_ptr<const QImage> image_;
};

}  // namespace win
