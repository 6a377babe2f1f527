#include "fuzz/world.h"

#include "diagnosis/activationplan.h"
#include "diagnosis/check.h"
#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "platform/system/process/services.h"
#include "support/runstate.h"

#include <stdlib.h>

#include <array>
#include <cctype>
#include <filesystem>

namespace fuzz {

namespace fs = std::filesystem;

World::World() {
  setenv("PATH", sandbox.Home().c_str(), 1);
  setenv("VARNIK_RUNNER", (sandbox.Home() / "none").c_str(), 1);
  // Nobody reads a message; a question is answered now this way, now that.
  win::WindowServices services;
  services.msgBox = [](const std::string&, int style, const std::string&) {
    static bool yes = false;
    yes = !yes;
    return style % 16 == win::kOkOnly ? win::Answer::kOk : yes ? win::Answer::kYes : win::Answer::kNo;
  };
  win::SetWindowServices(services);
  varnik::AppPath = sandbox.AppText();
  fs::current_path(sandbox.Install());
}

void World::Reset() {
  for (const fs::directory_entry& entry : fs::directory_iterator(sandbox.Install())) {
    fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add);
    fs::remove_all(entry.path());
  }
  sandbox.MakeInstall("1.3");
  fs::permissions(sandbox.Install() / "bzone.exe", fs::perms(0644));
  for (const char* name : {"a", "b.odf", "addon/c.odf", "data/d.odf", "addon/RaceName_A.txt", "RecyList.txt"})
    test::WriteFile(sandbox.Install() / name, "first\r\nsecond\r\n");
  varnik::UseInstallFolder(sandbox.InstallText());
  varnik::ClearModList();
  varnik::SelectModFolders(-1);
}

std::string World::Put(const std::string& name, std::string_view content) {
  test::WriteFile(sandbox.Install() / name, content);
  return sandbox.InstallText() + name;
}

World& TheWorld() {
  static World world;
  return world;
}

bool StaysInside(std::string_view definition) {
  const auto isNamePart = [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.';
  };
  for (std::size_t i = 0; i < definition.size(); ++i) {
    const char c = definition[i];
    const char before = i > 0 ? definition[i - 1] : '\n';
    if (c == ':' || (c == '.' && before == '.')) return false;
    if ((c == '\\' || c == '/') && !isNamePart(before)) return false;
  }
  return true;
}

void LookAhead(const std::string& path) {
  const fs::path install = TheWorld().sandbox.Install();
  const auto before = test::Snapshot(install);
  Require(varnik::CheckDefinition(path).has_value());
  if (varnik::ModListFilled) varnik::PlanActivation(varnik::ModEntry(varnik::ModList[1]));
  Require(test::Snapshot(install) == before);
}

void Require(bool holds) {
  if (!holds) abort();
}

}  // namespace fuzz
