#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <optional>

#include "bench/folders.h"
#include "installs/installlist.h"
#include "maps/frmmap.h"
#include "maps/maplist.h"
#include "modengine/catalogue.h"
#include "platform/system/program.h"
#include "platform/windowing/application.h"
#include "platform/windowing/form.h"

// Filling the page of all maps, by the number of its rows. `peak_MiB` is the most memory that loading the catalogue and
// filling the page has taken above an empty window.
namespace {

struct Window : win::Form {
  Window() : Form("frmMain", 9000, 6000), page(*this, Host()) {}

  static varnik::MapPageHost Host() {
    varnik::MapPageHost host;
    host.markMaps = [](bool) {};
    host.setMapName = [](const std::string&) {};
    host.busy = {[] {}, [](const std::string&) {}, [] {}, [] { return false; }};
    return host;
  }

  varnik::FrmMap page;
};

long PeakKib() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmHWM:")) return std::stol(line.substr(6));
  return 0;
}

// A cache of maps without files, whose rows take their titles from their names.
void MakeInstall(const bench::TemporaryFolder& folder, long rows) {
  setenv("XDG_CONFIG_HOME", (folder.Path() / "config").c_str(), 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  win::SetProgram({"varnik", "Varnik", ""});
  std::ofstream cache(folder.Path() / "varnik.lst");
  for (long i = 0; i < rows; ++i)
    cache << "addon\\maps\\"
          << "Map " << i * 7919 % rows << " of many.inf,\r\n";
  cache.close();
  varnik::UseInstallFolder(folder.Path().string());
  varnik::SelectModFolders(-1);
}

void FillPage(benchmark::State& state) {
  const bench::TemporaryFolder folder;
  MakeInstall(folder, state.range(0));
  static std::optional<win::Application> application;
  if (!application) application.emplace();
  Window window;
  window.Show();
  const long before = PeakKib();
  window.page.LoadMaps(false);
  for (auto _ : state)
    window.page.PopulateMapList(0, varnik::kAllSubTypes);
  if (window.page.lstmap.ListCount() != state.range(0) + 1) state.SkipWithError("rows are missing");
  state.counters["peak_MiB"] = static_cast<double>(PeakKib() - before) / 1024;
  window.page.ClearMaps();
}

BENCHMARK(FillPage)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace
