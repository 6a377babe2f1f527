#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string_view>
#include <utility>

namespace win {

// Owns a file descriptor of the operating system.
class Descriptor {
 public:
  explicit Descriptor(int descriptor = -1) : descriptor_(descriptor) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : descriptor_(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }

  bool IsOpen() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }
  int Release() { return std::exchange(descriptor_, -1); }

  // False with errno set when the system reports that something written is lost. Closing twice is a no-op.
  bool Close();

 private:
  int descriptor_;
};

// As read(2), but goes on after a signal.
ssize_t ReadSome(int descriptor, char* buffer, std::size_t size);

bool WriteAll(int descriptor, std::string_view content);

// Takes the exclusive lock of an open file, or returns false with EWOULDBLOCK when another open file holds it. True
// without a lock where the file system has none.
bool LockUnlessHeld(int descriptor);

}  // namespace win
