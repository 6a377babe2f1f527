#include "windowing/drawing.h"

#include "platform/windowing/drawingsurface.h"
#include "windowing/picture.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unordered_map>

namespace win {

namespace {

constexpr unsigned kErrorBadHandle = 6;
constexpr unsigned kErrorOutOfMemory = 8;
constexpr unsigned kErrorBadParameter = 87;
constexpr DrawingHandle kDesktop = 1;
constexpr std::uint32_t kBitFields = 3;
constexpr std::size_t kFileHeaderSize = 14;

struct Object {
  int type = 0;
  QImage bitmap;                      // kObjBitmap
  DrawingSurface* surface = nullptr;  // kObjDc; none for the desktop, which cannot be drawn on
  DrawingHandle selected = 0;         // kObjMemDc
  DrawingHandle first = 0;            // the empty bitmap that a kObjMemDc came with
  int users = 0;                      // contexts that a bitmap is selected into
};

std::unordered_map<DrawingHandle, Object> objects;
DrawingHandle lastHandle = kDesktop;
unsigned lastError = 0;

bool Fail(unsigned code) {
  lastError = code;
  return false;
}

Object* Find(DrawingHandle handle) {
  const auto found = objects.find(handle);
  return found == objects.end() ? nullptr : &found->second;
}

Object* FindBitmap(DrawingHandle handle) {
  Object* object = Find(handle);
  return object && object->type == kObjBitmap ? object : nullptr;
}

Object* FindContext(DrawingHandle handle) {
  Object* object = Find(handle);
  return object && object->type != kObjBitmap ? object : nullptr;
}

DrawingHandle Add(Object object) {
  objects.emplace(++lastHandle, std::move(object));
  return lastHandle;
}

DrawingHandle AddBitmap(QImage image) {
  Object object;
  object.type = kObjBitmap;
  object.bitmap = std::move(image);
  return Add(std::move(object));
}

// What a context draws on; null for the desktop and for a memory context with its first, empty bitmap.
QImage* Target(Object* context) {
  if (!context) return nullptr;
  if (context->surface) return &context->surface->Canvas();
  Object* bitmap = FindBitmap(context->selected);
  return bitmap ? &bitmap->bitmap : nullptr;
}

std::size_t RowBytes(const BitmapInfoHeader& info) {
  return (static_cast<std::size_t>(info.width) * info.bitCount + 31) / 32 * 4;
}

bool IsListed(const BitmapInfoHeader& info) {
  constexpr int kBitCounts[] = {1, 4, 8, 16, 24, 32};
  const bool bits = std::find(std::begin(kBitCounts), std::end(kBitCounts), info.bitCount) != std::end(kBitCounts);
  const bool fields = info.compression == kBitFields && (info.bitCount == 16 || info.bitCount == 32);
  return info.size == sizeof(BitmapInfoHeader) && bits && (info.compression == 0 || fields) && info.clrUsed <= 256;
}

bool Fits(const BitmapInfoHeader& info) {
  if (info.width < 1 || info.height == 0 || info.height == INT32_MIN) return false;
  return static_cast<std::uint64_t>(info.width) * std::abs(info.height) * 4 <= Picture::kMaxBytes;
}

std::size_t TableBytes(const BitmapInfoHeader& info) {
  if (info.bitCount <= 8) return 4 * (info.clrUsed ? info.clrUsed : std::size_t{1} << info.bitCount);
  return info.compression == kBitFields ? 12 : 0;
}

// A device-independent bitmap is a BMP file without the file's own header.
QImage ImageFromDib(const BitmapInfoHeader& info, const void* bits) {
  const std::size_t before = sizeof info + TableBytes(info);
  const std::size_t size = RowBytes(info) * std::abs(info.height);
  QByteArray file(static_cast<qsizetype>(kFileHeaderSize + before + size), '\0');
  const auto total = static_cast<std::uint32_t>(file.size());
  const auto start = static_cast<std::uint32_t>(kFileHeaderSize + before);
  std::memcpy(file.data(), "BM", 2);
  std::memcpy(file.data() + 2, &total, sizeof total);
  std::memcpy(file.data() + 10, &start, sizeof start);
  std::memcpy(file.data() + kFileHeaderSize, &info, before);
  std::memcpy(file.data() + start, bits, size);
  return QImage::fromData(file, "BMP").convertToFormat(QImage::Format_RGB32);
}

}  // namespace

DrawingHandle AddSurface(DrawingSurface* surface) {
  Object object;
  object.type = kObjDc;
  object.surface = surface;
  return Add(std::move(object));
}

void RemoveSurface(DrawingHandle dc) { objects.erase(dc); }

unsigned GetLastError() { return lastError; }

DrawingHandle GetDesktopWindow() { return kDesktop; }

DrawingHandle GetDC(DrawingHandle window) {
  if (window != kDesktop) return Fail(kErrorBadHandle);
  return AddSurface(nullptr);
}

bool ReleaseDC(DrawingHandle window, DrawingHandle dc) {
  const Object* object = FindContext(dc);
  if (window != kDesktop || !object || object->type != kObjDc || object->surface) return Fail(kErrorBadHandle);
  return objects.erase(dc) > 0;
}

DrawingHandle CreateCompatibleDC(DrawingHandle dc) {
  if (dc != 0 && !FindContext(dc)) return Fail(kErrorBadHandle);
  Object object;
  object.type = kObjMemDc;
  object.selected = AddBitmap(QImage(1, 1, QImage::Format_RGB32));
  object.first = object.selected;
  FindBitmap(object.selected)->users = 1;
  return Add(std::move(object));
}

bool DeleteDC(DrawingHandle dc) {
  const Object* object = FindContext(dc);
  if (!object || object->type != kObjMemDc) return Fail(kErrorBadHandle);
  if (Object* bitmap = FindBitmap(object->selected)) --bitmap->users;
  objects.erase(object->first);
  return objects.erase(dc) > 0;
}

DrawingHandle CreateDIBitmap(DrawingHandle dc, const BitmapInfoHeader* header, std::uint32_t init, const void* bits,
                             const BitmapInfoHeader* info, std::uint32_t usage) {
  if (!FindContext(dc)) return Fail(kErrorBadHandle);
  if (!header || !Fits(*header) || usage != kDibRgbColors) return Fail(kErrorBadParameter);
  QImage image;
  if (init == kCbmInit) {
    if (!bits || !info || !IsListed(*info) || info->width != header->width || info->height != header->height)
      return Fail(kErrorBadParameter);
    image = ImageFromDib(*info, bits);
  } else {
    image = QImage(header->width, std::abs(header->height), QImage::Format_RGB32);
    image.fill(Qt::black);
  }
  return image.isNull() ? Fail(kErrorOutOfMemory) : AddBitmap(image);
}

int GetDIBits(DrawingHandle dc, DrawingHandle bitmap, int start, int lines, void* bits, const BitmapInfoHeader* info,
              std::uint32_t usage) {
  const Object* object = FindBitmap(bitmap);
  if (!FindContext(dc) || !object) return Fail(kErrorBadHandle);
  const QImage& image = object->bitmap;
  const bool listed = info && IsListed(*info) && info->compression == 0 && info->bitCount >= 24 && Fits(*info);
  if (!bits || !listed || usage != kDibRgbColors || start < 0 || info->width != image.width())
    return Fail(kErrorBadParameter);
  const int count = std::min(lines, image.height() - start);
  const QImage::Format format = info->bitCount == 24 ? QImage::Format_BGR888 : QImage::Format_RGB32;
  const QImage rows = image.convertToFormat(format);
  for (int line = 0; line < count; ++line) {
    const int fromBottom = start + line;
    const int row = info->height > 0 ? image.height() - 1 - fromBottom : fromBottom;
    std::memcpy(static_cast<char*>(bits) + line * RowBytes(*info), rows.constScanLine(row),
                static_cast<std::size_t>(info->width) * info->bitCount / 8);
  }
  return std::max(count, 0);
}

namespace {

// The part of `place` that lies on `target`.
QRect Visible(const QImage& target, const QRect& place) { return place.intersected(target.rect()); }

// A part of a device-independent bitmap, in rows from the top. Colours without a table are taken from where they lie:
// a bitmap may be huge, and what can be seen of it is small.
QImage PartOfDib(const BitmapInfoHeader& info, const void* bits, const QRect& part) {
  if (info.bitCount < 24 || info.compression != 0) return ImageFromDib(info, bits).copy(part);
  const int height = std::abs(info.height);
  const QImage rows(static_cast<const uchar*>(bits), info.width, height, static_cast<qsizetype>(RowBytes(info)),
                    info.bitCount == 24 ? QImage::Format_BGR888 : QImage::Format_RGB32);
  // The fourth byte of a pixel means nothing, and is not to be taken for its opacity.
  constexpr QImage::Format kOpaque = QImage::Format_RGB888;
  if (info.height < 0) return rows.copy(part).convertToFormat(kOpaque);
  const QRect fromBottom(part.x(), height - part.y() - part.height(), part.width(), part.height());
  return rows.copy(fromBottom).convertToFormat(kOpaque).mirrored();
}

}  // namespace

int SetDIBitsToDevice(DrawingHandle dc, int x, int y, int width, int height, int sourceX, int sourceY, int startScan,
                      int lines, const void* bits, const BitmapInfoHeader* info, std::uint32_t usage) {
  Object* context = FindContext(dc);
  QImage* target = Target(context);
  if (!target) return Fail(kErrorBadHandle);
  if (!bits || !info || !IsListed(*info) || !Fits(*info) || usage != kDibRgbColors || startScan != 0 ||
      lines < std::abs(info->height) || width < 1 || height < 1)
    return Fail(kErrorBadParameter);
  const int rows = std::abs(info->height);
  const QRect whole(x - sourceX, y - (rows - sourceY - height), info->width, rows);
  const QRect seen = Visible(*target, whole.intersected(QRect(x, y, width, height)));
  if (seen.isEmpty()) return rows;
  const QImage image = PartOfDib(*info, bits, seen.translated(-whole.topLeft()));
  if (image.isNull()) return Fail(kErrorOutOfMemory);
  QPainter(target).drawImage(seen.topLeft(), image);
  if (context->surface) context->surface->Drawn();
  return rows;
}

bool BitBlt(DrawingHandle target, int x, int y, int width, int height, DrawingHandle source, int sourceX, int sourceY,
            std::uint32_t operation) {
  Object* context = FindContext(target);
  QImage* onto = Target(context);
  const QImage* from = Target(FindContext(source));
  if (!onto || !from) return Fail(kErrorBadHandle);
  if (operation != kSrcCopy && operation != kNotSrcCopy) return Fail(kErrorBadParameter);
  const QRect seen = Visible(*onto, QRect(x, y, width, height));
  if (seen.isEmpty()) return true;
  QImage part = from->copy(seen.translated(sourceX - x, sourceY - y));
  if (operation == kNotSrcCopy) part.invertPixels();
  QPainter(onto).drawImage(seen.topLeft(), part);
  if (context->surface) context->surface->Drawn();
  return true;
}

bool GetObject(DrawingHandle bitmap, BitmapDescription& description) {
  const Object* object = FindBitmap(bitmap);
  if (!object) return Fail(kErrorBadHandle);
  description = {object->bitmap.width(), object->bitmap.height(), 32};
  return true;
}

int GetObjectType(DrawingHandle handle) {
  const Object* object = Find(handle);
  if (!object) Fail(kErrorBadHandle);
  return object ? object->type : 0;
}

DrawingHandle SelectObject(DrawingHandle dc, DrawingHandle bitmap) {
  Object* context = FindContext(dc);
  Object* object = FindBitmap(bitmap);
  if (!context || context->type != kObjMemDc || !object) return Fail(kErrorBadHandle);
  if (Object* before = FindBitmap(context->selected)) --before->users;
  ++object->users;
  return std::exchange(context->selected, bitmap);
}

bool DeleteObject(DrawingHandle bitmap) {
  const Object* object = FindBitmap(bitmap);
  if (!object || object->users > 0) return Fail(kErrorBadHandle);
  return objects.erase(bitmap) > 0;
}

}  // namespace win
