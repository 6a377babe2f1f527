#include "platform/system/process/picturedecoder.h"
#include "platform/system/process/picturemessage.h"

#include <unistd.h>

#include <cstdint>
#include <cstdlib>

// What a decoder of pictures answers, taken from a pipe: one that a picture has got hold of may answer anything.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  int ends[2];
  if (pipe(ends) != 0) std::abort();
  const win::Descriptor out(ends[0]);
  if (write(ends[1], data, size) != static_cast<ssize_t>(size)) std::abort();
  close(ends[1]);
  bool whole = false;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(1);
  const win::PicturePixels picture = win::ReadPictureAnswer(out.Get(), deadline, whole);
  if (!picture) return 0;
  // All of a picture has come.
  const std::size_t pixels = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
  if (!whole || sizeof(win::PictureHead) + 4 * pixels > size) std::abort();
  return 0;
}
