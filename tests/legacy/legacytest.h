#pragma once

#include "legacy/legacyactivation.h"
#include "legacy/legacydeactivation.h"
#include "tests/modengine/modtest.h"

namespace test {

class LegacyTest : public ModTest {
 protected:
  // Writes a definition beside the install. Its name keeps the second open from going to the working folder.
  std::string DefineLegacy(const std::string& lines) { return DefineText("BZ2HALD3\ndesc M\n\n\n\n" + lines); }

  std::string DefineText(const std::string& content) {
    WriteFile(sandbox_.Root() / "mod.bzm", content);
    return (sandbox_.Root() / "mod.bzm").string();
  }
};

}  // namespace test
