#include "platform/system/paths/environment.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace win {

std::string Variable(const std::string& name) {
  const char* const value = std::getenv(name.c_str());
  return value != nullptr ? value : "";
}

std::string HomeFolder() {
  std::string home = Variable("HOME");
  if (!home.empty()) return home;
  const passwd* const user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "/";
}

std::string DefaultWinePrefix() {
  std::string given = Variable("WINEPREFIX");
  return given.empty() ? HomeFolder() + "/.wine" : given;
}

}  // namespace win
