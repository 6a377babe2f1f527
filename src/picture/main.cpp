#include "platform/system/process/picturemessage.h"

#include <FreeImage.h>

#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

// Decodes pictures for another program, one after the other: standard input is a socket on which picturemessage.h is
// spoken. The pictures may be made to do harm, and a decoder that fails takes this process with it and nothing else.
namespace {

constexpr int kSocket = STDIN_FILENO;
constexpr rlim_t kMaxAddressSpace = 256u << 20;
constexpr unsigned kStripeRows = 64;  // of a picture, taken out of it at once
constexpr unsigned kMaxIcon = 64;     // pixels; larger images of an icon file are for file managers

struct UnloadDib {
  void operator()(FIBITMAP* dib) const { FreeImage_Unload(dib); }
};
using Dib = std::unique_ptr<FIBITMAP, UnloadDib>;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

bool Limit(__rlimit_resource resource, rlim_t value) {
  const rlimit limit = {value, value};
  return setrlimit(resource, &limit) == 0;
}

// While a picture is decoded its file takes the last descriptor that this process may have, so that it can open no
// file and no socket.
bool Confine() {
  constexpr rlim_t kDescriptors = STDERR_FILENO + 2;
  return prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         Limit(RLIMIT_AS, kMaxAddressSpace) && Limit(RLIMIT_FSIZE, 0) && Limit(RLIMIT_CORE, 0) &&
         Limit(RLIMIT_NPROC, 0) && Limit(RLIMIT_NOFILE, kDescriptors);
}

// Null when the asking side is gone.
File Receive(win::PictureRequest& request) {
  iovec content{&request, sizeof request};
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
  msghdr message{nullptr, 0, &content, 1, control, sizeof control, 0};
  if (recvmsg(kSocket, &message, MSG_WAITALL) != sizeof request) return nullptr;
  const cmsghdr* const attached = CMSG_FIRSTHDR(&message);
  if (attached == nullptr || attached->cmsg_type != SCM_RIGHTS) return nullptr;
  int descriptor = -1;
  std::memcpy(&descriptor, CMSG_DATA(attached), sizeof descriptor);
  return File(fdopen(descriptor, "rb"));
}

void Send(const void* bytes, std::size_t size) {
  for (const char* next = static_cast<const char*>(bytes); size > 0;) {
    const ssize_t sent = send(kSocket, next, size, MSG_NOSIGNAL);
    if (sent <= 0) std::exit(1);  // the asking side is gone
    next += sent;
    size -= static_cast<std::size_t>(sent);
  }
}

unsigned Read(void* buffer, unsigned size, unsigned count, fi_handle handle) {
  return static_cast<unsigned>(std::fread(buffer, size, count, static_cast<std::FILE*>(handle)));
}
unsigned Write(void*, unsigned, unsigned, fi_handle) { return 0; }
int Seek(fi_handle handle, long offset, int origin) {
  return std::fseek(static_cast<std::FILE*>(handle), offset, origin);
}
long Tell(fi_handle handle) { return std::ftell(static_cast<std::FILE*>(handle)); }
FreeImageIO kFileAccess = {Read, Write, Seek, Tell};

// Of two images of an icon file, whether the first suits a small place better.
bool IsBetterIcon(unsigned width, unsigned than) {
  const bool fits = width <= kMaxIcon, otherFits = than <= kMaxIcon;
  return fits == otherFits ? (fits ? width > than : width < than) : fits;
}

Dib LoadIcon(std::FILE* file) {
  FIMULTIBITMAP* const icons = FreeImage_OpenMultiBitmapFromHandle(FIF_ICO, &kFileAccess, file, ICO_MAKEALPHA);
  if (icons == nullptr) return nullptr;
  Dib best;
  for (int page = 0; page < FreeImage_GetPageCount(icons); ++page) {
    FIBITMAP* const icon = FreeImage_LockPage(icons, page);
    if (icon == nullptr) continue;
    if (best == nullptr || IsBetterIcon(FreeImage_GetWidth(icon), FreeImage_GetWidth(best.get())))
      best.reset(FreeImage_Clone(icon));
    FreeImage_UnlockPage(icons, icon, FALSE);
  }
  FreeImage_CloseMultiBitmap(icons, 0);
  return best;
}

// Colours of more than 16 bits, and numbers that are no colours, are brought to what a screen shows.
Dib InScreenRange(Dib dib) {
  if (dib == nullptr) return nullptr;
  switch (FreeImage_GetImageType(dib.get())) {
    case FIT_BITMAP:
    case FIT_RGB16:
    case FIT_RGBA16:
      return dib;
    case FIT_RGBF:
    case FIT_RGBAF:
      return Dib(FreeImage_ToneMapping(dib.get(), FITMO_DRAGO03));
    default:
      return Dib(FreeImage_ConvertToStandardType(dib.get()));
  }
}

Dib Load(std::FILE* file, FREE_IMAGE_FORMAT format) {
  if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return nullptr;
  if (format == FIF_ICO) return LoadIcon(file);
  return InScreenRange(Dib(FreeImage_LoadFromHandle(format, &kFileAccess, file)));
}

// A picture that is nowhere visible was meant without the fourth byte of its pixels.
bool IsInvisible(FIBITMAP* dib) {
  if (FreeImage_GetImageType(dib) != FIT_BITMAP || FreeImage_GetBPP(dib) != 32) return false;
  for (unsigned row = 0; row < FreeImage_GetHeight(dib); ++row) {
    const std::span line(reinterpret_cast<const RGBQUAD*>(FreeImage_GetScanLine(dib, static_cast<int>(row))),
                         FreeImage_GetWidth(dib));
    if (std::any_of(line.begin(), line.end(), [](const RGBQUAD& pixel) { return pixel.rgbReserved != 0; }))
      return false;
  }
  return true;
}

// FreeImage counts rows from the bottom.
void SendRows(FIBITMAP* stripe, bool opaque) {
  std::vector<std::uint32_t> pixels(FreeImage_GetWidth(stripe));
  for (unsigned row = FreeImage_GetHeight(stripe); row-- > 0;) {
    const BYTE* from = FreeImage_GetScanLine(stripe, static_cast<int>(row));
    for (std::uint32_t& pixel : pixels) {
      const std::uint32_t alpha = opaque ? 0xFF : from[FI_RGBA_ALPHA];
      pixel = alpha << 24 | from[FI_RGBA_RED] << 16 | from[FI_RGBA_GREEN] << 8 | from[FI_RGBA_BLUE];
      from += sizeof(RGBQUAD);
    }
    Send(pixels.data(), pixels.size() * sizeof pixels[0]);
  }
}

// In stripes, so that a large picture need not be in memory twice.
void SendPicture(FIBITMAP* dib, bool opaque) {
  const win::PictureHead head = {FreeImage_GetWidth(dib), FreeImage_GetHeight(dib)};
  Send(&head, sizeof head);
  for (unsigned top = 0; top < head.height; top += kStripeRows) {
    const unsigned bottom = std::min(top + kStripeRows, head.height);
    const Dib view(FreeImage_CreateView(dib, 0, top, head.width, bottom));
    const Dib stripe(view ? FreeImage_ConvertTo32Bits(view.get()) : nullptr);
    if (stripe == nullptr) std::exit(1);  // the picture has been promised
    SendRows(stripe.get(), opaque);
  }
}

void Answer(const win::PictureRequest& request, std::FILE* file) {
  FREE_IMAGE_FORMAT format = FreeImage_GetFileTypeFromHandle(&kFileAccess, file);
  if (format == FIF_UNKNOWN) format = FreeImage_GetFIFFromFilename(request.extension);
  const Dib dib = Load(file, format);
  if (dib == nullptr || !win::IsPictureSize(FreeImage_GetWidth(dib.get()), FreeImage_GetHeight(dib.get()))) {
    const win::PictureHead none;
    return Send(&none, sizeof none);
  }
  // The fourth byte of a BMP's pixels is rarely meant as opacity.
  SendPicture(dib.get(), request.opaque || format == FIF_BMP || IsInvisible(dib.get()));
}

}  // namespace

int main() {
  if (!Confine()) {
    std::perror("varnik-picture");
    return 1;
  }
  dup2(STDOUT_FILENO, STDERR_FILENO);  // what the libraries say of a picture goes the way of standard output: nowhere
  win::PictureRequest request;
  while (const File file = Receive(request))
    Answer(request, file.get());
  return 0;
}
