#pragma once

#include "installs/installlist.h"
#include "platform/system/paths/program.h"
#include "support/runstate.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace bench {

inline void Write(const std::filesystem::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

inline std::string Number(int i) { return std::to_string(10'000 + i); }

// An install of this many files below the temporary folder, gone when the program ends.
class Install {
 public:
  explicit Install(int files) {
    std::string pattern = (std::filesystem::temp_directory_path() / "varnik-bench-XXXXXX").string();
    home_ = mkdtemp(pattern.data());
    root_ = home_ / "game";
    std::filesystem::create_directories(root_ / "hidden");
    std::filesystem::create_directories(home_ / "app" / "mods");
    setenv("HOME", home_.c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home_ / "config").c_str(), 1);
    win::SetProgram({"varnik", "Varnik", ""});
    varnik::AppPath = (home_ / "app").string() + "\\";
    for (int i = 0; i < files; ++i)
      Write(root_ / ("file" + Number(i) + ".odf"), "");
    for (const char* name : {"bzone.exe", "data.pak", "binkw32.dll", "bzone.cfg"})
      Write(root_ / name, "");
    varnik::UseInstallFolder(Text());
  }
  ~Install() { std::filesystem::remove_all(home_); }

  const std::filesystem::path& Root() const { return root_; }
  std::string Text() const { return root_.string() + "\\"; }

 private:
  std::filesystem::path home_, root_;
};

}  // namespace bench
