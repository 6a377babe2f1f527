#include "bench/install.h"
#include "modengine/activation.h"
#include "modengine/catalogue.h"
#include "modengine/deactivation.h"

#include <benchmark/benchmark.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

// The mod engine beside what the file system itself costs: a catalogue beside listing the folder and reading its
// definitions, and a mod beside the bare system calls that its directives come to.
namespace {

namespace fs = std::filesystem;
using bench::Install;
using bench::Number;
using bench::Write;

constexpr int kFiles = 50'000;
constexpr int kDefinitions = 1'000;
constexpr int kDirectives = 1'000;

std::string SampleDefinition(int i) {
  std::string text = "BZ2HALD5\r\ndname(Mod " + Number(i) +
                     ");\r\nversion(1.0, 1.3);\r\ndescription(Tanks and maps.);\r\nimage(mod.bmp);\r\n";
  for (int line = 0; line < 10; ++line)
    text += "rename(addon\\file" + Number(line) + ".odf,addon\\other.odf); // x\r\n";
  return text + "fold(mods\\mod" + Number(i) + ");\r\n";
}

Install& LargeInstall() {
  static Install install(kFiles - kDefinitions);
  static const bool filled = [] {
    for (int i = 0; i < kDefinitions; ++i)
      Write(install.Root() / ("mod" + Number(i) + ".bzm"), SampleDefinition(i));
    return true;
  }();
  benchmark::DoNotOptimize(filled);
  varnik::UseInstallFolder(install.Text());
  return install;
}

std::size_t ReadPlainly(const std::string& path) {
  char buffer[64 * 1024];
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  std::size_t total = 0;
  for (ssize_t count; (count = read(file, buffer, sizeof buffer)) > 0;)
    total += static_cast<std::size_t>(count);
  close(file);
  return total;
}

void CatalogueFloor(benchmark::State& state) {
  const std::string folder = LargeInstall().Root().string();
  for (auto _ : state) {
    std::vector<std::string> definitions;
    DIR* const stream = opendir(folder.c_str());
    while (const dirent* const entry = readdir(stream))
      if (std::string_view(entry->d_name).ends_with(".bzm")) definitions.emplace_back(entry->d_name);
    closedir(stream);
    std::size_t total = 0;
    for (const std::string& name : definitions)
      total += ReadPlainly(folder + "/" + name);
    benchmark::DoNotOptimize(total);
  }
}
BENCHMARK(CatalogueFloor)->Unit(benchmark::kMillisecond);

void Catalogue(benchmark::State& state) {
  LargeInstall();
  for (auto _ : state) {
    varnik::LoadModList();
    if (varnik::ModList.size() != kDefinitions + 1) state.SkipWithError("the catalogue is not whole");
  }
}
BENCHMARK(Catalogue)->Unit(benchmark::kMillisecond);

// One mod of a thousand directives: mostly renames, some replacements, entries, marker files.
constexpr int kRenames = 848;
constexpr int kReplacements = 100;
constexpr int kFolders = 50;
constexpr int kMarkers = 2;
static_assert(kRenames + kReplacements + kFolders + kMarkers == kDirectives);

Install& SmallInstall() {
  static Install install(2 * kDirectives);
  varnik::UseInstallFolder(install.Text());
  return install;
}

std::string LargeDefinition() {
  std::string text = "BZ2HALD5\r\nactivated();\r\n";
  const auto file = [](int i) { return "file" + Number(i) + ".odf"; };
  for (int i = 0; i < kRenames; ++i)
    text += "rename(" + file(i) + ",hidden\\" + file(i) + ");\r\n";
  for (int i = kRenames; i < kRenames + kReplacements; ++i)
    text += "replace(" + file(i) + "," + file(i + kDirectives) + ",kept" + Number(i) + ");\r\n";
  for (int i = 0; i < kFolders; ++i)
    text += "fold(mods\\" + Number(i) + ");\r\n";
  for (int i = 0; i < kMarkers; ++i)
    text += "writeid(id" + Number(i) + ");\r\n";
  return text;
}

void Activation(benchmark::State& state) {
  const Install& install = SmallInstall();
  Write(install.Root() / "large.bzm", LargeDefinition());
  for (auto _ : state) {
    varnik::ActivateMod(install.Text() + "large.bzm");
    if (fs::exists(install.Root() / "file10000.odf")) state.SkipWithError("not activated");
    varnik::DeactivateMod(install.Text() + "large.bzm", install.Text());
    if (!fs::exists(install.Root() / "file10000.odf")) state.SkipWithError("not deactivated");
  }
}

void Move(const std::string& from, const std::string& to) {
  renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
}

// Attributes are read and stored ahead of a rename.
void MoveKeepingAttributes(const std::string& from, const std::string& to) {
  struct stat status;
  if (stat(from.c_str(), &status) == 0) chmod(from.c_str(), status.st_mode);
  Move(from, to);
}

void Append(const std::string& path, const std::string& text) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (!text.empty()) benchmark::DoNotOptimize(write(file, text.data(), text.size()));
  close(file);
}

void ActivationFloor(benchmark::State& state) {
  const std::string root = SmallInstall().Root().string() + "/";
  const auto file = [&](int i) { return root + "file" + Number(i) + ".odf"; };
  const auto hidden = [&](int i) { return root + "hidden/file" + Number(i) + ".odf"; };
  const auto kept = [&](int i) { return root + "kept" + Number(i); };
  for (auto _ : state) {
    for (int i = 0; i < kRenames; ++i)
      MoveKeepingAttributes(file(i), hidden(i));
    for (int i = kRenames; i < kRenames + kReplacements; ++i) {
      MoveKeepingAttributes(file(i), kept(i));
      MoveKeepingAttributes(file(i + kDirectives), file(i));
    }
    for (int i = 0; i < kFolders; ++i)
      Append(root + "bzonevarnik.cfg", std::string(60, 'x'));
    Append(root + "bzonevarnik.cfg", std::string(600, 'x'));
    Move(root + "bzone.cfg", root + "bzonevarnik.bak");
    Move(root + "bzonevarnik.cfg", root + "bzone.cfg");
    for (int i = 0; i < kMarkers; ++i)
      Append(root + "id" + Number(i), "");

    for (int i = 0; i < kRenames; ++i)
      Move(hidden(i), file(i));
    for (int i = kRenames; i < kRenames + kReplacements; ++i) {
      Move(file(i), file(i + kDirectives));
      Move(kept(i), file(i));
    }
    unlink((root + "bzone.cfg").c_str());
    Move(root + "bzonevarnik.bak", root + "bzone.cfg");
    for (int i = 0; i < kMarkers; ++i)
      unlink((root + "id" + Number(i)).c_str());
  }
}
BENCHMARK(ActivationFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(Activation)->Unit(benchmark::kMillisecond);

}  // namespace
