#include "platform/system/process/capturedoutput.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

namespace win {
namespace {

constexpr std::size_t kTailSize = 4096;

// Whoever reads our standard error may have gone, which is no reason to die during a game.
class IgnoredBrokenPipe {
 public:
  IgnoredBrokenPipe() : before_(signal(SIGPIPE, SIG_IGN)) {}
  ~IgnoredBrokenPipe() { signal(SIGPIPE, before_); }
  IgnoredBrokenPipe(const IgnoredBrokenPipe&) = delete;
  IgnoredBrokenPipe& operator=(const IgnoredBrokenPipe&) = delete;

 private:
  sighandler_t before_;
};

}  // namespace

CapturedOutput::CapturedOutput() : file_(memfd_create("output", MFD_CLOEXEC)) {
  // Several programs write to it, each at its end.
  if (file_.IsOpen()) fcntl(file_.Get(), F_SETFL, O_APPEND);
}

void CapturedOutput::HandOn() {
  struct stat status = {};
  if (!file_.IsOpen() || fstat(file_.Get(), &status) != 0) return;
  if (status.st_size < done_) done_ = 0;  // a program has opened it anew, and emptied it
  const IgnoredBrokenPipe ignored;
  char piece[16384];
  for (ssize_t count = 0; (count = pread(file_.Get(), piece, sizeof piece, done_)) > 0; done_ += count)
    Keep({piece, static_cast<std::size_t>(count)});
  if (done_ > 0) fallocate(file_.Get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, 0, done_);
}

void CapturedOutput::Keep(std::string_view piece) {
  WriteAll(STDERR_FILENO, piece);
  tail_.append(piece);
  if (tail_.size() > kTailSize) tail_.erase(0, tail_.size() - kTailSize);
}

std::string CapturedOutput::Tail() const {
  const std::size_t begin = tail_.size() < kTailSize ? 0 : tail_.find('\n') + 1;  // all of it when that is one line
  return tail_.substr(begin);
}

}  // namespace win
