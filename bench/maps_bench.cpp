#include "bench/folders.h"
#include "installs/installlist.h"
#include "maps/maplist.h"
#include "platform/system/paths/program.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <vector>

// Loading the catalogue of an install of 10,000 maps in 50,000 files, half of the maps with their .inf in another
// folder, beside the floors: one walk of the tree, and one plain read of each .inf.
namespace {

constexpr int kFolders = 100;
constexpr int kMapsInEach = 100;

std::string InfOf(const std::string& map) {
  return "[DESCRIPTION]\r\nmissionName = \"The map " + map + "\" // as the shell shows it\r\nmapDesc = \"" + map +
         ".odf\"\r\nmapTga = \"" + map + ".bmp\"\r\n\r\n[NetVars]\r\nsvar1 = \"" + map +
         "\"\r\nsvar7 = \"dm\"\r\nivar3 = 1\r\nivar5 = 1\r\nivar7 = 2\r\nivar12 = 0\r\n";
}

class Install {
 public:
  Install() {
    setenv("XDG_CONFIG_HOME", (folder_.Path() / "config").c_str(), 1);
    win::SetProgram({"varnik", "Varnik", ""});
    for (int i = 0; i < kFolders; ++i)
      Fill(std::to_string(i));
    varnik::UseInstallFolder(Game().string());
    varnik::LoadMapList(true);
  }

  std::filesystem::path Game() const { return folder_.Path() / "game"; }
  const std::vector<std::string>& Infs() const { return infs_; }

 private:
  void Fill(const std::string& folder) {
    const auto maps = Game() / "addon/missions/multiplayer" / folder;
    const auto elsewhere = Game() / "addon/infs" / folder;
    std::filesystem::create_directories(maps);
    std::filesystem::create_directories(elsewhere);
    for (int i = 0; i < kMapsInEach; ++i) {
      const std::string map = "map" + folder + "x" + std::to_string(i);
      for (const char* const extension : {".bzn", ".odf", ".bmp", ".ter"})
        std::ofstream(maps / (map + extension));
      infs_.push_back((i % 2 == 0 ? maps : elsewhere) / (map + ".inf"));
      std::ofstream(infs_.back()) << InfOf(map);
    }
  }

  bench::TemporaryFolder folder_;
  std::vector<std::string> infs_;
};

const Install& TheInstall() {
  static const Install install;
  return install;
}

void Walk(benchmark::State& state) {
  const std::string folder = TheInstall().Game().string();
  int files = 0;
  for (auto _ : state)
    bench::BareWalk(folder, files, nullptr);
  benchmark::DoNotOptimize(files);
}

void ReadInfs(benchmark::State& state) {
  char buffer[4096];
  const std::vector<std::string>& infs = TheInstall().Infs();
  for (auto _ : state)
    for (const std::string& inf : infs) {
      const int file = open(inf.c_str(), O_RDONLY | O_CLOEXEC);
      while (read(file, buffer, sizeof buffer) > 0) {
      }
      close(file);
    }
}

void Load(benchmark::State& state, bool rescan) {
  const std::size_t rows = TheInstall().Infs().size() + 1;
  for (auto _ : state)
    varnik::LoadMapList(rescan);
  if (varnik::MapList.size() != rows) state.SkipWithError("maps are missing");
}

BENCHMARK(Walk)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadInfs)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Load, scan, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Load, cache, false)->Unit(benchmark::kMillisecond);

}  // namespace
