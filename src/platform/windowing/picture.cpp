#include "windowing/picture.h"

#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/picturedecoder.h"

#include <QImage>

namespace win {

namespace {

const QImage& NoImage() {
  static const QImage none;
  return none;
}

}  // namespace

Picture::Picture() = default;

Picture::Picture(const QImage& image) {
  if (image.isNull()) return;
  const QImage::Format format = image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32;
  image_ = std::make_shared<const QImage>(image.convertToFormat(format));
}

Picture Picture::FromFile(const std::string& path, Alpha alpha) {
  static PictureDecoder decoder(CompanionProgram(Program().name + "-picture"));
  if (path.empty()) return {};
  const bool opaque = alpha == Alpha::kIgnored;
  PicturePixels picture = decoder.Decode(NativePath(path), opaque);
  if (!picture) return {};
  const auto release = [](void* pixels) { delete[] static_cast<std::uint32_t*>(pixels); };
  std::uint32_t* const pixels = picture.pixels.release();
  const qsizetype rowBytes = qsizetype{picture.width} * static_cast<qsizetype>(sizeof pixels[0]);
  return Picture(QImage(reinterpret_cast<uchar*>(pixels), picture.width, picture.height, rowBytes,
                        opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32, release, pixels));
}

Picture Picture::FromOwnPng(std::string_view content) {
  return Picture(
      QImage::fromData(reinterpret_cast<const uchar*>(content.data()), static_cast<int>(content.size()), "PNG"));
}

int Picture::WidthInPixels() const { return Image().width(); }
int Picture::HeightInPixels() const { return Image().height(); }

std::uint32_t Picture::Pixel(int x, int y) const { return Image().valid(x, y) ? Image().pixel(x, y) : 0; }

const QImage& Picture::Image() const { return image_ ? *image_ : NoImage(); }

}  // namespace win
