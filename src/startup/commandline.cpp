#include "startup/commandline.h"

#include "modengine/deactivation.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/system/text/text.h"
#include "support/debuglog.h"
#include "support/modfileexists.h"

namespace varnik {

namespace {

struct Switches {
  std::int16_t runMode = kRunModeNormal;
  std::string root;
  std::string definitionFile;
};

Switches ReadSwitches(const std::vector<std::string>& arguments) {
  Switches switches;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string name = win::LowerCase(arguments[i]);
    const bool hasNext = i + 1 < arguments.size();
    if (name == "/crash") switches.runMode = kRunModeLeave;
    if (name == "/boot") switches.runMode = kRunModeHidden;
    if (name == "/bz2dir" && hasNext) switches.root = arguments[++i];
    if (name == "/deactivate" && hasNext) switches.definitionFile = arguments[++i];
  }
  return switches;
}

}  // namespace

std::vector<std::string> SplitCommandLine(std::string_view line, int maxArgs) {
  std::vector<std::string> arguments;
  bool inArgument = false;
  bool inQuotes = false;
  for (const char c : line) {
    if ((c == ' ' || c == '\t') && !inQuotes) {
      inArgument = false;
      continue;
    }
    if (!inArgument) {
      if (arguments.size() == static_cast<std::size_t>(maxArgs)) break;
      arguments.emplace_back();
      inArgument = true;
    }
    if (c == '"')
      inQuotes = !inQuotes;
    else
      arguments.back() += c;
  }
  return arguments;
}

std::int16_t ProcessCmdLine(int maxArgs) {
  LogLine("ProcessCmdLine Begin");
  const auto [runMode, root, file] = ReadSwitches(SplitCommandLine(win::CommandLine(), maxArgs));
  // An empty root becomes a single backslash: the work then runs against the root of the current drive.
  if (file != root && !file.empty() && FileExists(file)) DeactivateByMarker(file, win::WithSeparator(root));
  return runMode;
}

}  // namespace varnik
