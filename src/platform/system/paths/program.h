#pragma once

#include <string>
#include <vector>

// What the running program is called and where its folders are. Set once, before anything else of this layer is used.
namespace win {

struct ProgramIdentity {
  std::string name;       // names the folders and files that the program owns, in lower case
  std::string title;      // what a person reads
  std::string autostart;  // the file that an autostart entry runs; empty: the running program
  std::string version = {};
};

// The name of an environment variable of the program's own: its name in upper case, then `suffix`.
std::string OwnVariableName(const char* suffix);

// One line on standard error, the program's name first.
void SayOnStandardError(const std::string& text);

void SetProgram(const ProgramIdentity& identity);
const ProgramIdentity& Program();

// Native path of the running executable, links resolved.
std::string ExecutablePath();

// Native path of the folder in which the program was started, whatever folder it has entered since.
std::string StartFolder();

// Native path of a companion program, beside the running executable or in ../libexec/<name>. Empty when there is none.
std::string CompanionProgram(const std::string& file);

// The file name of the program without folder and extension.
std::string ExecutableName();

// The arguments as one text, as a Windows program is given it: an argument with a blank or a tab, and an empty one,
// stands in double quotes. One that holds quotes already is passed on as it is.
void SetCommandLine(int argc, const char* const* argv);
const std::string& CommandLine();

// Native paths, without a trailing separator; made when they are missing.
std::string ConfigFolder();     // $XDG_CONFIG_HOME/<name>, else ~/.config/<name>
std::string StateFolder();      // $XDG_STATE_HOME/<name>, else ~/.local/state/<name>
std::string RuntimeFolder();    // $XDG_RUNTIME_DIR, else a folder of this user's own under /tmp
std::string AutostartFolder();  // $XDG_CONFIG_HOME/autostart, else ~/.config/autostart

// The folders for configuration, state and autostart, as native paths without links on the way.
class OwnFolders {
 public:
  OwnFolders();

  // Whether a native path without links lies in one of them, or on the way to one.
  bool Hold(const std::string& native) const;

 private:
  std::vector<std::string> folders_;  // each ends in a separator
};

// The program's own folder, as a Windows path that ends in a backslash: `<NAME>_HOME` if set; else the folder of the
// executable when it holds `marker` (a portable copy); else $XDG_DATA_HOME/<name> or ~/.local/share/<name>, filled at
// the first start with the shipped files from ../share/<name> as seen from the executable, and kept up to date as
// FollowShippedFiles says.
std::string ProgramFolder(const std::string& marker);

}  // namespace win
