#include "editor/definitiondraft.h"
#include "fuzz/world.h"
#include "modengine/catalogue.h"

// A definition as the catalogue and the editor read it. What the editor saves must have no more rows.
namespace {

constexpr std::size_t kRowsToSelect = 50;

void Edit(const std::string& path) {
  varnik::DefinitionDraft draft;
  draft.Load(path);
  for (std::size_t row = 0; row < draft.Rows().size() && row < kRowsToSelect; ++row)
    draft.SelectRow(static_cast<int>(row));
  fuzz::Require(draft.Save("saved.bzm", false));
  varnik::DefinitionDraft again;
  again.Load(std::string(fuzz::kInstall) + "saved.bzm");
  fuzz::Require(again.Rows().size() <= draft.Rows().size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  const std::string path = world.Put("mod.bzm", fuzz::Text(data, size));
  varnik::LoadModFile(path);
  Edit(path);
  return 0;
}
