#include "platform/system/filesystem/disk.h"

#include "platform/system/filesystem/diskpicture.h"
#include "platform/system/filesystem/nativefile.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

namespace win {

namespace {

class RealDisk : public Disk {
 public:
  int Stat(const std::string& native, struct stat& status) override { return stat(native.c_str(), &status); }
  int LinkStat(const std::string& native, struct stat& status) override { return lstat(native.c_str(), &status); }
  std::string ReadLink(const std::string& native) override { return LinkTarget(native); }
  int Open(const std::string& native, int flags, mode_t mode) override { return open(native.c_str(), flags, mode); }
  int Rename(const std::string& from, const std::string& to, unsigned flags) override {
    if (flags == 0) return rename(from.c_str(), to.c_str());
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags);
  }
  int Unlink(const std::string& native) override { return unlink(native.c_str()); }
  int MakeFolder(const std::string& native, mode_t mode) override { return mkdir(native.c_str(), mode); }
  int RemoveFolder(const std::string& native) override { return rmdir(native.c_str()); }
  int ChangeMode(const std::string& native, mode_t mode) override { return chmod(native.c_str(), mode); }
};

}  // namespace

Disk& TheDisk() {
  static RealDisk real;
  DiskPicture* const picture = DiskPicture::InUse();
  return picture != nullptr ? static_cast<Disk&>(*picture) : real;
}

}  // namespace win
