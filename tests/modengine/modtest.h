#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "platform/system/services.h"
#include "support/runstate.h"
#include "tests/harness/sandbox.h"

// A selected install with definitions to act on, and ears for what a person would be told.
namespace test {

class ModTest : public testing::Test {
 protected:
  ModTest() {
    varnik::AppPath = sandbox_.AppText();
    varnik::ShowOldMods = true;
    MakeInstall("1.2");
    win::WindowServices services;
    services.msgBox = [this](const std::string& text, int, const std::string&) {
      told_ += text;
      return win::Answer::kOk;
    };
    win::SetWindowServices(services);
  }
  ~ModTest() override { win::SetWindowServices({}); }

  void MakeInstall(std::string_view version) {
    sandbox_.MakeInstall(version);
    varnik::UseInstallFolder(Root());
    varnik::ClearModList();
    varnik::SelectModFolders(-1);
  }

  std::string Root() const { return sandbox_.InstallText(); }
  std::filesystem::path InRoot(const std::string& name) const { return sandbox_.Install() / name; }
  std::filesystem::path InMods(const std::string& name) const { return sandbox_.App() / "mods" / name; }

  // Writes files below the root, given as "name=content" with a blank between two of them.
  void Put(const std::string& files) {
    std::istringstream list(files);
    for (std::string file; list >> file;)
      WriteFile(InRoot(file.substr(0, file.find('='))), file.substr(file.find('=') + 1));
  }

  // Writes a definition of the current format below the root and gives its path as the program holds it.
  std::string Define(const std::string& lines, const std::string& name = "mod.bzm") {
    WriteFile(InRoot(name), "BZ2HALD5\r\n" + lines);
    return Root() + name;
  }

  // Nothing for a file that is not there.
  std::optional<std::string> Content(const std::string& name) const {
    if (!std::filesystem::is_regular_file(InRoot(name))) return {};
    return ReadFile(InRoot(name));
  }

  Sandbox sandbox_;
  std::string told_;
};

}  // namespace test
