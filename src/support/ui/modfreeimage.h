#pragma once

#include "windowing/drawing.h"

#include <cstddef>
#include <string>

struct FIBITMAP;

namespace win {
class PictureBox;
}

// The bridge between the image library's device-independent bitmaps and the display's bitmaps. A conversion that is
// given an output handle first destroys what it holds; what it hands out belongs to the caller. Nothing shows a failure
// but FreeImageLastError: a routine says there what failed, in brackets its name, and does nothing more.
namespace varnik {

// The first failure of these routines, or the last message of the library, which replaces it. Never reset.
extern const std::string& FreeImageLastError;

void InitFreeImage();

bool FreeImage_BMP_From_DIB(FIBITMAP* dib, win::DrawingHandle& bitmap);
bool FreeImage_DIB_From_BMP(win::DrawingHandle bitmap, FIBITMAP*& dib);  // of 32 bits

// Draw without scaling. A width or height of 0 or less means the image's own.
bool FreeImage_RenderDIB(FIBITMAP* dib, win::DrawingHandle dc, int x, int y, int width, int height);
bool FreeImage_RenderBitmap(win::DrawingHandle bitmap, win::DrawingHandle dc, int x, int y, int width, int height,
                            bool invert);

// 0 on failure.
int FreeImage_GetBitmapWidth(win::DrawingHandle bitmap);
int FreeImage_GetBitmapHeight(win::DrawingHandle bitmap);

// A memory device context that fits the desktop's.
bool CreateWorkDC(win::DrawingHandle& dc);

// Selects `bitmap` out of the context and deletes what it held, then deletes the context. Both are 0 afterwards.
bool ReleaseWorkDC(win::DrawingHandle& dc, win::DrawingHandle& bitmap);

void SetFreeImageError(const std::string& text, bool onlyIfEmpty);

// Clears the box and draws a PNG, JPEG or BMP file into it at its own size, whatever its name says. False when the file
// is none of these, is damaged, or would take more than kMaxPictureBytes to show; the box may be empty then.
bool ShowPictureFile(const std::string& path, win::PictureBox& box);

// A picture of 4,096 by 4,096 takes as much.
constexpr std::size_t kMaxPictureBytes = 192u << 20;

}  // namespace varnik
