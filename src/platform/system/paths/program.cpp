#include "platform/system/paths/program.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/paths/environment.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/shippedfiles.h"
#include "platform/system/text/text.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace win {
namespace {

ProgramIdentity identity_;
std::string commandLine_;

// Folders of the user are for the user alone, as the XDG base directory rules ask.
std::string Made(const std::string& folder) {
  FileSystem& files = CurrentFileSystem();
  if (!files.Exists(folder)) MakeFolders(files, folder, 0700);
  return folder;
}

// A relative path in an XDG variable is to be ignored.
std::string XdgFolder(const char* variable, const char* belowHome) {
  const std::string folder = Variable(variable);
  return folder.starts_with('/') ? folder : HomeFolder() + "/" + belowHome;
}

}  // namespace

std::string OwnVariableName(const char* suffix) { return UpperCase(identity_.name) + suffix; }

void SayOnStandardError(const std::string& text) {
  std::fprintf(stderr, "%s: %s\n", identity_.name.c_str(), Printable(text).c_str());
}

void SetProgram(const ProgramIdentity& identity) {
  identity_ = identity;
  ExecutablePath();
  StartFolder();
}

const ProgramIdentity& Program() { return identity_; }

// Asked for once, at the start: the link says otherwise when the file is replaced while the program runs.
std::string ExecutablePath() {
  static const std::string path = CurrentFileSystem().LinkTarget("/proc/self/exe");
  return path;
}

std::string StartFolder() {
  static const std::string folder = FollowLinks(".");
  return folder;
}

std::string CompanionProgram(const std::string& file) {
  const std::string programs = FolderAbove(ExecutablePath());
  for (const std::string& folder : {programs, FolderAbove(programs) + "/libexec/" + identity_.name})
    if (const std::string program = JoinPath(folder, file); CurrentFileSystem().Exists(program)) return program;
  return "";
}

std::string ExecutableName() {
  const std::string name(LastName(ExecutablePath()));
  return name.substr(0, name.rfind('.'));
}

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

std::string StateFolder() { return Made(XdgFolder("XDG_STATE_HOME", ".local/state") + "/" + identity_.name); }

std::string AutostartFolder() { return Made(XdgFolder("XDG_CONFIG_HOME", ".config") + "/autostart"); }

OwnFolders::OwnFolders() {
  for (const std::string& folder : {ConfigFolder(), StateFolder(), AutostartFolder()})
    folders_.push_back(FollowLinks(folder) + "/");
}

bool OwnFolders::Hold(const std::string& native) const {
  const std::string path = native + "/";
  return std::any_of(folders_.begin(), folders_.end(), [&path](const std::string& folder) {
    return path.starts_with(folder) || folder.starts_with(path);
  });
}

std::string RuntimeFolder() {
  const std::string given = Variable("XDG_RUNTIME_DIR");
  if (given.starts_with('/') && CurrentFileSystem().IsAllowed(given, W_OK | X_OK)) return given;
  const std::string own = Made("/tmp/" + identity_.name + "-" + std::to_string(getuid()));
  // Somebody else may have made it first.
  FileStatus status;
  const bool isPrivate = CurrentFileSystem().LinkStatus(own, status) && status.IsFolder() && status.owner == getuid() &&
                         (status.permissions & 077) == 0;
  return isPrivate ? own : ConfigFolder();
}

std::string ProgramFolder(const std::string& marker) {
  const std::string given = Variable(OwnVariableName("_HOME"));
  if (!given.empty()) return WithSeparator(IsAbsolutePath(given) ? given : WindowsPathFromNative(AbsolutePath(given)));
  const std::string programs = FolderAbove(ExecutablePath());
  if (CurrentFileSystem().IsFile(JoinPath(programs, marker))) return WithSeparator(WindowsPathFromNative(programs));
  const std::string data = Made(XdgFolder("XDG_DATA_HOME", ".local/share") + "/" + identity_.name);
  FollowShippedFiles(data, FolderAbove(programs) + "/share/" + identity_.name, marker, identity_.version);
  return WithSeparator(WindowsPathFromNative(data));
}

}  // namespace win
