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
// beside the same load with nobody told; and going down a list of maps with pictures by the cursor key, a row after the
// other is shown, of which the page's timer takes 10 ms. `peak_MiB` is the most memory that load and page have taken
// above an empty window.
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

// A BMP of 24 bits, 512 by 512 as the game's own map pictures.
std::string MapPicture() {
  constexpr int kSide = 512, kBytes = kSide * kSide * 3;
  std::string file(54 + kBytes, '\0');
  const std::uint32_t head[] = {54 + kBytes, 0, 54, 40, kSide, kSide, 24 << 16 | 1};
  file.replace(0, 2, "BM");
  file.replace(2, sizeof head, reinterpret_cast<const char*>(head), sizeof head);
  for (int i = 0; i < kBytes; ++i)
    file[54 + i] = static_cast<char>(i * 7 ^ i >> 9);
  return file;
}

// Maps with a picture each.
void AddMapFiles(const bench::TemporaryFolder& folder, long rows) {
  const std::string picture = MapPicture();
  std::filesystem::create_directories(folder.Path() / "addon/maps");
  for (long i = 0; i < rows; ++i) {
    const std::string name = (folder.Path() / "addon/maps/Map ").string() + std::to_string(i) + " of many.";
    std::ofstream(name + "inf") << "[DESCRIPTION]\r\nmissionName = \"Map " << i << "\"\r\n";
    std::ofstream(name + "bmp") << picture;
  }
}

// An install with so many maps, and a window on it.
struct World {
  explicit World(long rows, bool withFiles = false) {
    if (withFiles) AddMapFiles(folder, rows);
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

void BrowsePictures(benchmark::State& state) {
  const World world(state.range(0), true);
  varnik::FrmMap& page = world.window->page;
  page.LoadMaps(false);
  page.PopulateMapList(0, varnik::kAllSubTypes);
  for (auto _ : state)
    for (int row = 1; row < page.lstmap.ListCount(); ++row) {
      page.lstmap.SetListIndex(row);
      while (page.tmrMap.Enabled())
        win::DoEvents();
    }
  const win::Picture shown = page.imgmap.Shown();
  if (shown.Pixel(100, 100) == shown.Pixel(101, 100)) state.SkipWithError("no picture");
  state.counters["ms_a_row"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)) / 1000,
                                                  benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK(FillPage)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadTellingNobody)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadBehindBusyWindow)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BrowsePictures)->Arg(120)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
