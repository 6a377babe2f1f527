#include "platform/system/process/launch.h"

#include "platform/system/files/platformini.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/paths/environment.h"
#include "platform/system/paths/program.h"
#include "platform/system/text/argumentlist.h"
#include "platform/system/text/text.h"

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string_view>

namespace win {
namespace {

// The first bytes of a file, up to behind the processor type of a Windows program.
std::string HeaderOf(const std::string& program) {
  constexpr std::size_t kHeaderSize = 4096;
  FileStatus status;
  const auto file = OpenFile(CurrentFileSystem(), program, status);
  return file ? ReadUpTo(*file, status.size, kHeaderSize).value_or("") : "";
}

std::uint32_t NumberAt(std::string_view bytes, std::size_t offset, int size) {
  std::uint32_t number = 0;
  for (int i = size; i-- > 0;)
    number = number << 8 | static_cast<unsigned char>(bytes[offset + i]);
  return number;
}

// "32" or "64" by the processor type in the PE header, empty for an older kind of program.
std::string BitsOf(std::string_view header) {
  if (header.size() < 0x40) return "";
  const std::size_t pe = NumberAt(header, 0x3c, 4);
  if (pe > header.size() - 6 || header.substr(pe, 4) != std::string_view("PE\0\0", 4)) return "";
  const std::uint32_t machine = NumberAt(header, pe + 4, 2);
  return machine == 0x14c ? "32" : machine == 0x8664 ? "64" : "";
}

std::string RunnerLine() {
  const std::string given = Variable(OwnVariableName("_RUNNER"));
  if (!given.empty()) return given;
  const std::vector<std::string> values = PlatformValues("Runner");
  return values.empty() ? "wine" : values[0];
}

std::string FromStartFolder(const std::string& path) {
  return path.starts_with('/') ? path : JoinPath(StartFolder(), path);
}

// The runner may have arguments of its own. It is found from the folder of the start, the program runs in another.
std::vector<std::string> Runner() {
  const std::string line = RunnerLine();
  const bool isWhole = CurrentFileSystem().Exists(FromStartFolder(line));
  std::vector<std::string> words = isWhole ? std::vector{line} : SplitArguments(line);
  if (words.empty()) words = {"wine"};
  if (words[0].find('/') != std::string::npos) words[0] = FromStartFolder(words[0]);
  return words;
}

std::string WithSlash(const std::string& path) { return path.ends_with('/') ? path : path + "/"; }

// The Wine prefix in which the program is, the innermost one.
std::optional<std::string> PrefixAround(const std::string& program) {
  for (const std::string& spelling : {program, FollowLinks(program)})
    for (std::string folder = FolderAbove(spelling); folder.size() > 1; folder = FolderAbove(folder)) {
      const std::string prefix = FolderAbove(folder);
      const bool inside = LastName(folder) == "drive_c" || LastName(folder) == "dosdevices";
      if (inside && CurrentFileSystem().Exists(prefix + "/dosdevices")) return prefix;
    }
  return std::nullopt;
}

// Whether a Wine that was installed around `programs`, its folder of programs, holds what every program of so many bits
// needs: the innermost of the system files or, in Debian's layout, a loader of its own.
bool HasPart(const std::string& programs, std::string_view bits) {
  const bool is32 = bits == "32";
  const std::string systemFile = is32 ? "i386-windows/ntdll.dll" : "x86_64-windows/ntdll.dll";
  for (const char* folder : {"lib", "lib64", "lib32", "lib/i386-linux-gnu", "lib/x86_64-linux-gnu"})
    for (const std::string& file : {systemFile, std::string(is32 ? "wine" : "wine64")})
      if (CurrentFileSystem().IsFile(FolderAbove(programs) + "/" + folder + "/wine/" + file)) return true;
  return false;
}

// Says so only of a Wine that is found to be there for the other kind alone: it may be laid out in a way unknown here.
bool LacksPart(const std::string& runner, std::string_view bits) {
  const std::string programs = FolderAbove(FollowLinks(runner));
  const bool isWine = LastName(runner).starts_with("wine");
  const bool isLedElsewhere = !Variable("WINELOADER").empty() || !Variable("WINEDLLPATH").empty();
  if (bits.empty() || !isWine || isLedElsewhere) return false;
  return HasPart(programs, bits == "32" ? "64" : "32") && !HasPart(programs, bits);
}

// In hexadecimal digits: what is in the environment has to pass through the character set of the locale.
std::string Hexadecimal(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const unsigned char c : bytes) {
    text += kDigits[c >> 4];
    text += kDigits[c & 15];
  }
  return text;
}

void SetVariable(std::vector<std::string>& environment, const std::string& name, const std::string& value) {
  std::erase_if(environment, [&name](const std::string& entry) { return entry.starts_with(name + "="); });
  environment.push_back(name + "=" + value);
}

std::string PrefixOf(const std::string& program) { return PrefixAround(program).value_or(DefaultWinePrefix()); }

// Whether Wine has a drive letter for this folder or one above it.
bool IsOnDrive(const std::string& prefix, const std::string& folder) {
  const std::string resolved = WithSlash(FollowLinks(folder));
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    const std::string drive = prefix + "/dosdevices/" + letter + ":";
    if (CurrentFileSystem().IsFolder(drive) && resolved.starts_with(WithSlash(FollowLinks(drive)))) return true;
  }
  return false;
}

// Runners that show their programs another root than ours, but the user's own folder.
bool IsContainer(const std::vector<std::string>& runner) {
  constexpr std::string_view kContainers[] = {"bwrap",  "distrobox", "docker",    "firejail", "flatpak", "podman",
                                              "proton", "snap",      "steam-run", "toolbox",  "umu-run"};
  return std::ranges::any_of(runner, [&](const std::string& word) {
    return std::ranges::find(kContainers, LastName(word)) != std::end(kContainers);
  });
}

// The starter that can stand between the runner and this program; empty when none can.
std::string StarterFor(const std::string& program, std::string_view header, const std::vector<std::string>& runner) {
  const std::vector<std::string> chosen = PlatformValues("Starter");
  if (!chosen.empty() && EqualNoCase(chosen[0], "Off")) return "";
  const std::string starter = CompanionProgram(Program().name + "-start" + BitsOf(header) + ".exe");
  if (starter.empty()) return "";
  const std::string prefix = PrefixOf(program), folder = FolderAbove(starter);
  // Wine fills the Windows folder when it sets a prefix up; the registry files come only later.
  const bool isSetUp = CurrentFileSystem().Exists(prefix + "/drive_c/windows/system32/kernel32.dll");
  const bool isSeen = !IsContainer(runner) || WithSlash(folder).starts_with(WithSlash(HomeFolder()));
  return isSetUp && isSeen && IsOnDrive(prefix, folder) && IsOnDrive(prefix, FolderAbove(program)) ? starter : "";
}

void GoThroughRunner(Launch& launch, const std::string& program, const std::string& tail, std::string_view header) {
  launch.arguments = Runner();
  if (const auto prefix = PrefixAround(program)) SetVariable(launch.environment, "WINEPREFIX", *prefix);
  if (const std::string starter = StarterFor(program, header, launch.arguments); !starter.empty()) {
    SetVariable(launch.environment, OwnVariableName("_START"), Hexadecimal(program) + "/" + Hexadecimal(tail));
    launch.arguments.push_back(starter);
  }
  launch.arguments.push_back(program);
  // Wine takes what is no UTF-8 for damaged; the starter is given the bytes, and reads them by the same rule.
  for (const std::string& argument : SplitArguments(Utf8FromBytes(tail)))
    launch.arguments.push_back(argument);
}

// How to get what is missing for programs of so many bits, on the system that this program is made for.
std::string Advice(const std::string& runner, std::string_view bits) {
  if (!LastName(runner).starts_with("wine")) return "";
  if (bits == "64") return " On Debian, `apt install wine64` as root installs it.";
  return " On Debian, these three commands as root install it: `dpkg --add-architecture i386`, `apt update`, "
         "`apt install wine32:i386`.";
}

}  // namespace

std::string FindExecutable(const std::string& name) {
  const auto isProgram = [](const std::string& path) {
    return CurrentFileSystem().IsFile(path) && CurrentFileSystem().IsAllowed(path, X_OK);
  };
  if (name.find('/') != std::string::npos) return isProgram(name) ? name : "";
  const std::string given = Variable("PATH");
  std::istringstream folders(given.empty() ? "/bin:/usr/bin" : given);
  for (std::string folder; std::getline(folders, folder, ':');)
    if (const std::string path = (folder.empty() ? "." : folder) + "/" + name; isProgram(path)) return path;
  return "";
}

bool IsWindowsProgram(const std::string& program) { return HeaderOf(program).starts_with("MZ"); }

std::string RunnerProblemOf(const std::string& program) {
  const std::string header = HeaderOf(program);
  if (!header.starts_with("MZ")) return "";
  const std::string name = std::string(LastName(program)) + " is a Windows program";
  const std::string runner = Runner()[0], bits = BitsOf(header);
  const std::string found = FindExecutable(runner);
  if (found.empty())
    return name + ", and " + runner + ", which is to run those, is not there or cannot be started." +
           Advice(runner, bits);
  if (!LacksPart(found, bits)) return "";
  return name + " of " + bits + " bits, and this system's " + runner + " lacks the part that runs those." +
         Advice(runner, bits);
}

Launch PrepareLaunch(const std::string& program, const std::string& tail) {
  Launch launch;
  for (char** entry = environ; *entry; ++entry)
    launch.environment.push_back(*entry);
  const std::string header = HeaderOf(program);
  if (header.starts_with("MZ")) {
    GoThroughRunner(launch, program, tail, header);
    return launch;
  }
  launch.arguments = SplitArguments(tail);
  launch.arguments.insert(launch.arguments.begin(), program);
  return launch;
}

}  // namespace win
