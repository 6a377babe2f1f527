#include "tests/harness/sandbox.h"

#include "platform/system/paths/program.h"

#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace test {

namespace fs = std::filesystem;

Sandbox::Sandbox() {
  std::string pattern = (fs::temp_directory_path() / "varnik-test-XXXXXX").string();
  root_ = mkdtemp(pattern.data());
  install_ = root_ / "game";
  app_ = root_ / "app";
  home_ = root_ / "home";
  for (const fs::path& folder : {install_, app_, home_, home_ / "run"})
    fs::create_directories(folder);
  const std::pair<const char*, fs::path> variables[] = {{"HOME", home_},
                                                        {"XDG_CONFIG_HOME", home_ / "config"},
                                                        {"XDG_DATA_HOME", home_ / "data"},
                                                        {"XDG_STATE_HOME", home_ / "state"},
                                                        {"VARNIK_HOME", app_},
                                                        {"XDG_RUNTIME_DIR", home_ / "run"},
                                                        {"WINEPREFIX", home_ / "wine"}};
  for (const auto& [name, value] : variables)
    setenv(name, value.c_str(), 1);
  win::SetProgram({"varnik", "Varnik", ""});
}

Sandbox::~Sandbox() {
  std::error_code ignored;
  for (const auto& entry : fs::recursive_directory_iterator(root_, ignored))
    if (entry.is_directory(ignored) && !entry.is_symlink(ignored))
      fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add, ignored);
  fs::remove_all(root_, ignored);
}

void Sandbox::MakeInstall(std::string_view version) {
  WriteScript(install_ / "bzone.exe", "exit 0");
  for (const char* file : {"data.pak", "binkw32.dll"})
    WriteFile(install_ / file, "");
  WriteFile(install_ / "bzone.cfg", "// the game's own\r\n");
  if (version != "1.0")
    WriteFile(install_ / "addon" / "localize.odf", "[Network]\r\nVersionStr = \"" + std::string(version) + "\"\r\n");
}

void WriteFile(const fs::path& path, std::string_view content) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
}

void WriteScript(const fs::path& path, std::string_view body) {
  WriteFile(path, "#!/bin/sh\n" + std::string(body) + "\n");
  fs::permissions(path, fs::perms::owner_exec, fs::perm_options::add);
}

std::string ReadFile(const fs::path& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

std::map<std::string, std::string> Snapshot(const fs::path& folder) {
  std::map<std::string, std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const std::string name = entry.path().lexically_relative(folder).string();
    if (entry.is_symlink())
      found[name] = "leads to " + fs::read_symlink(entry).string();
    else if (entry.is_directory())
      found[name + "/"];
    else
      found[name] = ReadFile(entry.path());
  }
  return found;
}

pid_t Fork(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  return child;
}

int StatusOf(pid_t child) {
  int status = -1;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace test
