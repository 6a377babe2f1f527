#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

// What the file routines of this layer share: open files of the operating system. Every path here is a native one.
namespace win {

// What is taken into memory in one piece, at most.
constexpr std::size_t kMostBytes = std::size_t{512} * 1024 * 1024;

// Owns a file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int descriptor = -1) : descriptor_(descriptor) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : descriptor_(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }

  bool IsOpen() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }
  int Release() { return std::exchange(descriptor_, -1); }

 private:
  int descriptor_;
};

// A regular file opened for reading. Anything else, such as a pipe that would block, is not opened.
Descriptor OpenForReading(const std::string& native);

// Whatever has this Windows path, opened for reading without blocking; no look-up for a path that is spelled as on
// disk.
Descriptor OpenPath(std::string_view path);

// The size in bytes of an open regular file; nothing for anything else.
std::optional<std::size_t> SizeOfRegularFile(const Descriptor& file);

// As read(2), but goes on after a signal.
ssize_t ReadSome(int descriptor, char* buffer, std::size_t size);

// The content of a file that is only looked at, and not written back. Takes a read that comes back short for the end of
// the file, so that a small one, as nearly all are, costs a single read.
std::optional<std::string> ReadToLookAt(const std::string& path);

// What a link leads to; empty for what is no link.
std::string LinkTarget(const std::string& native);

// Leaves the error in errno, for whoever tells why something failed; gives false.
bool FailWith(int error);

bool WriteAll(int descriptor, std::string_view content);

// The folder part with its separator; empty for a bare name.
std::string FolderOf(const std::string& native);

// A hidden name in the same folder, always the same for one file, so that what a crash leaves is used up by the next
// write.
std::string TemporaryNameFor(const std::string& native);

// True when the file or folder has reached the disk.
bool FlushToDisk(const std::string& native);

}  // namespace win
