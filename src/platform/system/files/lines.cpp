#include "platform/system/files/lines.h"

#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"

#include <algorithm>

namespace win {

namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;

// Opens for output what Windows would: no folder, no pipe, no file with the read-only attribute, not even for root.
std::unique_ptr<WritableFile> OpenForOutput(const std::string& native, WriteMode mode) {
  FileStatus status;
  if (CurrentFileSystem().Status(native, status) && (!status.IsFile() || status.IsReadOnly())) {
    errno = status.IsFile() ? EPERM : EISDIR;
    return nullptr;
  }
  const OpenMode how = mode == WriteMode::kAppend ? OpenMode::kAppend : OpenMode::kTruncate;
  auto file = CurrentFileSystem().OpenForWriting(native, how, 0666);
  if (errno == ENOENT) errno = ENOTDIR;
  return file;
}

}  // namespace

struct LineReader::State {
  std::unique_ptr<ReadableFile> file;  // null behind its end
  std::size_t next = 0;                // first byte of `piece` that has not been handed out
  std::size_t size = 0;
  std::size_t nextFeed = 0;  // where the next LF stands, searched for only when it has been passed
  bool failed = false;
  bool afterReturn = false;  // the last line ended in CR, so that an LF here belongs to it
  char piece[kPiece];

  // Where `end` stands between `next` and `limit`, otherwise `limit`.
  std::size_t Find(char end, std::size_t limit) const {
    return std::min(std::string_view(piece, limit).find(end, next), limit);
  }

  // False at the end of the file; otherwise there is a byte at `next`.
  bool Fill() {
    if (next < size) return true;
    if (!file) return false;
    const ssize_t count = file->Read(piece, sizeof piece);
    if (count <= 0) file.reset();
    failed = failed || count < 0;
    next = 0;
    size = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    nextFeed = Find('\n', size);
    return size > 0;
  }

  bool AtEnd() {
    if (afterReturn && Fill() && piece[next] == '\n') ++next;
    afterReturn = false;
    return !Fill();
  }

  // Appends the piece up to a line end, which is taken too; false when the line goes on in the next piece.
  bool TakeLine(std::string& line) {
    if (nextFeed < next) nextFeed = Find('\n', size);
    const std::size_t end = Find('\r', nextFeed);
    line.append(piece + next, end - next);
    next = end;
    if (next == size) return false;
    afterReturn = piece[next++] == '\r';
    return true;
  }
};

LineReader::LineReader(const std::string& path) : path_(path) {
  FileStatus status;
  auto file = OpenFile(CurrentFileSystem(), NativePath(path), status);
  isRefused_ = !file && errno != ENOENT && errno != ENOTDIR;
  if (!file) return;
  state_ = std::make_unique_for_overwrite<State>();  // the piece stays unset
  state_->file = std::move(file);
}

LineReader::~LineReader() = default;
LineReader::LineReader(LineReader&&) noexcept = default;
LineReader& LineReader::operator=(LineReader&&) noexcept = default;

bool LineReader::IsOpen() const { return state_ != nullptr; }

bool LineReader::AtEnd() { return state_ == nullptr || state_->AtEnd(); }

bool LineReader::Failed() const { return state_ ? state_->failed : isRefused_; }

std::string LineReader::ReadLine() {
  std::string line;
  if (AtEnd()) return line;
  ++lineNumber_;
  while (state_->Fill() && !state_->TakeLine(line)) {
    if (line.size() <= kMaxBytes) continue;
    state_->file.reset();
    state_->failed = true;
  }
  return line;
}

LineWriter::LineWriter(const std::string& path, WriteMode mode) : path_(path) {
  ReportOperation(mode == WriteMode::kAppend ? Operation::kAppend : Operation::kWrite, path, "", [&] {
    file_ = OpenForOutput(NativePath(path), mode);
    return IsOpen();
  });
}

LineWriter::~LineWriter() { Close(); }

bool LineWriter::IsOpen() const { return file_ != nullptr; }

bool LineWriter::WriteLine(std::string_view text) {
  if (!IsOpen()) return false;
  if (OperationsAreObserved()) ReportOperation(Operation::kWriteLine, path_, std::string(text), [] { return true; });
  buffer_.append(text).append("\r\n");
  if (buffer_.size() >= kPiece) {
    failed_ = !file_->Append(buffer_) || failed_;
    buffer_.clear();
  }
  return !failed_;
}

bool LineWriter::Close() {
  if (!IsOpen()) return false;
  failed_ = !file_->Append(buffer_) || failed_;
  failed_ = !file_->Close() || failed_;
  const int error = errno;
  file_.reset();
  return !failed_ || ReportOperation(Operation::kWrite, path_, "", [error] { return FailWith(error); });
}

}  // namespace win
