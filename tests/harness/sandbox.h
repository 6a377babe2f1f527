#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

// A temporary world for one test: an install, the program's folder and a home of its own. Nothing outside it is
// touched.
namespace test {

class Sandbox {
 public:
  Sandbox();  // sets HOME, XDG_*, VARNIK_HOME, WINEPREFIX and the program's identity
  ~Sandbox();
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  std::filesystem::path Root() const { return root_; }        // the temporary folder
  std::filesystem::path Install() const { return install_; }  // an empty install folder
  std::filesystem::path App() const { return app_; }          // the program's folder
  std::filesystem::path Home() const { return home_; }

  // The same folders as the program holds them: text ending in a backslash.
  std::string InstallText() const { return install_.string() + "\\"; }
  std::string AppText() const { return app_.string() + "\\"; }

  // Adds bzone.exe (a stand-in), data.pak and binkw32.dll, and for a version other than 1.0 addon/localize.odf.
  void MakeInstall(std::string_view version = "1.2");

 private:
  std::filesystem::path root_, install_, app_, home_;
};

// Writes a file, folders above it included.
void WriteFile(const std::filesystem::path& path, std::string_view content);
void WriteScript(const std::filesystem::path& path, std::string_view body);  // for sh, may be executed
std::string ReadFile(const std::filesystem::path& path);

// Everything below a folder: relative path to content, folders with a trailing slash and no content. For comparing
// before and after.
std::map<std::string, std::string> Snapshot(const std::filesystem::path& folder);

// A child process that runs `body` and ends with what it returns.
pid_t Fork(const std::function<int()>& body);

// Waits for a child: its exit status, 128 plus the signal when it was killed.
int StatusOf(pid_t child);

}  // namespace test
