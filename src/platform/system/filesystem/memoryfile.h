#pragma once

#include "platform/system/filesystem/filesystem.h"

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace win {

// A regular file that lives in memory, whatever names it has. Its readers see what is appended while they read.
struct MemoryFile {
  std::string content;
  mode_t permissions = 0;
  timespec modified = {};
  FileIdentity identity;

  FileStatus Status() const {
    return {FileStatus::Kind::kFile, permissions, content.size(), geteuid(), modified, identity};
  }
};

class MemoryReader : public ReadableFile {
 public:
  explicit MemoryReader(std::shared_ptr<const MemoryFile> file) : file_(std::move(file)) {}

  ssize_t Read(char* buffer, std::size_t size) override {
    const std::size_t next = std::min(next_, file_->content.size());
    const std::size_t count = file_->content.copy(buffer, size, next);
    next_ = next + count;
    return static_cast<ssize_t>(count);
  }
  bool Status(FileStatus& status) override {
    status = file_->Status();
    return true;
  }

 private:
  std::shared_ptr<const MemoryFile> file_;
  std::size_t next_ = 0;
};

class MemoryWriter : public WritableFile {
 public:
  explicit MemoryWriter(std::shared_ptr<MemoryFile> file) : file_(std::move(file)) {}

  bool Append(std::string_view content) override {
    file_->content += content;
    return true;
  }
  bool Sync() override { return true; }
  bool Close() override { return true; }

 private:
  std::shared_ptr<MemoryFile> file_;
};

}  // namespace win
