#pragma once

#include <sys/stat.h>

#include <string>

namespace win {

// The calls of the operating system through which this layer looks at the disk and changes it, on native paths. They
// answer as the system does: -1 with errno set when they fail.
class Disk {
 public:
  Disk() = default;
  virtual ~Disk() = default;
  Disk(const Disk&) = delete;
  Disk& operator=(const Disk&) = delete;

  virtual int Stat(const std::string& native, struct stat& status) = 0;
  virtual int LinkStat(const std::string& native, struct stat& status) = 0;
  virtual std::string ReadLink(const std::string& native) = 0;  // empty for what is no link
  virtual int Open(const std::string& native, int flags, mode_t mode) = 0;
  virtual int Rename(const std::string& from, const std::string& to, unsigned flags) = 0;  // flags of renameat2
  virtual int Unlink(const std::string& native) = 0;
  virtual int MakeFolder(const std::string& native, mode_t mode) = 0;
  virtual int RemoveFolder(const std::string& native) = 0;
  virtual int ChangeMode(const std::string& native, mode_t mode) = 0;
};

// The disk itself, or the picture of it that a rehearsal has put in its place. For one thread.
Disk& TheDisk();

}  // namespace win
