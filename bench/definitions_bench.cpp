#include "editor/definitiondraft.h"
#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "platform/system/files/lines.h"
#include "platform/system/paths/program.h"
#include "support/runstate.h"

#include <benchmark/benchmark.h>

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

// Definitions far longer than any honest one: the reader of the older format and the editor beside the bare reading of
// the same lines. Times per line must not grow with the number of lines, nor the time of one edit.
namespace {

namespace fs = std::filesystem;

class Folder {
 public:
  Folder() {
    std::string pattern = (fs::temp_directory_path() / "varnik-bench-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
    setenv("XDG_CONFIG_HOME", path_.c_str(), 1);
    win::SetProgram({"varnik", "Varnik", ""});
    varnik::AppPath = path_.string() + "/app/";
    varnik::ShowOldMods = true;
    varnik::UseInstallFolder(path_.string());
  }
  ~Folder() { fs::remove_all(path_); }

  std::string Define(int lines) const {
    const std::string file = path_ / "mod.bzm";
    std::ofstream text(file, std::ios::binary);
    text << "BZ2HALD2\r\ndesc Long\r\n\r\n\r\n\r\ndynamic\r\n";
    for (int i = 0; i < lines; i += 2)
      text << "replace @rootdir\\data\\file" << i << ".odf, @rootdir\\mods\\other.odf // why\r\nfold @rootdir\\mods\\f"
           << i << "\r\n";
    return file;
  }

 private:
  fs::path path_;
};

const Folder& TheFolder() {
  static const Folder folder;
  return folder;
}

void ReadLines(benchmark::State& state) {
  const std::string path = TheFolder().Define(static_cast<int>(state.range(0)));
  for (auto _ : state)
    for (win::LineReader file(path); !file.AtEnd();)
      benchmark::DoNotOptimize(file.ReadLine());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void LoadLegacyDefinition(benchmark::State& state) {
  const std::string path = TheFolder().Define(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    varnik::ClearModList();
    varnik::LoadModFile(path);
  }
  if (varnik::ModList.back().Renames.size() != static_cast<std::size_t>(state.range(0)) + 1)
    state.SkipWithError("the definition was not read to its end");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void OpenInEditor(benchmark::State& state) {
  const std::string path = TheFolder().Define(static_cast<int>(state.range(0)));
  varnik::DefinitionDraft draft;
  for (auto _ : state)
    benchmark::DoNotOptimize(draft.Load(path));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void EditOneRow(benchmark::State& state) {
  varnik::DefinitionDraft draft;
  if (!draft.Load(TheFolder().Define(static_cast<int>(state.range(0))))) state.SkipWithError("not read");
  draft.AddRow();
  draft.ChangeDirective(1);
  for (auto _ : state)
    draft.ChangePart(0, "some.bzm");
}

BENCHMARK(ReadLines)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadLegacyDefinition)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenInEditor)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(EditOneRow)->Arg(10'000)->Arg(100'000);

}  // namespace
