#include "editor/definitiondraft.h"
#include "fuzz/world.h"
#include "modengine/activation.h"
#include "modengine/catalogue.h"
#include "modengine/deactivation.h"

// A definition of the current format through all that reads one: the catalogue, both passes and the editor.
namespace {

constexpr std::size_t kRowsToSelect = 50;

void Edit(const std::string& path) {
  varnik::DefinitionDraft draft;
  fuzz::Require(draft.Load(path));
  for (std::size_t row = 0; row < draft.Rows().size() && row < kRowsToSelect; ++row)
    draft.SelectRow(static_cast<int>(row));
  fuzz::Require(draft.Save("saved.bzm", false));
  varnik::DefinitionDraft again;
  fuzz::Require(again.Load(fuzz::TheWorld().sandbox.InstallText() + "saved.bzm"));
  fuzz::Require(again.Rows().size() <= draft.Rows().size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::Text(data, size);
  if (!fuzz::StaysInside(text)) return 0;
  fuzz::World& world = fuzz::TheWorld();
  world.Reset();
  world.Put("part.inc", "BZ2HALD5\r\nrename(b.odf, part.odf);\r\ninclude(mod.bzm);\r\n");
  const std::string path = world.Put("mod.bzm", text);
  varnik::LoadModFile(path);
  if (varnik::ModListFilled) varnik::SelectModFolders(1);
  fuzz::LookAhead(path);
  varnik::ActivateMod(path);
  varnik::DeactivateMod(path, world.sandbox.InstallText());
  Edit(path);
  return 0;
}
