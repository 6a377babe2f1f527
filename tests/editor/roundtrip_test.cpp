#include "definition/directive.h"
#include "editor/definitiondraft.h"
#include "installs/installlist.h"
#include "platform/system/files/lines.h"
#include "platform/system/text/text.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

// The lines behind the marker as their readers see them, one field a line.
std::string Read(const std::string& path) {
  std::string seen;
  win::LineReader file(path);
  file.ReadLine();
  while (!file.AtEnd()) {
    varnik::Args args;
    std::string comment;
    varnik::ParseDirective(file.ReadLine(), args, comment);
    args[0] = win::LowerCase(args[0]);
    if (args[0] == "defaultsmsg") args = {""};  // not one of the catalogue's
    for (const std::string& arg : args)
      seen += arg + "\n";
    seen += "//" + comment + "\n";
  }
  return seen;
}

// Selecting a row rewrites it in the catalogue's spelling. A visit of all rows and a save must say the same.
TEST(RoundTrip, EveryDefinitionOfTheDemoComesBackAsItReads) {
  const test::Sandbox sandbox;
  const fs::path demo = sandbox.Root() / "demo";
  ASSERT_EQ(system((SOURCE_DIR "/tools/make-demo.sh " + demo.string()).c_str()), 0);
  varnik::UseInstallFolder(sandbox.InstallText());
  int definitions = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(demo)) {
    if (!entry.is_regular_file() || !test::ReadFile(entry.path()).starts_with("BZ2HALD5")) continue;
    SCOPED_TRACE(entry.path());
    ++definitions;
    varnik::DefinitionDraft draft;
    draft.Load(entry.path().string());
    for (std::size_t row = 0; row < draft.Rows().size(); ++row)
      draft.SelectRow(static_cast<int>(row));
    ASSERT_TRUE(draft.Save("saved.bzm", false));
    EXPECT_EQ(Read(sandbox.InstallText() + "saved.bzm"), Read(entry.path().string()));
  }
  EXPECT_GT(definitions, 5);
}

}  // namespace
