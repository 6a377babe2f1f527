#include "startup/commandline.h"

#include "modengine/applymod.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/services.h"
#include "platform/system/text/text.h"
#include "support/debuglog.h"
#include "support/modfileexists.h"

namespace varnik {

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

namespace {

void Deactivate(const std::string& definitionFile, const std::string& root) {
  const RevertResult result = RevertMod(definitionFile, root, true);
  if (!result.refusal.empty()) win::MsgBox(result.refusal);
  for (const ReportLine& problem : result.failed)
    win::SayOnStandardError(TextOf(problem));
}

}  // namespace

std::int16_t ProcessCmdLine(int maxArgs) {
  LogLine("ProcessCmdLine Begin");
  std::int16_t runMode = kRunModeNormal;
  std::string root, file;
  const std::vector<std::string> arguments = SplitCommandLine(win::CommandLine(), maxArgs);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string name = win::LowerCase(arguments[i]);
    const bool hasNext = i + 1 < arguments.size();
    if (name == "/crash") runMode = kRunModeLeave;
    if (name == "/boot") runMode = kRunModeHidden;
    if (name == "/bz2dir" && hasNext) root = arguments[++i];
    if (name == "/deactivate" && hasNext) file = arguments[++i];
  }
  // An empty root becomes a single backslash: the work then runs against the root of the current drive.
  if (file != root && !file.empty() && FileExists(file)) Deactivate(file, win::WithSeparator(root));
  return runMode;
}

}  // namespace varnik
