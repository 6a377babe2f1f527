#include "platform/system/paths.h"

#include <dirent.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "platform/system/text.h"

namespace win {

namespace {

bool Exists(const std::string& native) {
  struct stat status;
  return lstat(native.c_str(), &status) == 0;
}

std::string HomeFolder() {
  if (const char* const home = getenv("HOME"); home != nullptr && *home != '\0') return home;
  const passwd* const user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "";
}

std::string DriveFolder(char letter) {
  const char* const prefix = getenv("WINEPREFIX");
  const std::string root = prefix != nullptr && *prefix != '\0' ? prefix : HomeFolder() + "/.wine";
  return root + "/dosdevices/" + LowerCase(std::string_view(&letter, 1)) + ":";
}

bool StartsWithDrive(std::string_view path) {
  const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  return path.size() >= 2 && path[1] == ':' && isLetter(path[0]);
}

// Takes the last name off, but nothing above `floor` characters.
void DropLastName(std::string& native, std::size_t floor) {
  const std::size_t separator = native.rfind('/');
  native.resize(separator == std::string::npos || separator < floor ? floor : separator);
}

bool LastNameIsUp(const std::string& native, std::size_t floor) {
  return native.size() == floor || (native.size() >= floor + 2 && native.ends_with("..") &&
                                    (native.size() == floor + 2 || native[native.size() - 3] == '/'));
}

void AppendName(std::string& native, std::string_view name) {
  if (!native.empty() && native.back() != '/') native += '/';
  native += name;
}

// The path in this system's form with the spelling kept: drive, separators, `.` and `..` resolved in the text, as
// Windows does.
std::string Respelled(std::string_view path) {
  std::string native;
  const bool drive = StartsWithDrive(path);
  if (drive) {
    native = DriveFolder(path[0]);
    path.remove_prefix(2);
  }
  const bool rooted = drive || (!path.empty() && IsSeparator(path[0]));
  if (rooted && !drive) native = "/";
  const std::size_t floor = native.size();
  const bool trailing = EndsInSeparator(path);
  while (!path.empty()) {
    const std::size_t end = std::min(path.find_first_of("\\/"), path.size());
    const std::string_view name = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (name.empty() || name == ".") continue;
    if (name != ".." || (!rooted && LastNameIsUp(native, floor)))
      AppendName(native, name);
    else
      DropLastName(native, floor);
  }
  if (native.empty()) native = ".";
  if (trailing && native.back() != '/') native += '/';
  return native;
}

std::string_view WithoutTrailingBlanksAndDots(std::string_view name) {
  const std::size_t last = name.find_last_not_of(" .");
  return last == std::string_view::npos ? name : name.substr(0, last + 1);
}

bool SameName(std::string_view onDisk, std::string_view wanted) {
  return EqualNoCase(onDisk, wanted) || EqualNoCase(Utf8FromBytes(onDisk), Utf8FromBytes(wanted));
}

// The entry that stands for `wanted` in an existing folder; empty when there is none.
std::string FindEntry(const std::string& folder, std::string_view wanted) {
  std::string found;
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.empty() ? "." : folder.c_str()), closedir);
  if (stream == nullptr) return found;
  while (const dirent* const entry = readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name == wanted) return std::string(name);
    if (SameName(name, wanted) && (found.empty() || name < found)) found = name;
  }
  return found;
}

struct Resolved {
  std::string native;
  bool exists = false;
};

Resolved Resolve(std::string_view path) {
  if (path.empty() || path.find('\0') != std::string_view::npos) return {};
  std::string native = Respelled(path);
  if (Exists(native)) return {std::move(native), true};
  std::string_view rest = native;
  Resolved result{"", true};
  if (rest[0] == '/') result.native = "/";
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('/'), rest.size());
    const std::string_view name = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (name.empty()) continue;
    const std::string_view bare = WithoutTrailingBlanksAndDots(name);
    std::string entry = result.exists ? FindEntry(result.native, name) : "";
    if (result.exists && entry.empty() && bare != name) entry = FindEntry(result.native, bare);
    result.exists = !entry.empty();
    AppendName(result.native, entry.empty() ? bare : std::string_view(entry));
  }
  if (native.back() == '/' && result.native.back() != '/') result.native += '/';
  return result;
}

}  // namespace

bool IsSeparator(char c) {
  return c == '\\' || c == '/';
}

bool EndsInSeparator(std::string_view path) {
  return !path.empty() && IsSeparator(path.back());
}

std::string WithSeparator(std::string_view path) {
  std::string folder(path);
  if (!EndsInSeparator(folder)) folder += '\\';
  return folder;
}

std::string FileNameOf(std::string_view path) {
  const std::size_t separator = path.find_last_of("\\/");
  return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

std::string NativePath(std::string_view path) {
  return Resolve(path).native;
}

std::optional<std::string> FindNativePath(std::string_view path) {
  Resolved resolved = Resolve(path);
  if (!resolved.exists) return std::nullopt;
  return std::move(resolved.native);
}

std::string WindowsPathFromNative(std::string_view native) {
  return std::string(native);
}

}  // namespace win
