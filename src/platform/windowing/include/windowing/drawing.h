#pragma once

#include <cstdint>

// Display bitmaps and device contexts, each reached by a handle; 0 is none. A call on a handle of the wrong kind fails,
// changes nothing and sets the code that GetLastError gives.
namespace win {

using DrawingHandle = std::uintptr_t;

constexpr int kObjDc = 3;  // the device context of a window
constexpr int kObjBitmap = 7;
constexpr int kObjMemDc = 10;  // a device context that draws into the bitmap selected into it

constexpr std::uint32_t kSrcCopy = 0x00CC0020;
constexpr std::uint32_t kNotSrcCopy = 0x00330008;
constexpr std::uint32_t kCbmInit = 4;
constexpr std::uint32_t kDibRgbColors = 0;

// The header of a device-independent bitmap, as it lies in memory and in BMP files. Colours of 8 bits and less follow
// it as 4-byte entries (blue, green, red, 0). Rows stand from the bottom up, unless the height is negative, each filled
// up to 4 bytes.
struct BitmapInfoHeader {
  std::uint32_t size = 40;  // of this header
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::uint16_t planes = 1;
  std::uint16_t bitCount = 0;     // 1, 4, 8, 16 (5 bits a colour, or as masks say), 24 or 32
  std::uint32_t compression = 0;  // 0, or 3: three 4-byte masks follow the header
  std::uint32_t sizeImage = 0;
  std::int32_t xPelsPerMeter = 0;
  std::int32_t yPelsPerMeter = 0;
  std::uint32_t clrUsed = 0;  // entries of the colour table; 0: all that bitCount allows
  std::uint32_t clrImportant = 0;
};
static_assert(sizeof(BitmapInfoHeader) == 40);

struct BitmapDescription {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::uint16_t bitsPixel = 0;
};

DrawingHandle GetDesktopWindow();  // a window handle: no call but GetDC and ReleaseDC takes it
DrawingHandle GetDC(DrawingHandle window);
bool ReleaseDC(DrawingHandle window, DrawingHandle dc);
DrawingHandle CreateCompatibleDC(DrawingHandle dc);
bool DeleteDC(DrawingHandle dc);

// A bitmap with the content of `bits`; `info` is a header with its colours behind it. With `init` other than kCbmInit
// it is black. 0 for a size below 1, a size that would take more than Picture::kMaxBytes, or a form that is not listed
// above.
DrawingHandle CreateDIBitmap(DrawingHandle dc, const BitmapInfoHeader* header, std::uint32_t init, const void* bits,
                             const BitmapInfoHeader* info, std::uint32_t usage);

// Copies `lines` rows of the bitmap, counted from the bottom row `start`, to `bits` in the form that `info` names (24
// or 32 bits). The number of rows copied; 0 on failure.
int GetDIBits(DrawingHandle dc, DrawingHandle bitmap, int start, int lines, void* bits, const BitmapInfoHeader* info,
              std::uint32_t usage);

// Draws a part of a whole device-independent bitmap, unscaled, with its upper left corner at x, y. `sourceX`, `sourceY`
// count from its lower left corner. The number of rows taken; 0 on failure.
int SetDIBitsToDevice(DrawingHandle dc, int x, int y, int width, int height, int sourceX, int sourceY, int startScan,
                      int lines, const void* bits, const BitmapInfoHeader* info, std::uint32_t usage);

bool BitBlt(DrawingHandle target, int x, int y, int width, int height, DrawingHandle source, int sourceX, int sourceY,
            std::uint32_t operation);

bool GetObject(DrawingHandle bitmap, BitmapDescription& description);
int GetObjectType(DrawingHandle handle);  // 0 for a handle that is none, and for a window

// Puts a bitmap into a memory context and gives the one that was there; 0 on failure. A new context holds an empty
// bitmap.
DrawingHandle SelectObject(DrawingHandle dc, DrawingHandle bitmap);
bool DeleteObject(DrawingHandle bitmap);  // false while it is selected into a context

unsigned GetLastError();  // of the last call here that failed

}  // namespace win
