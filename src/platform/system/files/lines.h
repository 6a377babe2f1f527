#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace win {

class WritableFile;

// Reads a text file line by line. A line ends at CRLF, at LF or at CR; the end is not part of the line. The file is
// read in pieces: its size does not matter, only its longest line does.
class LineReader {
 public:
  explicit LineReader(const std::string& path);
  ~LineReader();
  LineReader(LineReader&&) noexcept;
  LineReader& operator=(LineReader&&) noexcept;

  bool IsOpen() const;

  // True behind the last line, and at once when the file could not be opened or is a folder. A read error counts as the
  // end, and so does a line that goes on for more than 512 MB: see Failed.
  bool AtEnd();

  // True once it is known that not all of the file could be read, or none of it although it is there. What was read of
  // such a file must not be written back.
  bool Failed() const;

  // Empty at the end.
  std::string ReadLine();

  const std::string& Path() const { return path_; }

  // Of the line that was read last, from 1; 0 ahead of the first.
  int LineNumber() const { return lineNumber_; }

 private:
  struct State;
  std::unique_ptr<State> state_;
  std::string path_;
  bool isRefused_ = false;
  int lineNumber_ = 0;
};

enum class WriteMode { kOutput, kAppend };

// Writes a text file line by line; every line gets CRLF. kOutput empties the file when it opens. Opening fails for a
// read-only file, a folder, and in a missing folder; writing to a file that is not open does nothing.
class LineWriter {
 public:
  LineWriter(const std::string& path, WriteMode mode);
  ~LineWriter();
  LineWriter(const LineWriter&) = delete;
  LineWriter& operator=(const LineWriter&) = delete;

  bool IsOpen() const;

  // `text` may hold line ends of its own; it stands in the file as given, then CRLF.
  bool WriteLine(std::string_view text);

  // Creates (or empties) the file without a line. True when everything has been handed to the system; called by the
  // destructor.
  bool Close();

 private:
  std::string path_;
  std::unique_ptr<WritableFile> file_;
  std::string buffer_;
  bool failed_ = false;
};

}  // namespace win
