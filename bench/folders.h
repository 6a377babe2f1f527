#pragma once

#include <dirent.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

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

// Every file below a folder, by readdir alone. `paths` may be null.
inline void BareWalk(const std::string& folder, int& files, std::vector<std::string>* paths) {
  DIR* const stream = opendir(folder.c_str());
  while (const dirent* const entry = readdir(stream)) {
    if (entry->d_type == DT_DIR) {
      if (entry->d_name[0] != '.') BareWalk(folder + "/" + entry->d_name, files, paths);
      continue;
    }
    ++files;
    if (paths != nullptr) paths->push_back(folder + "/" + entry->d_name);
  }
  closedir(stream);
}

}  // namespace bench
