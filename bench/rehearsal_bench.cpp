#include "bench/install.h"
#include "modengine/activation.h"
#include "modengine/applymod.h"
#include "modengine/deactivation.h"
#include "platform/system/files/rehearsal.h"
#include "support/modfindfile.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <optional>

// What comes on top of both passes of a mod: activated and deactivated as it is, with a rehearsal of both ahead, and as
// a player gets it, with a journal.
namespace {

namespace fs = std::filesystem;
using bench::Install;
using bench::Number;
using bench::Write;

constexpr int kFilesOfLargeInstall = 50'000;
constexpr int kFolders = 100;

// Of ten lines six are renames, two replacements, one an entry of the recycler list, one of the configuration.
std::string Definition(int lines) {
  std::string text = "BZ2HALD5\r\n";
  for (int i = 0; i < lines; ++i) {
    const std::string file = "file" + Number(i) + ".odf";
    const int kind = i % 10;
    if (kind < 6)
      text += "rename(" + file + ",hidden\\" + file + ");\r\n";
    else if (kind < 8)
      text += "replace(" + file + ",new\\" + file + ",hidden\\kept" + file + ");\r\n";
    else if (kind == 8)
      text += "addrecy(name" + Number(i) + ",line);\r\n";
    else
      text += (i % 20 == 9 ? "fold(mods\\" : "pak(") + Number(i) + ");\r\n";
  }
  return text;
}

Install& InstallFor(int lines) {
  static std::map<int, std::unique_ptr<Install>> installs;
  std::unique_ptr<Install>& install = installs[lines];
  if (install != nullptr) return varnik::UseInstallFolder(install->Text()), *install;
  install = std::make_unique<Install>(lines);
  fs::create_directory(install->Root() / "new");
  for (int i = 0; i < lines; ++i)
    Write(install->Root() / "new" / ("file" + Number(i) + ".odf"), "");
  Write(install->Root() / "RecyList.txt", "own line\r\n");
  Write(install->Root() / "mod.bzm", Definition(lines));
  varnik::UseInstallFolder(install->Text());
  return *install;
}

// Ten lines, one of which has the preferences searched for in all folders.
Install& LargeInstall() {
  static Install install(10);
  static const bool filled = [] {
    Write(install.Root() / "mod.bzm", Definition(10) + "defaultname(Mine);\r\n");
    fs::create_directories(install.Root() / "addon");
    fs::create_directory(install.Root() / "new");
    Write(install.Root() / "addon" / "localize.odf", "[Network]\r\nVersionStr = \"1.3\"\r\n");
    for (int i = 0; i < kFilesOfLargeInstall; ++i) {
      const fs::path folder = install.Root() / "addon" / Number(i % kFolders);
      fs::create_directories(folder);
      Write(folder / ("file" + Number(i)), "");
    }
    Write(install.Root() / "addon" / Number(kFolders - 1) / "gameprefs.ini", "[UserPrefs]\r\nDefaultSessionName=x\r\n");
    return true;
  }();
  benchmark::DoNotOptimize(filled);
  varnik::UseInstallFolder(install.Text());
  return install;
}

bool BothPasses(const Install& install) {
  const std::string mod = install.Text() + "mod.bzm";
  return varnik::ActivateMod(mod) && varnik::DeactivateMod(mod, install.Text());
}

bool WithJournal(const Install& install) {
  const std::string mod = install.Text() + "mod.bzm";
  const varnik::ApplyResult applied = varnik::ApplyMod(mod, false);
  const varnik::RevertResult reverted = varnik::RevertMod(mod, install.Text(), false);
  return applied.active && applied.failed.empty() && reverted.end == varnik::RevertResult::End::kDone &&
         reverted.failed.empty();
}

enum Rehearse : std::int64_t { kNo, kAhead, kOnly, kJournal };

void Run(benchmark::State& state, const Install& install, std::int64_t rehearse) {
  for (auto _ : state) {
    if (rehearse == kJournal) {
      if (!WithJournal(install)) state.SkipWithError("not run");
      continue;
    }
    if (rehearse != kNo) {
      win::Rehearsal rehearsal;
      if (!BothPasses(install)) state.SkipWithError("not rehearsed");
    }
    if (rehearse != kOnly && !BothPasses(install)) state.SkipWithError("not run");
  }
}

void Lines(benchmark::State& state) { Run(state, InstallFor(static_cast<int>(state.range(0))), state.range(1)); }
BENCHMARK(Lines)
    ->ArgNames({"lines", "rehearse"})
    ->ArgsProduct({{10, 1'000, 10'000}, {kNo, kAhead, kOnly, kJournal}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void TenLinesInFiftyThousandFiles(benchmark::State& state) { Run(state, LargeInstall(), state.range(0)); }
BENCHMARK(TenLinesInFiftyThousandFiles)
    ->ArgName("rehearse")
    ->DenseRange(kNo, kJournal)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The search alone: on the disk, in a rehearsal, and in one that has changed something in the folder searched.
void Search(benchmark::State& state) {
  const Install& install = LargeInstall();
  std::optional<win::Rehearsal> rehearsal;
  if (state.range(0) > 0) rehearsal.emplace();
  if (state.range(0) > 1) varnik::ActivateMod(install.Text() + "mod.bzm");
  for (auto _ : state)
    benchmark::DoNotOptimize(varnik::FindFirstFile(install.Text(), "no such file"));
}
BENCHMARK(Search)->ArgName("rehearse")->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
