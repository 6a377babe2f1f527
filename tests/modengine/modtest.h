#pragma once

#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "platform/system/process/services.h"
#include "support/runstate.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

// A selected install with definitions to act on, and ears for what a person would be told.
namespace test {

class ModTest : public testing::Test {
 protected:
  ModTest() {
    varnik::AppPath = sandbox_.AppText();
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
    std::filesystem::remove_all(sandbox_.Install());
    sandbox_.MakeInstall(version);
    varnik::UseInstallFolder(Root());
    varnik::ClearModList();
    varnik::SelectModFolders(-1);
  }

  std::string Root() const { return sandbox_.InstallText(); }
  std::filesystem::path InRoot(const std::string& name) const { return sandbox_.Install() / name; }
  std::filesystem::path InMods(const std::string& name) const { return sandbox_.App() / "mods" / name; }

  // Files below the root as they are to be, each "name=content" or, for one that is not there, "name".
  void Put(const std::string& files) {
    ForEach(files, [&](const std::string& name, const std::optional<std::string>& content) {
      std::filesystem::remove(InRoot(name));
      if (content) WriteFile(InRoot(name), *content);
    });
  }
  void Expect(const std::string& files) {
    ForEach(files, [&](const std::string& name, const std::optional<std::string>& content) {
      EXPECT_EQ(Content(name), content) << name;
    });
  }

  // Nothing for a file that is not there.
  std::optional<std::string> Content(const std::string& name) const {
    if (!std::filesystem::is_regular_file(InRoot(name))) return {};
    return ReadFile(InRoot(name));
  }

  // A definition of the current format below the root, as the program holds its path.
  std::string Define(const std::string& lines, const std::string& name = "mod.bzm") {
    WriteFile(InRoot(name), "BZ2HALD5\r\n" + lines);
    return Root() + name;
  }

  Sandbox sandbox_;
  std::string told_;

 private:
  template <class Act>
  static void ForEach(const std::string& files, const Act& act) {
    std::istringstream list(files);
    for (std::string file; list >> file;) {
      const std::size_t split = file.find('=');
      act(file.substr(0, split), split < file.size() ? std::optional(file.substr(split + 1)) : std::nullopt);
    }
  }
};

}  // namespace test
