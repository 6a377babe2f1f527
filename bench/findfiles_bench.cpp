#include <benchmark/benchmark.h>
#include <dirent.h>
#include <malloc.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "bench/folders.h"
#include "support/modfindfile.h"

// The recursive search over 100,000 files in 100 folders, beside a bare walk of the same tree. `peak_bytes` is the most
// memory that one search held at a time, the system's own folder buffers excepted.
namespace {

std::size_t live = 0;
std::size_t peak = 0;

}  // namespace

void* operator new(std::size_t size) {
  void* const block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  live += malloc_usable_size(block);
  peak = std::max(peak, live);
  return block;
}

void operator delete(void* block) noexcept {
  live -= malloc_usable_size(block);
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  operator delete(block);
}

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

int BareWalk(const std::string& folder) {
  int files = 0;
  DIR* const stream = opendir(folder.c_str());
  while (const dirent* const entry = readdir(stream)) {
    if (entry->d_type != DT_DIR)
      ++files;
    else if (entry->d_name[0] != '.')
      files += BareWalk(folder + "/" + entry->d_name);
  }
  closedir(stream);
  return files;
}

void Bare(benchmark::State& state) {
  const std::string folder = Tree().Path().string();
  for (auto _ : state)
    benchmark::DoNotOptimize(BareWalk(folder));
}

void Search(benchmark::State& state, const char* pattern) {
  const std::string folder = Tree().Path().string() + "\\";
  const std::size_t before = live;
  peak = live;
  std::int32_t found = 0;
  for (auto _ : state) {
    varnik::FileSearchParams params;
    params.Recurse = true;
    params.Pattern = pattern;
    varnik::FileSearchResults results;
    varnik::FindFiles(folder, params, results, false);
    found = params.FoundCount;
  }
  state.counters["found"] = found;
  state.counters["peak_bytes"] = static_cast<double>(peak - before);
}

BENCHMARK(Bare)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, none, "*.bzm")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, one_in_ten, "*0.bzn")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, all, "*.bzn")->Unit(benchmark::kMillisecond);

}  // namespace
