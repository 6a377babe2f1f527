#include "platform/system/paths/paths.h"

#include "platform/system/filesystem/nativepath.h"
#include "platform/system/paths/environment.h"
#include "platform/system/paths/pathfinder.h"
#include "platform/system/text/text.h"

#include <algorithm>
#include <utility>

namespace win {

namespace {

std::string DriveFolder(char letter) {
  return DefaultWinePrefix() + "/dosdevices/" + LowerCase(std::string_view(&letter, 1)) + ":";
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

}  // namespace

std::string ToNativeSpelling(std::string_view path) {
  std::string native;
  native.reserve(path.size());
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
    const std::size_t end =
        static_cast<std::size_t>(std::find_if(path.begin(), path.end(), IsSeparator) - path.begin());
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

namespace {

FoundPath Find(std::string_view path) {
  thread_local PathFinder finder;
  if (path.empty() || path.find('\0') != std::string_view::npos) return {};
  std::string spelled = ToNativeSpelling(path);
  const bool trailing = EndsInSeparator(spelled) && spelled.size() > 1;
  if (trailing) spelled.pop_back();
  FoundPath found = finder.Find(spelled);
  if (trailing) found.native += '/';
  return found;
}

}  // namespace

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

bool EndsInSeparator(std::string_view path) { return !path.empty() && IsSeparator(path.back()); }

std::string WithSeparator(std::string_view path) {
  std::string folder(path);
  if (!EndsInSeparator(folder)) folder += '\\';
  return folder;
}

std::string FileNameOf(std::string_view path) {
  const std::size_t separator = path.find_last_of("\\/");
  return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

bool IsAbsolutePath(std::string_view path) {
  return (!path.empty() && IsSeparator(path[0])) || (path.size() > 1 && path[1] == ':');
}

std::string NativePath(std::string_view path) { return Find(path).native; }

std::optional<std::string> FindNativePath(std::string_view path) {
  FoundPath found = Find(path);
  if (!found.exists) return std::nullopt;
  return std::move(found.native);
}

bool IsSamePath(std::string_view a, std::string_view b) {
  return NativePath(WithSeparator(a)) == NativePath(WithSeparator(b));
}

std::string AbsoluteNativePath(std::string_view path) { return AbsolutePath(NativePath(path)); }

std::string WindowsPathFromNative(std::string_view native) { return std::string(native); }

}  // namespace win
