#include "cmdline/optionlist.h"

#include "cmdline/optionfile.h"
#include "platform/system/text/text.h"
#include "support/modfileexists.h"
#include "support/runstate.h"

#include <utility>

namespace varnik {

namespace {

constexpr std::string_view kEditSwitches[] = {"/edit", "+edit", "-edit"};

void CutEditSwitches(std::string& line) {
  for (const std::string_view edit : kEditSwitches)
    for (std::size_t at = line.find(edit); at != std::string::npos; at = line.find(edit))
      line.erase(at, edit.size());
}

bool HasEditSwitch(const std::string& line) {
  for (const std::string_view edit : kEditSwitches)
    if (line.find(edit) != std::string::npos) return true;
  return false;
}

}  // namespace

std::string OptionListFile() {
  for (const std::string& file : {CustomOptionFile(), AppPath + "varnik.cmd"})
    if (!file.empty() && FileExists(file)) return file;
  return "";
}

std::vector<OptionEntry> ReadOptionList(const std::string& file) {
  std::vector<OptionEntry> options;
  for (OptionRow& row : ReadOptionRows(file)) {
    OptionEntry option;
    option.ticked = row.ticked;
    const std::size_t colon = row.text.find(':');
    option.hasSubParam = colon != std::string::npos;
    if (option.hasSubParam) option.subParam = row.text.substr(colon + 1);
    option.text = row.text.substr(0, colon);
    options.push_back(std::move(option));
  }
  return options;
}

std::string JoinTickedOptions(const std::vector<OptionEntry>& options) {
  std::string line;
  for (const OptionEntry& option : options) {
    if (!option.ticked) continue;
    line += ' ' + option.text;
    if (option.hasSubParam) line += ' ' + option.subParam;
    // Blanks go from the end each time and not only at last: they must not pile up before the next option.
    line.erase(line.find_last_not_of(' ') + 1);
  }
  return win::Trim(line);
}

std::string BuildCommandLine(const CommandLineParts& parts, bool keepEditSwitches) {
  std::string line = parts.options;
  if (!keepEditSwitches || win::Trim(parts.mapName).empty()) {
    CutEditSwitches(line);
    return line;
  }
  const bool quoted = parts.mapName.find(' ') != std::string::npos;
  line = (quoted ? "\"" + parts.mapName + "\"" : parts.mapName) + " " + line;
  return parts.edit && !HasEditSwitch(line) ? "/edit " + line : line;
}

}  // namespace varnik
