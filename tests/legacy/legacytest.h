#pragma once

#include "legacy/legacyactivation.h"
#include "legacy/legacydeactivation.h"
#include "tests/modengine/modtest.h"

namespace test {

class LegacyTest : public ModTest {
 protected:
  // An install that holds these files and nothing else.
  void StartWith(const std::string& files) {
    std::filesystem::remove_all(sandbox_.Install());
    std::filesystem::create_directory(sandbox_.Install());
    Put(files);
    varnik::UseInstallFolder(Root());
  }

  // Writes a definition beside the install. Its name keeps the second open from going to the working folder.
  std::string DefineLegacy(const std::string& lines) { return DefineText("BZ2HALD2\ndesc M\n\n\n\n" + lines); }

  std::string DefineText(const std::string& content) {
    WriteFile(sandbox_.Root() / "mod.bzm", content);
    return (sandbox_.Root() / "mod.bzm").string();
  }

  // Everything below the root, as "name=content" with a blank between two.
  std::string Files() const {
    std::string files;
    for (const auto& [name, content] : Snapshot(sandbox_.Install()))
      if (!name.ends_with('/')) files += (files.empty() ? "" : " ") + name + "=" + content;
    return files;
  }
};

}  // namespace test
