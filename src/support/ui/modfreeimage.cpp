#include "support/ui/modfreeimage.h"

#include "platform/system/files/files.h"
#include "platform/system/paths/paths.h"
#include "windowing/picturebox.h"

#include <FreeImage.h>

#include <algorithm>
#include <iterator>
#include <memory>

namespace varnik {
namespace {

std::string lastError;

// `text` ends in a blank where the code of the failed call belongs behind it.
bool Fail(const char* routine, std::string text) {
  if (text.ends_with(' ')) text += std::to_string(win::GetLastError());
  SetFreeImageError("[" + std::string(routine) + "] " + text, true);
  return false;
}

void FreeImageMessageHandler(FREE_IMAGE_FORMAT, const char* message) {
  SetFreeImageError(message == nullptr ? "" : message, false);
}

const win::BitmapInfoHeader* HeaderOf(FIBITMAP* dib) {
  return reinterpret_cast<const win::BitmapInfoHeader*>(FreeImage_GetInfoHeader(dib));
}

const win::BitmapInfoHeader* InfoOf(FIBITMAP* dib) {
  return reinterpret_cast<const win::BitmapInfoHeader*>(FreeImage_GetInfo(dib));
}

bool IsDeviceContext(win::DrawingHandle handle) {
  const int type = win::GetObjectType(handle);
  return type == win::kObjDc || type == win::kObjMemDc;
}

// The desktop's device context while it is needed.
class DesktopDC {
 public:
  DesktopDC() : window_(win::GetDesktopWindow()), dc_(win::GetDC(window_)) {}
  ~DesktopDC() {
    if (dc_ != 0) win::ReleaseDC(window_, dc_);
  }
  DesktopDC(const DesktopDC&) = delete;
  DesktopDC& operator=(const DesktopDC&) = delete;
  win::DrawingHandle Get() const { return dc_; }

