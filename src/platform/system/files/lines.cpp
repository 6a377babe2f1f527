#include "platform/system/files/files.h"
#include "platform/system/filesystem/deeds.h"
#include "platform/system/filesystem/disk.h"
#include "platform/system/filesystem/nativefile.h"
#include "platform/system/paths/paths.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace win {

namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;

// Opens for output what Windows would: no folder, no pipe, no file with the read-only attribute, not even for root.
Descriptor OpenForWriting(const std::string& native, WriteMode mode) {
  struct stat status;
  const bool exists = TheDisk().Stat(native, status) == 0;
  const bool isFile = exists && S_ISREG(status.st_mode);
  if (exists && (!isFile || (status.st_mode & S_IWUSR) == 0)) {
    errno = isFile ? EPERM : EISDIR;
    return Descriptor();
  }
  const int end = mode == WriteMode::kAppend ? O_APPEND : O_TRUNC;
  Descriptor file(TheDisk().Open(native, O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | end, 0666));
  if (errno == ENOENT) errno = ENOTDIR;
  return file;
}

}  // namespace

struct LineReader::State {
  Descriptor file;
  std::size_t next = 0;  // first byte of `piece` that has not been handed out
  std::size_t size = 0;
  std::size_t nextFeed = 0;  // where the next LF and the next CR stand, each searched for only when it has been passed
  std::size_t nextReturn = 0;
  bool afterReturn = false;  // the last line ended in CR, so that an LF here belongs to it
  char piece[kPiece];

  std::size_t Find(char end) const {
    const void* const found = std::memchr(piece + next, end, size - next);
    return found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - piece) : size;
  }

  // False at the end of the file; otherwise there is a byte at `next`.
  bool Fill() {
    if (next < size) return true;
    if (!file.IsOpen()) return false;
    const ssize_t count = ReadSome(file.Get(), piece, sizeof piece);
    if (count <= 0) file = Descriptor();
    next = 0;
    size = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    nextFeed = Find('\n');
    nextReturn = Find('\r');
    return size > 0;
  }

  bool AtEnd() {
    if (afterReturn && Fill() && piece[next] == '\n') ++next;
    afterReturn = false;
    return !Fill();
  }

  // Appends the piece up to a line end, which is taken too; false when the line goes on in the next piece.
  bool TakeLine(std::string& line) {
    if (nextFeed < next) nextFeed = Find('\n');
    if (nextReturn < next) nextReturn = Find('\r');
    const std::size_t end = std::min(nextFeed, nextReturn);
    line.append(piece + next, end - next);
    next = end;
    if (next == size) return false;
    afterReturn = piece[next++] == '\r';
    return true;
  }
};

LineReader::LineReader(const std::string& path) : path_(path) {
  Descriptor file = OpenForReading(NativePath(path));
  if (!file.IsOpen()) return;
  state_ = std::make_unique_for_overwrite<State>();  // the piece stays unset
  state_->file = std::move(file);
}

LineReader::~LineReader() = default;
LineReader::LineReader(LineReader&&) noexcept = default;
LineReader& LineReader::operator=(LineReader&&) noexcept = default;

bool LineReader::IsOpen() const { return state_ != nullptr; }

bool LineReader::AtEnd() { return state_ == nullptr || state_->AtEnd(); }

std::string LineReader::ReadLine() {
  std::string line;
  if (AtEnd()) return line;
  ++lineNumber_;
  while (state_->Fill() && !state_->TakeLine(line)) {
    if (line.size() > kMostBytes) state_->file = Descriptor();
  }
  return line;
}

LineWriter::LineWriter(const std::string& path, WriteMode mode) : path_(path) {
  Tell(mode == WriteMode::kAppend ? Act::kAppend : Act::kWrite, path, "", [&] {
    descriptor_ = OpenForWriting(NativePath(path), mode).Release();
    return IsOpen();
  });
}

LineWriter::~LineWriter() { Close(); }

bool LineWriter::IsOpen() const { return descriptor_ >= 0; }

bool LineWriter::WriteLine(std::string_view text) {
  if (!IsOpen()) return false;
  if (DeedsAreWatched()) Tell(Act::kWriteLine, path_, std::string(text), [] { return true; });
  buffer_.append(text).append("\r\n");
  if (buffer_.size() >= kPiece) {
    failed_ = !WriteAll(descriptor_, buffer_) || failed_;
    buffer_.clear();
  }
  return !failed_;
}

bool LineWriter::Close() {
  if (!IsOpen()) return false;
  failed_ = !WriteAll(descriptor_, buffer_) || failed_;
  buffer_.clear();
  failed_ = close(descriptor_) != 0 || failed_;
  descriptor_ = -1;
  return !failed_;
}

}  // namespace win
