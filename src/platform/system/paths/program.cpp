#include "platform/system/paths/program.h"

#include "platform/system/filesystem/disk.h"
#include "platform/system/paths/environment.h"
#include "platform/system/paths/paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace win {
namespace {

namespace fs = std::filesystem;

ProgramIdentity identity_;
std::string commandLine_;

// Folders of the user are for the user alone, as the XDG base directory rules ask.
std::string Made(const std::string& folder) {
  struct stat status;
  if (TheDisk().Stat(folder, status) == 0) return folder;
  std::string upTo;
  for (const fs::path& name : fs::path(folder)) {
    upTo = (fs::path(upTo) / name).string();
    TheDisk().MakeFolder(upTo, 0700);
  }
  return folder;
}

// A relative path in an XDG variable is to be ignored.
std::string XdgFolder(const char* variable, const char* belowHome) {
  const std::string folder = Variable(variable);
  return folder.starts_with('/') ? folder : HomeFolder() + "/" + belowHome;
}

bool IsPrivateFolder(const std::string& folder) {
  struct stat status;
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == getuid() &&
         (status.st_mode & 077) == 0;
}

bool IsFile(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

// Copies under another name first, so that a copy cut short is never taken for the file.
void CopyShippedFile(const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(to, error))) return;
  const fs::path unfinished = to.string() + ".part";
  fs::copy_file(from, unfinished, fs::copy_options::overwrite_existing, error);
  if (!error) fs::permissions(unfinished, fs::perms::owner_write, fs::perm_options::add, error);
  if (!error) fs::rename(unfinished, to, error);
  if (error) fs::remove(unfinished, error);
}

// The marker comes last: it says that the rest is there.
void FillFolder(const fs::path& folder, const fs::path& shipped, const std::string& marker) {
  if (IsFile(folder / marker)) return;
  std::error_code error;
  for (auto it = fs::recursive_directory_iterator(shipped, error); !error && it != fs::end(it); it.increment(error)) {
    const fs::path relative = it->path().lexically_relative(shipped);
    std::error_code ignored;
    if (it->is_directory(ignored))
      fs::create_directories(folder / relative, ignored);
    else if (it->is_regular_file(ignored) && relative != marker)
      CopyShippedFile(it->path(), folder / relative);
  }
  if (IsFile(shipped / marker)) CopyShippedFile(shipped / marker, folder / marker);
}

bool IsAbsoluteText(const std::string& path) { return IsSeparator(path[0]) || (path.size() > 1 && path[1] == ':'); }

}  // namespace

void SetProgram(const ProgramIdentity& identity) {
  identity_ = identity;
  ExecutablePath();
}

const ProgramIdentity& Program() { return identity_; }

// Asked for once, at the start: the link says otherwise when the file is replaced while the program runs.
std::string ExecutablePath() {
  static const std::string path = [] {
    std::error_code ignored;
    return fs::read_symlink("/proc/self/exe", ignored).string();
  }();
  return path;
}

std::string CompanionProgram(const std::string& file) {
  const fs::path programs = fs::path(ExecutablePath()).parent_path();
  for (const fs::path& folder : {programs, programs.parent_path() / "libexec" / identity_.name})
    if (IsFile(folder / file)) return (folder / file).string();
  return "";
}

std::string ExecutableName() { return fs::path(ExecutablePath()).stem().string(); }

void SetCommandLine(int argc, const char* const* argv) {
  commandLine_.clear();
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const bool quote = argument.find('"') == std::string::npos &&
                       (argument.empty() || argument.find_first_of(" \t") != std::string::npos);
    if (i > 1) commandLine_ += ' ';
    commandLine_ += quote ? "\"" + argument + "\"" : argument;
  }
}

const std::string& CommandLine() { return commandLine_; }

std::string ConfigFolder() { return Made(XdgFolder("XDG_CONFIG_HOME", ".config") + "/" + identity_.name); }

std::string DataFolder() { return Made(XdgFolder("XDG_DATA_HOME", ".local/share") + "/" + identity_.name); }

std::string AutostartFolder() { return Made(XdgFolder("XDG_CONFIG_HOME", ".config") + "/autostart"); }

std::string RuntimeFolder() {
  const std::string given = Variable("XDG_RUNTIME_DIR");
  if (given.starts_with('/') && access(given.c_str(), W_OK | X_OK) == 0) return given;
  const std::string own = Made("/tmp/" + identity_.name + "-" + std::to_string(getuid()));
  // Somebody else may have made it first.
  return IsPrivateFolder(own) ? own : ConfigFolder();
}

std::string ProgramFolder(const std::string& marker) {
  std::error_code ignored;
  const std::string given = Variable(OwnVariableName("_HOME"));
  if (!given.empty())
    return WithSeparator(IsAbsoluteText(given) ? given : WindowsPathFromNative(fs::absolute(given, ignored).string()));
  const fs::path programs = fs::path(ExecutablePath()).parent_path();
  if (IsFile(programs / marker)) return WithSeparator(WindowsPathFromNative(programs.string()));
  const std::string data = DataFolder();
  FillFolder(data, programs.parent_path() / "share" / identity_.name, marker);
  return WithSeparator(WindowsPathFromNative(data));
}

}  // namespace win
