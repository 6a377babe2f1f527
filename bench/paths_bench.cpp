#include "bench/folders.h"
#include "platform/system/files/files.h"
#include "platform/system/paths/paths.h"

#include <benchmark/benchmark.h>

#include <vector>

// Look-ups whose names are spelled in another case than on disk, beside the same look-ups spelled exactly, in a folder
// of 50,000 files. Each row is 10,000 look-ups.
namespace {

constexpr int kFiles = 50'000;
constexpr int kLookUps = 10'000;

const bench::TemporaryFolder& Install() {
  static const bench::TemporaryFolder folder;
  static const bool filled = (folder.Fill("Addon", kFiles), true);
  benchmark::DoNotOptimize(filled);
  return folder;
}

std::vector<std::string> Paths(const char* folder, const char* stem) {
  std::vector<std::string> paths;
  for (int i = 0; i < kLookUps; ++i)
    paths.push_back(Install().Path().string() + "\\" + folder + "\\" + bench::TemporaryFolder::FileName(stem, i));
  return paths;
}

void LookUp(benchmark::State& state, const char* folder, const char* stem) {
  const std::vector<std::string> paths = Paths(folder, stem);
  for (auto _ : state)
    for (const std::string& path : paths)
      benchmark::DoNotOptimize(win::NativePath(path));
}

// Renames there and back in the large folder, which the layer must first search for the new name in any case.
void Rename(benchmark::State& state, bool (*rename)(const std::string&, const std::string&)) {
  const std::string folder = Install().Path().string() + "/Addon/";
  for (auto _ : state)
    for (int i = 0; i < 100; ++i) {
      const std::string file = folder + bench::TemporaryFolder::FileName("Map", i);
      benchmark::DoNotOptimize(rename(file, file + ".bak") && rename(file + ".bak", file));
    }
}

bool PlainRename(const std::string& from, const std::string& to) { return std::rename(from.c_str(), to.c_str()) == 0; }

BENCHMARK_CAPTURE(LookUp, exact, "Addon", "Map")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LookUp, file_in_other_case, "Addon", "MAP")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LookUp, folder_in_other_case, "ADDON", "Map")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LookUp, both_in_other_case, "addon", "map")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LookUp, missing, "Addon", "None")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Rename, plain, PlainRename)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Rename, layer, win::RenameFile)->Unit(benchmark::kMillisecond);

}  // namespace
