#include "platform/system/filesystem/nativepath.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace win {

std::string FolderAbove(const std::string& native) {
  const std::size_t separator = native.rfind('/');
  if (separator == std::string::npos) return ".";
  return native.substr(0, separator == 0 ? 1 : separator);
}

std::string_view LastName(std::string_view native) { return native.substr(native.rfind('/') + 1); }

std::string JoinPath(const std::string& folder, std::string_view name) {
  if (folder == ".") return std::string(name);
  return (folder + (folder.ends_with('/') ? "" : "/")).append(name);
}

std::string AbsolutePath(const std::string& native) {
  if (native.empty() || native.starts_with('/')) return native;
  std::error_code ignored;
  return std::filesystem::current_path(ignored).string() + "/" + native;
}

std::string ResolveLinks(const std::string& native, bool followLast,
                         const std::function<std::string(const std::string& path)>& targetOf) {
  constexpr int kMaxLinks = 40;
  std::string rest = AbsolutePath(native);
  std::string done;
  for (int links = 0; !rest.empty();) {
    const std::size_t end = std::min(rest.find('/'), rest.size());
    const std::string name = rest.substr(0, end);
    rest.erase(0, std::min(rest.find_first_not_of('/', end), rest.size()));
    if (name.empty() || name == ".") continue;
    if (name == "..") {
      done.resize(std::min(done.rfind('/'), done.size()));
      continue;
    }
    const std::string next = done + "/" + name;
    const std::string target = rest.empty() && !followLast ? "" : targetOf(next);
    if (target.empty() || ++links > kMaxLinks) {
      done = next;
    } else {
      if (target.starts_with('/')) done.clear();
      rest = target + "/" + rest;
    }
  }
  return done.empty() ? "/" : done;
}

namespace {

constexpr std::string_view kTemporaryStart = ".";
constexpr std::string_view kTemporaryEnd = ".new~";

}  // namespace

std::string TemporaryNameFor(const std::string& native) {
  constexpr std::size_t kMaxName = 240;
  const std::string_view name = LastName(native);
  const std::string folder = native.substr(0, native.size() - name.size());
  return (folder + std::string(kTemporaryStart)).append(name.substr(0, kMaxName)).append(kTemporaryEnd);
}

bool IsTemporaryName(std::string_view native) {
  const std::string_view name = LastName(native);
  return name.size() > kTemporaryStart.size() + kTemporaryEnd.size() && name.starts_with(kTemporaryStart) &&
         name.ends_with(kTemporaryEnd);
}

}  // namespace win
