#include "cmdline/optionlist.h"

#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/text/text.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/runstate.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnik {

namespace {

constexpr char kTick = '*';
constexpr std::string_view kEditSwitches[] = {"/edit", "+edit", "-edit"};

void CutEditSwitches(std::string& line) {
  for (const std::string_view edit : kEditSwitches)
    for (std::size_t at = line.find(edit); at != std::string::npos; at = line.find(edit))
      line.erase(at, edit.size());
}

}  // namespace

std::optional<std::vector<OptionRow>> ReadOptionRows(const std::string& file) {
  std::vector<OptionRow> rows;
  win::LineReader reader(file);
  while (!reader.AtEnd()) {
    std::string line = win::Trim(reader.ReadLine());
    if (line.empty()) continue;
    const bool ticked = line.front() == kTick;
    if (ticked) line.erase(0, 1);
    rows.push_back({std::move(line), ticked});
  }
  return reader.Failed() ? std::nullopt : std::optional(std::move(rows));
}

bool WriteOptionRows(const std::string& file, const std::vector<OptionRow>& rows) {
  std::string text;
  for (const OptionRow& row : rows) {
    if (row.ticked) text += kTick;
    text += row.text + "\r\n";
  }
  return win::WriteWholeFile(file, text);
}

std::string CustomOptionFile() {
  const std::string root = InstallRoot();
  return root.empty() ? "" : root + "varnik.cmd";
}

bool HasEditSwitch(const std::string& line) {
  return std::any_of(std::begin(kEditSwitches), std::end(kEditSwitches),
                     [&](std::string_view edit) { return line.find(edit) != std::string::npos; });
}

std::string OptionListFile() {
  for (const std::string& file : {CustomOptionFile(), AppPath + "varnik.cmd"})
    if (!file.empty() && FileExists(file)) return file;
  return "";
}

std::optional<std::vector<OptionEntry>> ReadOptionList(const std::string& file) {
  const std::optional<std::vector<OptionRow>> rows = ReadOptionRows(file);
  if (!rows) return std::nullopt;
  std::vector<OptionEntry> options;
  for (const auto& [text, ticked] : *rows) {
    const std::size_t colon = text.find(':');
    const bool hasSubParam = colon != std::string::npos;
    options.push_back(
        {text.substr(0, colon), hasSubParam, hasSubParam ? text.substr(colon + 1) : OptionEntry().subParam, ticked});
  }
  return options;
}

std::string OptionListProblem(const std::string& file) {
  return "The list of command line options could not be read to its end: " + file +
         "\r\nIt is not used, and it stays as it is. Please check the disk and try again.";
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
