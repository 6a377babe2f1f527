#include "platform/system/filesystem/descriptor.h"

#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace win {

bool Descriptor::Close() { return !IsOpen() || close(Release()) == 0; }

ssize_t ReadSome(int descriptor, char* buffer, std::size_t size) {
  ssize_t count = 0;
  do
    count = read(descriptor, buffer, size);
  while (count < 0 && errno == EINTR);
  return count;
}

bool WriteAll(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t count = write(descriptor, content.data(), content.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool LockUnlessHeld(int descriptor) {
  int result = 0;
  do
    result = flock(descriptor, LOCK_EX | LOCK_NB);
  while (result != 0 && errno == EINTR);
  return result == 0 || errno != EWOULDBLOCK;
}

}  // namespace win