 private:
  win::DrawingHandle window_, dc_;
};

}  // namespace

const std::string& FreeImageLastError = lastError;

void SetFreeImageError(const std::string& text, bool onlyIfEmpty) {
  if (!onlyIfEmpty || lastError.empty()) lastError = text;
}

void InitFreeImage() {
  FreeImage_Initialise(FALSE);
  FreeImage_SetOutputMessage(FreeImageMessageHandler);
}

bool FreeImage_BMP_From_DIB(FIBITMAP* dib, win::DrawingHandle& bitmap) {
  if (bitmap != 0) win::DeleteObject(bitmap);
  bitmap = 0;
  if (dib == nullptr) return Fail(__func__, "No DIB specified to convert");
  const win::BitmapInfoHeader* const header = HeaderOf(dib);
  if (header == nullptr) return Fail(__func__, "FreeImage_GetInfoHeader failed to get the DIB header");
  const win::BitmapInfoHeader* const info = InfoOf(dib);
  if (info == nullptr) return Fail(__func__, "FreeImage_GetInfo failed to get the DIB info");
  const BYTE* const bits = FreeImage_GetBits(dib);
  if (bits == nullptr) return Fail(__func__, "FreeImage_GetBits failed to get the DIB's bits");
  const DesktopDC desktop;
  if (desktop.Get() == 0) return Fail(__func__, "GetDC failed to get the DC to work with reporting error code ");
  bitmap = win::CreateDIBitmap(desktop.Get(), header, win::kCbmInit, bits, info, win::kDibRgbColors);
  if (bitmap != 0) return true;
  return Fail(__func__, "CreateDIBitmap failed to create the BITMAP from the DIB reporting error code ");
}

namespace {

bool CopyBits(const char* routine, win::DrawingHandle dc, win::DrawingHandle bitmap, int height, FIBITMAP* dib) {
  if (dib == nullptr) return Fail(routine, "FreeImage_Allocate failed to create a DIB to work with");
  const win::BitmapInfoHeader* const info = InfoOf(dib);
  if (info == nullptr) return Fail(routine, "FreeImage_GetInfo failed to get the DIB info");
  BYTE* const bits = FreeImage_GetBits(dib);
  if (bits == nullptr) return Fail(routine, "FreeImage_GetBits failed to get the DIB bits");
  if (win::GetDIBits(dc, bitmap, 0, height, bits, info, win::kDibRgbColors) != 0) return true;
  return Fail(routine, "GetDIBits failed to get the DIB's bits reporting error code ");
}

}  // namespace

bool FreeImage_DIB_From_BMP(win::DrawingHandle bitmap, FIBITMAP*& dib) {
  if (dib != nullptr) FreeImage_Unload(dib);
  dib = nullptr;
  if (bitmap == 0) return Fail(__func__, "No bitmap specified to convert");
  win::BitmapDescription size;
  if (!win::GetObject(bitmap, size)) return Fail(__func__, "GetObjectAPI failed with error code ");
  const DesktopDC desktop;
  if (desktop.Get() == 0) return Fail(__func__, "GetDC failed to get a DC to work with reporting error code ");
  dib = FreeImage_Allocate(size.width, size.height, 32, 0, 0, 0);
  if (CopyBits(__func__, desktop.Get(), bitmap, size.height, dib)) return true;
  FreeImage_Unload(dib);
  dib = nullptr;
  return false;
}

bool FreeImage_RenderDIB(FIBITMAP* dib, win::DrawingHandle dc, int x, int y, int width, int height) {
  if (dib == nullptr) return Fail(__func__, "No DIB specified to render");
  if (!IsDeviceContext(dc)) return Fail(__func__, "DC specified was invalid");
  if (width <= 0) width = static_cast<int>(FreeImage_GetWidth(dib));
  if (width < 1) return Fail(__func__, "Could not get the bitmap's width");
  if (height <= 0) height = static_cast<int>(FreeImage_GetHeight(dib));
  if (height < 1) return Fail(__func__, "Could not get the bitmap's height");
  const BYTE* const bits = FreeImage_GetBits(dib);
  if (bits == nullptr) return Fail(__func__, "Could not get the DIB's bits");
  const win::BitmapInfoHeader* const info = InfoOf(dib);
  if (info == nullptr) return Fail(__func__, "Could not get the DIB's information");
  if (win::SetDIBitsToDevice(dc, x, y, width, height, 0, 0, 0, height, bits, info, win::kDibRgbColors) != 0)
    return true;
  return Fail(__func__, "SetDIBitsToDevice failed to render the DIB to the specified DC with error code ");
}

bool FreeImage_RenderBitmap(win::DrawingHandle bitmap, win::DrawingHandle dc, int x, int y, int width, int height,
                            bool invert) {
  if (bitmap == 0) return Fail(__func__, "No bitmap specified to render");
  if (win::GetObjectType(bitmap) != win::kObjBitmap) return Fail(__func__, "Handle specified is not a valid BITMAP");
  if (!IsDeviceContext(dc)) return Fail(__func__, "DC specified is not valid");
  if (width <= 0) width = FreeImage_GetBitmapWidth(bitmap);
  if (width < 1) return Fail(__func__, "Could not get bitmap's width");
  if (height <= 0) height = FreeImage_GetBitmapHeight(bitmap);
  if (height < 1) return Fail(__func__, "Could not get bitmap's height");
  win::DrawingHandle work = 0;
  win::DrawingHandle none = 0;
  if (!CreateWorkDC(work)) return Fail(__func__, "Coult not create a DC to work with");
  const win::DrawingHandle before = win::SelectObject(work, bitmap);
  const bool drawn = win::BitBlt(dc, x, y, width, height, work, 0, 0, invert ? win::kNotSrcCopy : win::kSrcCopy) ||
                     Fail(__func__, "BitBlt failed to render the BITMAP to the DC with error code ");
  win::SelectObject(work, before);
  ReleaseWorkDC(work, none);
  return drawn;
}

namespace {

bool DescribeBitmap(const char* routine, win::DrawingHandle bitmap, win::BitmapDescription& description) {
  if (bitmap == 0) return Fail(routine, "No bitmap specified to get the info for");
  if (win::GetObjectType(bitmap) != win::kObjBitmap) return Fail(routine, "Handle specified is not a valid BITMAP");
  return win::GetObject(bitmap, description) || Fail(routine, "GetObjectAPI failed with error code ");
}

}  // namespace

int FreeImage_GetBitmapWidth(win::DrawingHandle bitmap) {
  win::BitmapDescription description;
  return DescribeBitmap(__func__, bitmap, description) ? description.width : 0;
}

int FreeImage_GetBitmapHeight(win::DrawingHandle bitmap) {
  win::BitmapDescription description;
  return DescribeBitmap(__func__, bitmap, description) ? description.height : 0;
}

bool CreateWorkDC(win::DrawingHandle& dc) {
  const DesktopDC desktop;
  dc = desktop.Get() == 0 ? 0 : win::CreateCompatibleDC(desktop.Get());
  return dc != 0;
}

bool ReleaseWorkDC(win::DrawingHandle& dc, win::DrawingHandle& bitmap) {
  if (bitmap != 0) win::DeleteObject(win::SelectObject(dc, bitmap));
  bitmap = 0;
  if (!win::DeleteDC(dc)) return false;
  dc = 0;
  return true;
}

namespace {

struct Unload {
  void operator()(FIBITMAP* dib) const { FreeImage_Unload(dib); }
};
using Dib = std::unique_ptr<FIBITMAP, Unload>;

// The library's decoders for other formats do not stand up to damaged files.
constexpr FREE_IMAGE_FORMAT kFormats[] = {FIF_PNG, FIF_JPEG, FIF_BMP};

// What showing the picture takes at its peak: the library's bitmap, the display's and the copy of that.
bool FitsMemory(FIBITMAP* header) {
  const std::uint64_t pixels = std::uint64_t{FreeImage_GetWidth(header)} * FreeImage_GetHeight(header);
  return pixels > 0 && pixels <= kMaxPictureBytes / ((FreeImage_GetBPP(header) + 7) / 8 + 4 + 4);
}

// More than 8 bits a colour are too much for the display.
Dib InDisplayDepth(Dib dib) {
  if (dib == nullptr || FreeImage_GetImageType(dib.get()) == FIT_BITMAP) return dib;
  return Dib(FreeImage_ConvertTo24Bits(dib.get()));
}

Dib LoadPicture(const std::string& native) {
  const FREE_IMAGE_FORMAT format = FreeImage_GetFileType(native.c_str(), 0);
  if (std::find(std::begin(kFormats), std::end(kFormats), format) == std::end(kFormats)) return nullptr;
  const Dib header(FreeImage_Load(format, native.c_str(), FIF_LOAD_NOPIXELS));
  if (header == nullptr || !FitsMemory(header.get())) return nullptr;
  return InDisplayDepth(Dib(FreeImage_Load(format, native.c_str(), 0)));
}

bool DrawPicture(FIBITMAP* picture, win::PictureBox& box) {
  win::DrawingHandle bitmap = 0;
  if (!FreeImage_BMP_From_DIB(picture, bitmap)) return false;
  box.SetPicture(win::Picture());
  bool drawn = FreeImage_RenderBitmap(bitmap, box.DeviceContext(), 0, 0, -1, -1, false);
  FIBITMAP* copy = nullptr;
  drawn = drawn && FreeImage_DIB_From_BMP(bitmap, copy);
  drawn = drawn && FreeImage_RenderDIB(copy, box.DeviceContext(), 0, 0, -1, -1);
  FreeImage_Unload(copy);
  win::DeleteObject(bitmap);
  return drawn;
}

}  // namespace

bool ShowPictureFile(const std::string& path, win::PictureBox& box) {
  if (!win::FileSize(path)) return false;
  InitFreeImage();
  const bool drawn = [&] {
    const Dib picture = LoadPicture(win::NativePath(path));
    return picture != nullptr && DrawPicture(picture.get(), box);
  }();
  FreeImage_DeInitialise();
  return drawn;
}

}  // namespace varnik
