#include "platform/system/store/autostart.h"

#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/paths/environment.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/system/text/text.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <vector>

namespace win {
namespace {

constexpr char kEachVariable[] = "_RUN";
constexpr char kOnceVariable[] = "_RUNONCE";

// "Some Name" lies in some-name.desktop.
std::string EntryPath(const std::string& name) {
  std::string file = LowerCase(name);
  for (char& c : file)
    if (!(c >= 'a' && c <= 'z') && !(c >= '0' && c <= '9')) c = '-';
  return AutostartFolder() + "/" + file + ".desktop";
}

// Backslash, line ends and tabs have an escape in every text of a desktop entry.
std::string EntryText(std::string_view text) {
  constexpr std::string_view kSpecial = "\\\n\r\t";
  constexpr std::string_view kLetters = "\\nrt";
  std::string escaped;
  for (const char c : text) {
    const std::size_t at = kSpecial.find(c);
    if (at != kSpecial.npos) escaped += '\\';
    escaped += at != kSpecial.npos ? kLetters[at] : c;
  }
  return escaped;
}

// One argument of an Exec line, before EntryText: in double quotes, inside which four characters need a backslash; a
// percent sign would begin a field code.
std::string ExecArgument(std::string_view argument) {
  std::string quoted = "\"";
  for (const char c : argument) {
    if (std::string_view("\"`$\\").find(c) != std::string_view::npos) quoted += '\\';
    if (c == '%') quoted += '%';
    quoted += c;
  }
  return quoted + "\"";
}

std::vector<std::string> ArgumentsOf(const std::string& command) {
  const std::size_t end = command.starts_with('"') ? command.find('"', 1) : command.find(' ');
  std::vector<std::string> arguments;
  if (end == std::string::npos) return arguments;
  std::istringstream rest(command.substr(end + 1));
  for (std::string argument; rest >> argument;)
    arguments.push_back(argument);
  return arguments;
}

// What this process needs to find its files, and what the next log-in may not have set.
std::vector<std::string> EnvironmentToKeep() {
  std::vector<std::string> kept;
  const std::string home = OwnVariableName("_HOME");
  for (const std::string& name :
       {home, std::string("XDG_CONFIG_HOME"), std::string("XDG_DATA_HOME"), std::string("WINEPREFIX")}) {
    std::string value = Variable(name);
    if (value.empty()) continue;
    // Absolute, and with slashes: some readers of these entries undo the escape of a backslash twice.
    if (name == home) std::ranges::replace(value = ProgramFolder(""), '\\', '/');
    kept.push_back(name + "=" + value);
  }
  return kept;
}

std::string ExecLine(const std::string& name, const std::string& command, bool once) {
  const std::string program = Program().autostart.empty() ? ExecutablePath() : Program().autostart;
  std::vector<std::string> words = EnvironmentToKeep();
  words.push_back(OwnVariableName(once ? kOnceVariable : kEachVariable) + "=" + name);
  // env takes a program with an equals sign in its path for one more variable.
  if (program.find('=') != std::string::npos) words.insert(words.end(), {"sh", "-c", "exec \"$0\" \"$@\""});
  words.push_back(program);
  for (const std::string& argument : ArgumentsOf(command))
    words.push_back(argument);
  std::string line = "env";
  for (const std::string& word : words)
    line.append(" ").append(ExecArgument(word));
  return line;
}

}  // namespace

bool WriteAutostartEntry(const std::string& name, const std::string& command, bool once) {
  const std::string entry = "[Desktop Entry]\nType=Application\nName=" + EntryText(Utf8FromBytes(name)) +
                            "\nExec=" + EntryText(ExecLine(name, command, once)) +
                            "\nTerminal=false\nX-GNOME-Autostart-enabled=true\n";
  return WriteWholeFile(WindowsPathFromNative(EntryPath(name)), entry);
}

void RemoveAutostartEntry(const std::string& name) { CurrentFileSystem().Remove(EntryPath(name)); }

StartingEntry TakeStartingEntry() {
  StartingEntry entry;
  for (const char* suffix : {kEachVariable, kOnceVariable}) {
    const std::string variable = OwnVariableName(suffix);
    const std::string name = Variable(variable);
    unsetenv(variable.c_str());
    if (!name.empty()) entry = {name, suffix == kOnceVariable};
  }
  return entry;
}

}  // namespace win
