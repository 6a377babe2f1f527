#include "windowing/picture.h"

#include "platform/system/paths/paths.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>

#include <algorithm>
#include <cstring>

namespace win {

namespace {

const QList<QByteArray> kFormats = {"bmp", "gif", "jpeg", "jpg", "png", "ico"};
constexpr int kMaxIconImages = 64;
constexpr int kLargestIcon = 64;  // pixels; larger images of an icon file are for file managers

bool Fits(QSize size) {
  const auto pixels = static_cast<std::uint64_t>(std::max(0, size.width())) * std::max(0, size.height());
  return pixels > 0 && pixels * 4 <= Picture::kMaxBytes;
}

// Of the images of an icon file, the largest that is still meant for a small place.
QImage ReadIcon(QImageReader& reader) {
  QImage best;
  for (int i = 0; i < std::min(reader.imageCount(), kMaxIconImages) && reader.jumpToImage(i); ++i) {
    const QImage image = reader.read();
    if (best.isNull() || (image.width() <= kLargestIcon && image.width() > best.width())) best = image;
  }
  return best;
}

Picture Read(QIODevice& device) {
  QImageReader::setAllocationLimit(static_cast<int>(Picture::kMaxBytes >> 20));
  QImageReader reader(&device);
  reader.setDecideFormatFromContent(true);
  if (!kFormats.contains(reader.format()) || !Fits(reader.size())) return {};
  const QImage image = reader.format() == "ico" ? ReadIcon(reader) : reader.read();
  return Fits(image.size()) ? Picture(image) : Picture();
}

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

Picture Picture::FromFile(const std::string& path) {
  if (path.empty()) return {};
  QFile file(QFile::decodeName(NativePath(path).c_str()));
  // Reading a pipe or a device might never end.
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  return Read(file);
}

Picture Picture::FromFileContent(std::string_view content) {
  QByteArray bytes = QByteArray::fromRawData(content.data(), static_cast<qsizetype>(content.size()));
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  return Read(buffer);
}

Picture Picture::FromPixels(int width, int height, std::span<const std::uint32_t> pixels) {
  if (!Fits({width, height}) || pixels.size() != static_cast<std::size_t>(width) * height) return {};
  QImage image(width, height, QImage::Format_ARGB32);
  for (int y = 0; y < height; ++y)
    std::memcpy(image.scanLine(y), pixels.data() + static_cast<std::size_t>(y) * width, width * sizeof pixels[0]);
  return Picture(image);
}

bool Picture::Empty() const { return !image_; }
int Picture::WidthInPixels() const { return Image().width(); }
int Picture::HeightInPixels() const { return Image().height(); }

std::uint32_t Picture::Pixel(int x, int y) const { return Image().valid(x, y) ? Image().pixel(x, y) : 0; }

const QImage& Picture::Image() const { return image_ ? *image_ : NoImage(); }

}  // namespace win
