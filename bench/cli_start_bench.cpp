#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

// The command-line program from start to end on the demo install, beside a program that does nothing and links the same
// libraries.
namespace {

namespace fs = std::filesystem;

class Demo {
 public:
  Demo() {
    std::string pattern = (fs::temp_directory_path() / "varnik-bench-XXXXXX").string();
    folder_ = fs::path(mkdtemp(pattern.data())) / "demo";
    made_ = system((SOURCE_DIR "/tools/make-demo.sh " + folder_.string()).c_str()) == 0;
    setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
    setenv("VARNIK_HOME", (folder_ / "app").c_str(), 1);
  }
  ~Demo() {
    std::error_code ignored;
    fs::remove_all(folder_.parent_path(), ignored);
  }
  bool IsMade() const { return made_; }

 private:
  fs::path folder_;
  bool made_ = false;
};

// The exit status; what it says goes nowhere.
int Run(const char* program) {
  char* const arguments[] = {const_cast<char*>(program), const_cast<char*>("mods"), const_cast<char*>("--json"),
                             nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = -1;
  int status = -1;
  if (posix_spawn(&process, program, &actions, nullptr, arguments, environ) == 0) waitpid(process, &status, 0);
  posix_spawn_file_actions_destroy(&actions);
  return status;
}

void StartToEnd(benchmark::State& state, const char* program) {
  static const Demo demo;
  if (!demo.IsMade() || Run(program) != 0) {
    state.SkipWithError("the program or the demo is not there");
    return;
  }
  for (auto _ : state)
    Run(program);
}

BENCHMARK_CAPTURE(StartToEnd, EmptyProgram, BINARY_DIR "/cli_empty")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(StartToEnd, ModsAsJson, BINARY_DIR "/varnik-cli")->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
