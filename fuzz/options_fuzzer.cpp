#include "cmdline/optionlist.h"
#include "fuzz/world.h"

// varnik.cmd as the command line takes it, and through its editor.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  const std::string path = world.Put("varnik.cmd", fuzz::Text(data, size));
  const std::string options = varnik::JoinTickedOptions(varnik::ReadOptionList(path).value());
  varnik::BuildCommandLine({options, "map.bzn", true}, true);
  varnik::BuildCommandLine({options, "", false}, false);

  const std::vector<varnik::OptionRow> rows = varnik::ReadOptionRows(path).value();
  fuzz::Require(varnik::WriteOptionRows(path, rows));
  const std::vector<varnik::OptionRow> again = varnik::ReadOptionRows(path).value();
  fuzz::Require(again.size() == rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i)
    fuzz::Require(again[i].text == rows[i].text && again[i].ticked == rows[i].ticked);
  return 0;
}
