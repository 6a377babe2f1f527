#include "cli/commands.h"
#include "cli/output.h"
#include "cmdline/optionlist.h"

namespace varnik::cli {

namespace {

std::vector<OptionEntry> LoadOptions() {
  const std::string file = OptionListFile();
  if (file.empty()) Note("varnik.cmd not found. Command Line Parameter listing disabled.");
  return ReadOptionList(file);
}

// The first row number that the list does not have.
std::optional<std::size_t> FindMissingRow(const std::vector<std::size_t>& numbers, std::size_t count) {
  for (const std::size_t number : numbers)
    if (number >= count) return number;
  return std::nullopt;
}

}  // namespace

int ListOptions(const Arguments& arguments) {
  Json list = Json::array();
  std::vector<std::vector<std::string>> rows;
  for (const OptionEntry& option : LoadOptions()) {
    const Json subParam = option.hasSubParam ? Text(option.subParam) : Json();
    rows.push_back({std::to_string(list.size()), option.ticked ? "x" : "", option.text,
                    option.hasSubParam ? option.subParam : ""});
    list.push_back({{"Option", Text(option.text)}, {"Ticked", option.ticked}, {"SubParam", subParam}});
  }
  return arguments.json ? Print(list) : PrintTable({"#", "On", "Option", "Parameter"}, rows);
}

int ShowLine(const Arguments& arguments) {
  std::vector<OptionEntry> options = LoadOptions();
  for (const auto* numbers : {&arguments.tick, &arguments.untick})
    if (const auto missing = FindMissingRow(*numbers, options.size()))
      return Fail(std::to_string(*missing), "the option list has no row of this number");
  for (const std::size_t number : arguments.tick)
    options[number].ticked = true;
  for (const std::size_t number : arguments.untick)
    options[number].ticked = false;
  const std::string line = BuildCommandLine({JoinTickedOptions(options), arguments.map, arguments.edit}, true);
  return arguments.json ? Print({{"Line", Text(line)}}) : PrintLine(line);
}

}  // namespace varnik::cli
