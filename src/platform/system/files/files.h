#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// Files as Windows treats them. Every verb takes Windows paths, and either does its work or changes nothing and returns
// false; nothing throws. Read-only is an attribute of the file (no write bit for the owner) and binds root as well.
namespace win {

// Renames or moves a file or folder. Never replaces an existing target, whatever the case of its name. A trailing
// separator in either name is ignored; a rename that only changes case works; a read-only file can be renamed. A move
// to another file system copies and deletes, files only.
bool RenameFile(const std::string& from, const std::string& to);

// Deletes the files (never folders) that the last name of `pattern` matches, wildcards `*` and `?` included, and goes
// on past one that refuses. False when nothing matched or one refused, as a read-only file does.
bool DeleteFiles(const std::string& pattern);

bool MakeFolder(const std::string& path);

// Removes an empty folder.
bool RemoveFolder(const std::string& path);

constexpr unsigned kAttributeReadOnly = 0x01;
constexpr unsigned kAttributeHidden = 0x02;  // a name that begins with a dot
constexpr unsigned kAttributeDirectory = 0x10;
constexpr unsigned kAttributeArchive = 0x20;

// Nothing when the path does not exist.
std::optional<unsigned> GetAttributes(const std::string& path);

// Only the read-only bit can be changed; the rest of `attributes` is ignored.
bool SetAttributes(const std::string& path, unsigned attributes);

// Size of a regular file in bytes. Nothing for anything else, such as a folder or a pipe.
std::optional<std::uint64_t> FileSize(const std::string& path);

// The whole content, byte for byte. Nothing for a folder, a missing file, one of more than 512 MB or one that cannot be
// read to its end.
[[nodiscard]] std::optional<std::string> ReadWholeFile(const std::string& path);

// Replaces the file's content so that a crash or a full disk leaves the old or the new content and never less:
// temporary file in the same folder, flush, rename, flush of the folder. Mode bits stay; a link is written through.
// Fails on a read-only file, on a folder and in a missing folder.
bool WriteWholeFile(const std::string& path, std::string_view content);

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
  // end, and so does a line that goes on for more than 512 MB.
  bool AtEnd();

  // Empty at the end.
  std::string ReadLine();

  const std::string& Path() const { return path_; }

  // Of the line that was read last, from 1; 0 ahead of the first.
  int LineNumber() const { return lineNumber_; }

 private:
  struct State;
  std::unique_ptr<State> state_;
  std::string path_;
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
  int descriptor_ = -1;
  std::string buffer_;
  bool failed_ = false;
};

}  // namespace win
