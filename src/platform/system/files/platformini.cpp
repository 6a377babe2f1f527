#include "platform/system/files/platformini.h"

#include "platform/system/files/lines.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/system/text/text.h"

namespace win {

std::vector<std::string> PlatformValues(std::string_view key) {
  std::vector<std::string> values;
  LineReader file(WindowsPathFromNative(ConfigFolder() + "/platform.ini"));
  while (!file.AtEnd()) {
    const std::string line = file.ReadLine();
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos || !EqualNoCase(Trim(line.substr(0, equals)), key)) continue;
    if (std::string value = Trim(line.substr(equals + 1)); !value.empty()) values.push_back(std::move(value));
  }
  return values;
}

}  // namespace win
