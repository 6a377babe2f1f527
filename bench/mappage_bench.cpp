#include "bench/folders.h"
#include "installs/installlist.h"
#include "maps/maplist.h"
#include "maps/ui/frmmap.h"
#include "modengine/catalogue.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/services.h"
#include "windowing/application.h"
#include "windowing/form.h"
#include "windowing/label.h"

#include <benchmark/benchmark.h>

#include <stdlib.h>

#include <algorithm>
#include <map>
#include <memory>

// Filling the page of all maps, by the number of its rows, and loading the catalogue behind a busy window that counts,
// beside the same load with nobody told. `peak_MiB` is the most memory that load and page have taken above an empty
// window.
namespace {

struct BusyForm : win::Form {
  BusyForm() : Form("frmSplash", 6600, 2880) { lblstatus.Move(1920, 1560, 4440, 300); }
  win::Label lblstatus{*this, "lblstatus"};
};

struct Window : win::Form {
  Window() : Form("frmMain", 9000, 6000), page(*this, Host()) {}

  varnik::MapPageHost Host() {
    varnik::MapPageHost host;
    host.markMaps = [](bool) {};
    host.setMapName = [](const std::string&) {};
    host.busy.begin = [this] { busy.Show(this); };
    host.busy.setStatus = [this](const std::string& text) { busy.lblstatus.SetCaption(text); };
    host.busy.end = [this] { busy.Close(); };
    return host;
  }

  BusyForm busy;
  varnik::FrmMap page;
};

long Kibibytes(const char* field) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(field)) return std::stol(line.substr(line.find(':') + 1));
  return 0;
}

// A cache of maps without files, whose rows take their titles from their names.
void MakeInstall(const bench::TemporaryFolder& folder, long rows) {
  std::ofstream cache(folder.Path() / "varnik.lst");
  for (long i = 0; i < rows; ++i)
    cache << "addon\\maps\\"
          << "Map " << i * 7919 % rows << " of many.inf,\r\n";
  cache.close();
  varnik::UseInstallFolder(folder.Path().string());
  varnik::SelectModFolders(-1);
}

// An install with so many maps, and a window on it.
struct World {
  explicit World(long rows) {
    MakeInstall(folder, rows);
    setenv("XDG_CONFIG_HOME", (folder.Path() / "config").c_str(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    win::SetProgram({"varnik", "Varnik", ""});
    static auto* const application = new win::Application;  // stays to the end of the process
    benchmark::DoNotOptimize(application);
    window = std::make_unique<Window>();
    window->Show();
    win::DoEvents();
  }
  ~World() { window->page.ClearMaps(); }

  bench::TemporaryFolder folder;
  std::unique_ptr<Window> window;
};

void FillPage(benchmark::State& state) {
  const World world(state.range(0));
  const long before = Kibibytes("VmRSS");
  world.window->page.LoadMaps(false);
  for (auto _ : state)
    world.window->page.PopulateMapList(0, varnik::kAllSubTypes);
  if (world.window->page.lstmap.ListCount() != state.range(0) + 1) state.SkipWithError("rows are missing");
  // Later rounds find the memory of the first.
  static std::map<long, double> peaks;
  double& peak = peaks[state.range(0)];
  peak = std::max(peak, static_cast<double>(Kibibytes("VmHWM") - before) / 1024);
  state.counters["peak_MiB"] = peak;
}

void LoadTellingNobody(benchmark::State& state) {
  const World world(state.range(0));
  for (auto _ : state)
    varnik::LoadMapList(false);
}

void LoadBehindBusyWindow(benchmark::State& state) {
  const World world(state.range(0));
  for (auto _ : state)
    world.window->page.LoadMaps(false);
}

BENCHMARK(FillPage)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadTellingNobody)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadBehindBusyWindow)->Arg(10'000)->Unit(benchmark::kMillisecond);

}  // namespace
