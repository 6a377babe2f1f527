#pragma once

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/overlayfilesystem.h"

#include <cerrno>
#include <memory>
#include <string>

namespace test {

// The current file system with changes in memory, while alive. Read `n` of the file of this name, counted from 1 over
// all times that it is opened, fails as on a bad disk.
class FailingReads : public win::OverlayFileSystem {
 public:
  FailingReads(std::string name, int n)
      : OverlayFileSystem(win::CurrentFileSystem()), name_(std::move(name)), left_(n), scope_(*this) {}

  bool HasFailed() const { return left_ <= 0; }

  std::unique_ptr<win::ReadableFile> OpenForReading(const std::string& path) override {
    auto file = OverlayFileSystem::OpenForReading(path);
    return file && path.ends_with("/" + name_) ? std::make_unique<File>(std::move(file), left_) : std::move(file);
  }

 private:
  struct File : win::ReadableFile {
    File(std::unique_ptr<win::ReadableFile> opened, int& count) : file(std::move(opened)), left(count) {}
    ssize_t Read(char* buffer, std::size_t size) override {
      if (--left != 0) return file->Read(buffer, size);
      errno = EIO;
      return -1;
    }
    bool Status(win::FileStatus& status) override { return file->Status(status); }
    std::unique_ptr<win::ReadableFile> file;
    int& left;
  };
  std::string name_;
  int left_;
  win::ScopedFileSystem scope_;
};

}  // namespace test
