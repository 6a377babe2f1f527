#include "cli/commands.h"
#include "cli/output.h"
#include "cmdline/optionlist.h"

namespace varnik::cli {

namespace {

// Nothing when it cannot be read, which has been said.
std::optional<std::vector<OptionEntry>> LoadOptions() {
  const std::string file = OptionListFile();
  if (file.empty()) Note("varnik.cmd not found. Command Line Parameter listing disabled.");
  std::optional<std::vector<OptionEntry>> options = ReadOptionList(file);
  if (!options) Note(OneLine(OptionListProblem(file)));
  return options;
}

}  // namespace

int ListOptions(const Arguments& arguments) {
  Json list = Json::array();
  std::vector<Row> rows;
  const std::optional<std::vector<OptionEntry>> options = LoadOptions();
  if (!options) return kFailed;
  for (const OptionEntry& option : *options) {
    const Json subParam = option.hasSubParam ? Text(option.subParam) : Json();
    rows.push_back({std::to_string(list.size()), option.ticked ? "x" : "", option.text,
                    option.hasSubParam ? option.subParam : ""});
    list.push_back({{"Option", Text(option.text)}, {"Ticked", option.ticked}, {"SubParam", subParam}});
  }
  return arguments.json ? Print(list) : PrintTable({"#", "On", "Option", "Parameter"}, rows);
}

int ShowLine(const Arguments& arguments) {
  std::optional<std::vector<OptionEntry>> options = LoadOptions();
  if (!options) return kFailed;
  for (const auto* numbers : {&arguments.tick, &arguments.untick})
    for (const std::size_t number : *numbers) {
      if (number >= options->size()) return Fail(std::to_string(number), "the option list has no row of this number");
      (*options)[number].ticked = numbers == &arguments.tick;
    }
  const std::string line = BuildCommandLine({JoinTickedOptions(*options), arguments.map, arguments.edit}, true);
  return arguments.json ? Print({{"Line", Text(line)}}) : PrintLine(line);
}

}  // namespace varnik::cli
