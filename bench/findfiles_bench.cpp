#include "bench/folders.h"
#include "platform/system/process/services.h"
#include "support/modfindfile.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <vector>

// The recursive search over 100,000 files in 100 folders, beside a bare walk of the same tree. `peak_bytes` is the most
// memory that the search held when it entered a folder.
namespace {

constexpr int kFolders = 100;
constexpr int kFilesInEach = 1'000;

const bench::TemporaryFolder& Tree() {
  static const bench::TemporaryFolder tree;
  static const bool filled = [] {
    for (int i = 0; i < kFolders; ++i)
      tree.Fill("Addon/Folder" + std::to_string(i), kFilesInEach);
    return true;
  }();
  benchmark::DoNotOptimize(filled);
  return tree;
}

void Bare(benchmark::State& state, bool keepPaths) {
  const std::string folder = Tree().Path().string();
  for (auto _ : state) {
    std::vector<std::string> paths;
    int files = 0;
    bench::BareWalk(folder, files, keepPaths ? &paths : nullptr);
    benchmark::DoNotOptimize(files);
  }
}

std::int32_t Find(const char* pattern) {
  varnik::FileSearchParams params;
  params.Recurse = true;
  params.Pattern = pattern;
  varnik::FileSearchResults results;
  varnik::FindFiles(Tree().Path().string() + "\\", params, results, false);
  return params.FoundCount;
}

std::size_t PeakBytes(const char* pattern) {
  const std::size_t before = mallinfo2().uordblks;
  std::size_t peak = before;
  win::SetWindowServices({[&peak] { peak = std::max(peak, mallinfo2().uordblks); }, {}, {}});
  Find(pattern);
  win::SetWindowServices({});
  return peak - before;
}

void Search(benchmark::State& state, const char* pattern) {
  std::int32_t found = 0;
  for (auto _ : state)
    found = Find(pattern);
  state.counters["found"] = found;
  state.counters["peak_bytes"] = static_cast<double>(PeakBytes(pattern));
}

BENCHMARK_CAPTURE(Bare, counting, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Bare, keeping_paths, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, none, "*.bzm")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, one_in_ten, "*0.bzn")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, all, "*.bzn")->Unit(benchmark::kMillisecond);

}  // namespace
