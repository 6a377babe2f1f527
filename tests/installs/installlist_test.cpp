#include "installs/installlist.h"

#include "support/runstate.h"
#include "support/settings.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

namespace varnik {
namespace {

class InstallListTest : public testing::Test {
 protected:
  InstallListTest() { sandbox_.MakeInstall("1.2"); }

  static void StoreRow(int row, const std::string& path, const std::string& description, const std::string& offered) {
    Store(kInstallsSection, "BZ2Loc" + std::to_string(row), path);
    Store(kInstallsSection, "BZ2Des" + std::to_string(row), description);
    Store(kInstallsSection, "BZ2Sel" + std::to_string(row), offered);
  }

  test::Sandbox sandbox_;
  const std::string folder_ = sandbox_.Install().string();
};

struct RowCase {
  const char* what;
  std::string before, after;  // round the folder's path as stored
  const char* description;
  const char* offered;
  std::string pathEnd;  // what stands behind the folder in the list
  const char* shown;    // with @ for the path
  bool isOffered;
};

const RowCase kFirstRows[] = {
    {"row 0 is trimmed", " ", "  ", " Mine ", " Yes ", "\\", "Mine", true},
    {"a slash stays", "", "/", "", "Yes", "/", "(1.2)@", true},
    {"ticked by the exact word only", "", "\\", "x", "yes", "\\", "x", false},
};

TEST_F(InstallListTest, ReadsARow) {
  for (const RowCase& c : kFirstRows) {
    SCOPED_TRACE(c.what);
    StoreRow(0, c.before + folder_ + c.after, c.description, c.offered);
    ReadInstallList();
    const std::string path = folder_ + c.pathEnd;
    std::string shown = c.shown;
    if (shown.ends_with('@')) shown.replace(shown.size() - 1, 1, path);
    ASSERT_EQ(InstallList.size(), 1u);
    EXPECT_EQ(InstallList[0].Path, path);
    EXPECT_EQ(InstallList[0].Description, shown);
    EXPECT_EQ(IsOffered(0), c.isOffered);
  }
}

TEST_F(InstallListTest, EndsAtTheFirstGapAndKeepsRowsThatAreNoInstall) {
  StoreRow(0, "/nowhere", "Gone", "Yes");
  StoreRow(1, folder_ + "  ", "", "Yes");
  StoreRow(3, folder_, "Never read", "Yes");
  ReadInstallList();
  ASSERT_EQ(InstallList.size(), 2u);
  EXPECT_EQ(InstallList[0].Path, "/nowhere\\");
  EXPECT_EQ(InstallList[0].Description + InstallList[0].Version, "");
  EXPECT_FALSE(IsOffered(0));
  EXPECT_EQ(InstallList[1].Path, folder_ + "  \\");  // only row 0 is trimmed

  Forget(kInstallsSection, "BZ2Loc1");
  ReadInstallList();
  EXPECT_EQ(InstallList.size(), 1u);
}

struct VersionCase {
  const char* file;
  const char* content;
  const char* version;
};

const VersionCase kVersions[] = {
    {"data/localize.odf", "[Network]\r\nVersionStr=9\r\n", "1.0"},  // counts below addon only
    {"addon/deep/er/Localize.ODF", "[Network]\r\nVersionStr = \"1.3\" // now\r\n", "1.3"},
    {"addon/deep/er/Localize.ODF", "[Other]\r\nVersionStr=1.3\r\n", "N/A"},
};

TEST_F(InstallListTest, DetectsTheVersion) {
  std::filesystem::remove_all(sandbox_.Install() / "addon");
  for (const VersionCase& c : kVersions) {
    test::WriteFile(sandbox_.Install() / c.file, c.content);
    UseInstallFolder(folder_);
    EXPECT_EQ(InstallVersion(), c.version) << c.content;
    EXPECT_EQ(IsVersion13(), std::string(c.version) == "1.3");
    EXPECT_EQ(InstallRoot(), folder_ + "\\");
  }
}

TEST_F(InstallListTest, AsksForAllThreeFiles) {
  EXPECT_TRUE(IsBZ2Install("  " + folder_ + " "));
  EXPECT_FALSE(IsBZ2Install("  "));
  for (const char* name : {"bzone.exe", "data.pak", "binkw32.dll"}) {
    const auto file = sandbox_.Install() / name;
    const std::string content = test::ReadFile(file);
    std::filesystem::remove(file);
    EXPECT_FALSE(IsBZ2Install(folder_)) << name;
    test::WriteFile(file, content);
  }
}

TEST_F(InstallListTest, SelectsRowsOfTheListOnly) {
  StoreRow(0, folder_, "", "No");
  ReadInstallList();
  EXPECT_EQ(StoredActiveInstall(), -1);
  EXPECT_TRUE(SelectInstall(0));
  EXPECT_EQ(InstallRoot(), folder_ + "\\");
  for (const std::int16_t row : {std::int16_t{1}, std::int16_t{-1}, std::int16_t{-30000}}) {
    EXPECT_FALSE(SelectInstall(row));
    EXPECT_EQ(CurrentInstall, -1);
    EXPECT_EQ(InstallRoot() + InstallVersion(), "");
  }
  Store(kInstallsSection, "Active", "99999999");
  EXPECT_EQ(StoredActiveInstall(), -1);
}

}  // namespace
}  // namespace varnik
