#pragma once

#include "platform/system/filesystem/descriptor.h"

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

// Pictures come from strangers, and a damaged one may crash its decoder, fill the memory or keep the processor busy. So
// a program of its own decodes them, within limits that it sets itself (src/picture/), and nothing that it answers is
// taken on trust.
namespace win {

struct PicturePixels {
  int width = 0, height = 0;
  std::unique_ptr<std::uint32_t[]> pixels;  // rows from the top, each 0xAARRGGBB; null: no picture

  explicit operator bool() const { return pixels != nullptr; }
};

// One answer of a decoder. Nothing for an answer that is cut short, lies about its size or has not come in time;
// `whole` is then false, and what follows on the socket means nothing. An answer that says "no picture" is whole.
PicturePixels ReadPictureAnswer(int socket, std::chrono::steady_clock::time_point deadline, bool& whole);

// Starts the decoder with the first picture, keeps it for the next ones, and starts another one after it has died or
// was stopped. It ends with this process. For one thread.
class PictureDecoder {
 public:
  // `program` is a native path. A decoder that cannot be started is said on standard error once.
  explicit PictureDecoder(std::string program) : program_(std::move(program)) {}
  ~PictureDecoder();
  PictureDecoder(const PictureDecoder&) = delete;
  PictureDecoder& operator=(const PictureDecoder&) = delete;

  // The picture in a file by its native path; nothing when there is none that can be decoded within kTimeLimit.
  PicturePixels Decode(const std::string& native, bool opaque);

  static constexpr std::chrono::milliseconds kTimeLimit{2000};

  pid_t Process() const { return process_; }  // -1 while none runs

 private:
  bool IsReady() const;
  bool Start();
  bool Ask(const Descriptor& file, const std::string& native, bool opaque) const;
  void Stop();

  std::string program_;
  Descriptor socket_;
  pid_t process_ = -1;
  bool failed_ = false;  // it could not be started
};

}  // namespace win
