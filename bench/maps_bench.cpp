// Loading the map catalogue of an install of 10,000 maps in 50,000 files, half of the maps without an .inf beside them.
// Floors: one walk of the tree, and one plain read of each .inf.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "installs/installlist.h"
#include "maps/maplist.h"
#include "platform/system/program.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFolders = 100;
constexpr int kMapsPerFolder = 100;

void WriteFile(const fs::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

std::string InfOf(const std::string& map) {
  return "[DESCRIPTION]\r\nmissionName = \"The map " + map + "\" // shown in the shell\r\nmapDesc = \"" + map +
         ".odf\"\r\nmapTga = \"" + map + ".bmp\"\r\n\r\n[NetVars]\r\nsvar1 = \"" + map +
         "\"\r\nsvar7 = \"dm\"\r\nivar3 = 1\r\nivar5 = 1\r\nivar7 = 2\r\nivar12 = 0\r\n";
}

// Made once and removed at the end of the program.
class Install {
 public:
  Install() {
    std::string pattern = (fs::temp_directory_path() / "varnik-bench-XXXXXX").string();
    root_ = mkdtemp(pattern.data());
    setenv("XDG_CONFIG_HOME", (root_ / "config").c_str(), 1);
    win::SetProgram({"varnik", "Varnik", ""});
    for (int folder = 0; folder < kFolders; ++folder)
      Fill(std::to_string(folder));
  }
  ~Install() { fs::remove_all(root_); }

  fs::path Game() const { return root_ / "game"; }
  std::string Text() const { return Game().string() + "\\"; }
  const std::vector<fs::path>& Infs() const { return infs_; }

 private:
  void Fill(const std::string& folder) {
    const fs::path maps = Game() / "addon/missions/multiplayer" / folder;
    const fs::path elsewhere = Game() / "addon/infs" / folder;
    fs::create_directories(maps);
    fs::create_directories(elsewhere);
    for (int i = 0; i < kMapsPerFolder; ++i) {
      const std::string map = "map" + folder + "x" + std::to_string(i);
      for (const char* const extension : {".bzn", ".odf", ".bmp", ".ter"})
        WriteFile(maps / (map + extension), "");
      infs_.push_back((i % 2 == 0 ? maps : elsewhere) / (map + ".inf"));
      WriteFile(infs_.back(), InfOf(map));
    }
  }

  fs::path root_;
  std::vector<fs::path> infs_;
};

const Install& TheInstall() {
  static const Install install;
  return install;
}

void WalkTree(benchmark::State& state) {
  for (auto _ : state) {
    std::size_t entries = 0;
    for (const auto& entry : fs::recursive_directory_iterator(TheInstall().Game()))
      entries += entry.path().native().size();
    benchmark::DoNotOptimize(entries);
  }
}
BENCHMARK(WalkTree)->Unit(benchmark::kMillisecond);

void ReadInfs(benchmark::State& state) {
  char buffer[4096];
  for (auto _ : state)
    for (const fs::path& inf : TheInstall().Infs()) {
      const int file = open(inf.c_str(), O_RDONLY | O_CLOEXEC);
      while (read(file, buffer, sizeof buffer) > 0) {
      }
      close(file);
    }
}
BENCHMARK(ReadInfs)->Unit(benchmark::kMillisecond);

void Load(benchmark::State& state, bool rescan) {
  varnik::UseInstallFolder(TheInstall().Text());
  varnik::LoadMapList(true);
  for (auto _ : state)
    varnik::LoadMapList(rescan);
  if (varnik::MapList.size() != 1 + kFolders * kMapsPerFolder) state.SkipWithError("maps are missing");
}
BENCHMARK_CAPTURE(Load, Scan, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Load, Cache, false)->Unit(benchmark::kMillisecond);

}  // namespace
