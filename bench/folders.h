#pragma once

#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

// A temporary folder for a benchmark, gone when it ends.
namespace bench {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "varnik-bench-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

  // Empty files `Map00000.bzn` and so on.
  void Fill(const std::string& folder, int count) const {
    std::filesystem::create_directories(path_ / folder);
    for (int i = 0; i < count; ++i)
      std::ofstream(path_ / folder / FileName("Map", i));
  }

  static std::string FileName(const char* stem, int number) {
    char name[64];
    std::snprintf(name, sizeof name, "%s%05d.bzn", stem, number);
    return name;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace bench
